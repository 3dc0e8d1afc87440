#pragma once

#include <QObject>
#include <QPointer>
#include <vector>

class QAction;
class QMenu;

namespace quillory {

class DocumentWindow;
class SearchList;
struct SearchRow;

/// All commands of a window's menus in a list to search in, with the menus they are in and their
/// keys. Those that cannot be used now are shown, but cannot be chosen.
class CommandPalette : public QObject
{
    Q_OBJECT

public:
    explicit CommandPalette(DocumentWindow& window);

    void open();
    SearchList& list() const { return *m_list; }

private:
    enum class Submenus
    {
        Fill,
        Leave ///< as they are
    };
    void collect(QMenu& menu, const QString& path, Submenus submenus, std::vector<SearchRow>& rows);
    void run(int row) const;

    DocumentWindow& m_window;
    SearchList* m_list;
    std::vector<QPointer<QAction>> m_actions; ///< of the rows
};

} // namespace quillory
