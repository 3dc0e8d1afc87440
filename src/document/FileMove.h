#pragma once

#include "document/FileOps.h"

#include <QString>

namespace quillory {

/// A file before and after it was moved.
struct MovedFile
{
    struct stat before = {};
    struct stat after = {}; ///< with the same bytes
};

/// Moves the file at \a from, no symbolic link, to \a to, also to another device, where it is
/// copied first: with all that it carries beside its bytes, and brought to the device before the
/// old one goes. EEXIST where there is a file already, EBUSY where another program wrote the old
/// one meanwhile. After a failure the file is where it was, and nowhere else.
FileResult<MovedFile> moveFile(FileOps& ops, const QString& from, const QString& to);

} // namespace quillory
