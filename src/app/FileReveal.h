#pragma once

#include <QString>

class QObject;

namespace quillory {

/// Shows the file at \a path, selected, in the desktop's file manager, by freedesktop.org's D-Bus
/// interface org.freedesktop.FileManager1; where none has that, opens the folder that the file lies
/// in. Waits for nothing; nothing comes of it when \a context goes before.
void revealInFileManager(const QString& path, QObject* context);

} // namespace quillory
