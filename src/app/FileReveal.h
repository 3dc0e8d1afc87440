#pragma once

#include <QString>

class QObject;

namespace quillory {

/// Shows the file at \a path, selected, in the desktop's file manager (the interface
/// org.freedesktop.FileManager1, see the file manager D-Bus specification of freedesktop.org);
/// where there is none that knows it, opens the folder that the file lies in. Waits for nothing;
/// nothing comes of it when \a context goes before.
void revealInFileManager(const QString& path, QObject* context);

} // namespace quillory
