#pragma once

#include <QObject>
#include <QTimer>
#include <memory>
#include <vector>

class QAction;
class QMenu;

namespace quillory {

class DocumentWindow;
struct MenuItem;
template<class T>
struct DefaultsKey;

/// The menu bar of a document window, made from the menu table, and what keeps the names, the
/// check marks and the enabling of its commands true. The menus are filled when the window has been
/// painted, which need not wait for commands that nobody has had the time to ask for.
class MainMenu : public QObject
{
    Q_OBJECT

public:
    explicit MainMenu(DocumentWindow& window);

    /// Brings the commands up to date once the events at hand are dealt with.
    void scheduleRefresh() { m_refresh.start(); }

    /// The commands that belong under the mouse. They are filled in, and made true, when it shows.
    std::shared_ptr<QMenu> newContextMenu();

private:
    struct Command
    {
        QAction* action;
        const MenuItem* item;
    };

    void fill();
    void addItem(QMenu& menu, const MenuItem& item);
    void addContextCommands(QMenu& menu);
    void setPreference(const DefaultsKey<bool>& key, bool on);
    void refresh();
    void makeOffers();
    void withdrawOffers();

    DocumentWindow& m_window;
    std::vector<QMenu*> m_menus;
    std::vector<Command> m_commands; ///< empty until the menus are filled
    QTimer m_refresh;
};

} // namespace quillory
