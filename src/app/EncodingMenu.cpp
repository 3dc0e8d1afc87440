#include "app/EncodingMenu.h"

#include <QCoreApplication>
#include <QMenu>

namespace quillory {

void fillEncodingMenu(QMenu& menu, const std::vector<EncodingEntry>& entries,
                      StringEncoding current, const std::function<void(StringEncoding)>& chosen)
{
    for (const EncodingEntry& entry : entries) {
        QString label = entry.name;
        QAction* action = menu.addAction(label.replace(u'&', QStringLiteral("&&")));
        action->setCheckable(true);
        action->setChecked(entry.number == current);
        QObject::connect(action, &QAction::triggered, &menu,
                         [chosen, number = entry.number] { chosen(number); });
    }
    if (entries.empty())
        menu.addAction(QCoreApplication::translate("EncodingMenu", "No encodings are listed"))
            ->setEnabled(false);
}

} // namespace quillory
