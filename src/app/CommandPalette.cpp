#include "app/CommandPalette.h"

#include "app/DocumentWindow.h"
#include "app/SearchList.h"

#include <QMenu>
#include <QMenuBar>

namespace quillory {

namespace {

/// The label of \a action without its mnemonic and its key.
QString nameOf(const QAction& action)
{
    const QString text = action.text().section(u'\t', 0, 0);
    QString name;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size())
            ++i;
        name += text[i];
    }
    return name.trimmed();
}

QString keyOf(const QAction& action)
{
    const QString own = action.text().section(u'\t', 1);
    return own.isEmpty() ? action.shortcut().toString(QKeySequence::NativeText) : own;
}

} // namespace

CommandPalette::CommandPalette(DocumentWindow& window)
    : QObject(&window), m_window(window), m_list(new SearchList(&window))
{
    connect(m_list, &SearchList::chosen, this, &CommandPalette::run);
}

void CommandPalette::open()
{
    m_actions.clear();
    std::vector<SearchRow> rows;
    for (const QAction* action : m_window.menuBar()->actions()) {
        QMenu* menu = action->menu();
        if (!menu)
            continue;
        Q_EMIT menu->aboutToShow();
        collect(*menu, nameOf(*action), Submenus::Fill, rows);
        Q_EMIT menu->aboutToHide();
    }
    m_list->open(tr("Run a command"));
    m_list->setRows(std::move(rows));
}

/// Menus that are filled when they open are filled for it, but not those within them: there can be
/// folders behind folders.
void CommandPalette::collect(QMenu& menu, const QString& path, Submenus submenus,
                             std::vector<SearchRow>& rows)
{
    for (QAction* action : menu.actions()) {
        if (!action->isVisible() || action->isSeparator())
            continue;
        const QString name = path + QStringLiteral(" › ") + nameOf(*action);
        if (QMenu* submenu = action->menu()) {
            if (!action->isEnabled())
                continue;
            if (submenus == Submenus::Fill)
                Q_EMIT submenu->aboutToShow();
            collect(*submenu, name, Submenus::Leave, rows);
        } else {
            const QString check = action->isChecked() ? QStringLiteral("✓  ") : QString();
            rows.push_back({name, check + keyOf(*action), action->icon(), action->isEnabled()});
            m_actions.emplace_back(action);
        }
    }
}

void CommandPalette::run(int row) const
{
    if (row >= 0 && size_t(row) < m_actions.size() && m_actions[size_t(row)])
        m_actions[size_t(row)]->trigger();
}

} // namespace quillory
