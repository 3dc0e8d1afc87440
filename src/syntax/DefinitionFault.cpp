#include "syntax/DefinitionFault.h"

#include <QCoreApplication>

namespace quillory {

QString DefinitionFault::description() const
{
    const auto tr = [](const char* text) {
        return QCoreApplication::translate("DefinitionFault", text);
    };
    if (key.isEmpty())
        return tr("The definition “%1” cannot be used: %2").arg(definition, problem);
    return tr("The definition “%1” has a fault in “%2”: %3").arg(definition, key, problem);
}

} // namespace quillory
