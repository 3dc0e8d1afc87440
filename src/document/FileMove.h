#pragma once

#include "document/FileOps.h"

#include <QString>

namespace quillory {

/// Moves the file at \a from to \a to, also to another device, where it is copied first: with all
/// that it carries beside its bytes, and brought to the device before the old one goes. EEXIST
/// where there is a file already. After a failure the file is where it was, and nowhere else.
FileStatus moveFile(FileOps& ops, const QString& from, const QString& to);

} // namespace quillory
