#include "app/RefillingMenu.h"

#include <QActionGroup>
#include <QMenu>

namespace quillory {

void refillOnShow(QMenu& menu, const std::function<void(QMenu&)>& fill)
{
    const QList<QAction*> fixed = menu.actions();
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu, fixed, fill] {
        const QList<QAction*> actions = menu.actions();
        for (QAction* action : actions) {
            if (fixed.contains(action))
                continue;
            // The action of a submenu goes with it.
            QObject* const owner = action->menu() ? static_cast<QObject*>(action->menu()) : action;
            delete owner;
        }
        qDeleteAll(menu.findChildren<QActionGroup*>(Qt::FindDirectChildrenOnly));
        fill(menu);
    });
}

} // namespace quillory
