#include "app/ActionMenu.h"

#include <QCoreApplication>
#include <QMenu>

namespace quillory {

void fillActionMenu(QMenu& menu, DocumentWindow&)
{
    menu.addAction(QCoreApplication::translate("ActionMenu", "Unavailable"))->setEnabled(false);
}

} // namespace quillory
