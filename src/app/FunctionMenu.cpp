#include "app/FunctionMenu.h"

#include <QCoreApplication>
#include <QMenu>

namespace quillory {

void fillFunctionMenu(QMenu& menu, DocumentWindow&)
{
    menu.addAction(QCoreApplication::translate("FunctionMenu", "Unavailable"))->setEnabled(false);
}

} // namespace quillory
