#pragma once

#include "commands/FunctionScan.h"

#include <QObject>
#include <optional>

class QMenu;
class QToolButton;

namespace quillory {

class DocumentWindow;
class FunctionNavigation;
class SearchList;

/// Shows the functions of a window's text, in the menu of a button and in a list to search, and
/// goes to those that are chosen. Both are of the text as it is when they open; where looking for
/// them takes long, they say so until they are found.
class FunctionMenu : public QObject
{
    Q_OBJECT

public:
    /// What is more than that is only in the list: a menu of thousands neither opens quickly nor
    /// helps to find anything.
    static constexpr size_t mostEntries = 500;

    /// For a window whose document and text are there; \a button shows the menu.
    FunctionMenu(DocumentWindow& window, QToolButton& button);

    /// Fills \a menu, which is empty and about to be shown by the button.
    void generateFunctions(QMenu& menu);
    /// Opens the list.
    void showList();

    SearchList& list();

private:
    void insertAllItemsIntoMenu(QMenu& menu, const NavigationItems& items);
    void reopen(QMenu& menu, const NavigationItems& items);
    void fillList(const NavigationItems& items);

    DocumentWindow& m_window;
    FunctionNavigation& m_navigation;
    QToolButton& m_button;
    std::optional<NavigationItems> m_found; ///< for the menu that opens once more
    SearchList* m_list = nullptr;           ///< made when first shown
    std::vector<qint64> m_listed;           ///< the line of each row
};

} // namespace quillory
