#include "app/FunctionMenu.h"

#include "app/DocumentWindow.h"
#include "app/SearchList.h"
#include "document/Document.h"

#include <QLocale>
#include <QMenu>
#include <QTimer>
#include <QToolButton>
#include <algorithm>

namespace quillory {

namespace {

/// The name in one line.
QString shownName(const NavigationItem& item)
{
    return item.name.simplified();
}

/// The title of \a item for a menu, whose own use of tabs is another: numbers as wide as \a digits,
/// and two spaces.
QString shownTitle(const NavigationItem& item, qsizetype digits)
{
    constexpr QChar figureSpace(0x2007);
    QString title = QString::number(item.lineNumber).rightJustified(digits, figureSpace) +
                    QStringLiteral("  ") + shownName(item);
    return title.replace(u'&', QStringLiteral("&&"));
}

} // namespace

FunctionMenu::FunctionMenu(DocumentWindow& window, QToolButton& button)
    : QObject(&button), m_window(window), m_navigation(window.document().functionNavigation()),
      m_button(button)
{}

void FunctionMenu::generateFunctions(QMenu& menu)
{
    if (m_found) {
        insertAllItemsIntoMenu(menu, *std::exchange(m_found, std::nullopt));
        return;
    }
    const auto items = m_navigation.findNavigationItems(
        [this, &menu](const NavigationItems& found) { reopen(menu, found); });
    if (items) {
        insertAllItemsIntoMenu(menu, *items);
        return;
    }
    menu.addAction(tr("Looking for functions…"))->setEnabled(false);
    connect(&menu, &QMenu::aboutToHide, &m_navigation, &FunctionNavigation::cancelFinding,
            Qt::SingleShotConnection);
}

/// A menu in sight grows by one entry at a time, which takes long for many.
void FunctionMenu::reopen(QMenu& menu, const NavigationItems& items)
{
    menu.hide();
    m_found = items;
    QMetaObject::invokeMethod(&m_button, &QToolButton::showMenu, Qt::QueuedConnection);
}

void FunctionMenu::insertAllItemsIntoMenu(QMenu& menu, const NavigationItems& items)
{
    // What the button itself shows; the list begins below it.
    menu.addAction(QString())->setVisible(false);
    if (items.empty()) {
        menu.addAction(tr("Unavailable"))->setEnabled(false);
        return;
    }
    const qsizetype digits = QString::number(items.back().lineNumber).size();
    const qint64 ticked = m_navigation.currentFunctionIndexForFunctions(items);
    const size_t count = std::min(items.size(), mostEntries);
    for (size_t i = 0; i < count; ++i) {
        const NavigationItem& item = items[i];
        QAction* action = menu.addAction(shownTitle(item, digits));
        action->setCheckable(qint64(i) == ticked);
        action->setChecked(qint64(i) == ticked);
        connect(action, &QAction::triggered, &m_navigation,
                [this, line = item.lineNumber] { m_navigation.goToItemOnLine(line); });
    }
    if (count == items.size())
        return;
    menu.addSeparator();
    connect(menu.addAction(tr("All %1 Functions…").arg(QLocale().toString(items.size()))),
            &QAction::triggered, this, [this] { showList(); });
}

SearchList& FunctionMenu::list()
{
    if (!m_list) {
        m_list = new SearchList(&m_window);
        connect(m_list, &SearchList::chosen, this,
                [this](int row) { m_navigation.goToItemOnLine(m_listed[size_t(row)]); });
    }
    return *m_list;
}

void FunctionMenu::showList()
{
    list().open(tr("Go to function"));
    const auto items = m_navigation.findNavigationItems([this](const NavigationItems& found) {
        if (list().isOpen())
            fillList(found);
    });
    if (items)
        fillList(*items);
    else
        list().setBusy(tr("Looking for functions…"));
}

void FunctionMenu::fillList(const NavigationItems& items)
{
    const QLocale locale;
    std::vector<SearchRow> rows;
    rows.reserve(items.size());
    m_listed.clear();
    for (const NavigationItem& item : items) {
        rows.push_back({shownName(item), locale.toString(item.lineNumber), {}});
        m_listed.push_back(item.lineNumber);
    }
    // The function that the caret is in, or below.
    const auto next =
        std::upper_bound(m_listed.begin(), m_listed.end(), m_navigation.currentLineNumber());
    list().setRows(std::move(rows), std::max(0, int(next - m_listed.begin()) - 1));
}

} // namespace quillory
