#include "app/EncodingMenu.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QHash>
#include <QMenu>

namespace quillory {

namespace {

QString escaped(QString name)
{
    return name.replace(u'&', QStringLiteral("&&"));
}

QString regionOf(const EncodingEntry& entry)
{
    return entry.name.section(QStringLiteral(" ("), 0, 0);
}

} // namespace

void fillEncodingMenu(QMenu& menu, const std::vector<EncodingEntry>& entries,
                      StringEncoding current, const std::function<void(StringEncoding)>& chosen)
{
    QHash<QString, int> sizes;
    for (const EncodingEntry& entry : entries)
        ++sizes[regionOf(entry)];
    QHash<QString, QMenu*> regions;
    auto* group = new QActionGroup(&menu);
    for (const EncodingEntry& entry : entries) {
        QMenu* place = &menu;
        if (const QString region = regionOf(entry); sizes.value(region) > 1) {
            QMenu*& submenu = regions[region];
            if (!submenu)
                submenu = menu.addMenu(escaped(region));
            place = submenu;
        }
        QAction* action = place->addAction(escaped(entry.name));
        action->setCheckable(true);
        action->setActionGroup(group);
        action->setChecked(entry.number == current);
        if (action->isChecked() && place != &menu) {
            QFont bold = menu.font();
            bold.setBold(true);
            place->menuAction()->setFont(bold);
        }
        QObject::connect(action, &QAction::triggered, &menu,
                         [chosen, number = entry.number] { chosen(number); });
    }
    if (entries.empty())
        menu.addAction(QCoreApplication::translate("EncodingMenu", "No encodings are listed"))
            ->setEnabled(false);
}

} // namespace quillory
