#include "app/ActionMenu.h"

#include "app/ActionKeys.h"
#include "app/CommandActions.h"
#include "app/DocumentWindow.h"
#include "app/TintedIcon.h"
#include "document/Document.h"

#include <QMenu>

namespace quillory {

namespace {

constexpr int longestTitle = 80; // characters
constexpr qsizetype toolTipLines = 24;
constexpr qsizetype toolTipColumns = 100;

QString titleOf(const ActionEntry& entry)
{
    QString title = entry.shownTitle().simplified();
    if (title.size() > longestTitle)
        title = title.left(longestTitle - 1) + u'…';
    return title.replace(u'&', QStringLiteral("&&"));
}

/// As it stands: it may look like HTML without being meant so.
QString toolTipOf(const ActionEntry& entry)
{
    QStringList lines = entry.toolTip.trimmed().left(toolTipLines * toolTipColumns).split(u'\n');
    if (lines.size() > toolTipLines)
        lines = lines.first(toolTipLines - 1) << QStringLiteral("…");
    for (QString& line : lines)
        line = line.left(toolTipColumns).toHtmlEscaped();
    return QStringLiteral("<pre>%1</pre>").arg(lines.join(u'\n'));
}

} // namespace

void fillActionMenu(QMenu& menu, DocumentWindow& window)
{
    menu.setToolTipsVisible(true);
    const std::vector<ActionEntry> entries = window.document().commands().menu().entries();
    // The first is the title of a menu that shows one of its entries when it is closed.
    for (auto entry = entries.begin() + 1; entry != entries.end(); ++entry) {
        if (entry->isSeparator) {
            menu.addSeparator();
            continue;
        }
        const QString key = keyOf(*entry).toString(QKeySequence::NativeText);
        // The key itself is the window's, and works while the menu is not there.
        QAction* action =
            menu.addAction(key.isEmpty() ? titleOf(*entry) : titleOf(*entry) + u'\t' + key);
        action->setEnabled(entry->representedObject.has_value());
        if (!entry->representedObject)
            continue;
        action->setIcon(tintedIcon(entry->imageName));
        if (!entry->toolTip.trimmed().isEmpty())
            action->setToolTip(toolTipOf(*entry));
        QObject::connect(action, &QAction::triggered, &window,
                         [&window, entry = *entry] { window.actions().run(entry); });
    }
}

} // namespace quillory
