#include "commands/Sandbox.h"

#include <QFileInfo>

namespace quillory {

bool isSandboxed()
{
    return QFileInfo::exists(QStringLiteral("/.flatpak-info")) ||
           !qEnvironmentVariableIsEmpty("SNAP");
}

} // namespace quillory
