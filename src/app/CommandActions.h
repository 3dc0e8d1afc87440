#pragma once

#include <QObject>
#include <QTimer>

class QAction;

namespace quillory {

class CommandPalette;
class DocumentWindow;
struct ActionEntry;

/// The actions of a window's definition, run by menu, by key or by name: what they ask for beyond
/// the text, and their keys. The keys are there once the window was painted, whether a menu was
/// opened or not; one that a command of the menus has stays with that.
class CommandActions : public QObject
{
    Q_OBJECT

public:
    /// For a window with its document, its menus and its log.
    explicit CommandActions(DocumentWindow& window);

    /// Runs the entry, and tells what the text refuses.
    void run(const ActionEntry& entry);

    /// Opens the menu of the actions as a click on its button does.
    void showActionsMenu();
    /// Opens the list of all commands, to search in.
    void showPalette();

private:
    void connectDesktop();
    void renewKeys();

    DocumentWindow& m_window;
    QTimer m_renewal;
    QList<QAction*> m_keys;              ///< in no menu
    CommandPalette* m_palette = nullptr; ///< made when first shown
};

} // namespace quillory
