#pragma once

#include "text/ByteBuffer.h"

#include <QString>
#include <atomic>
#include <sys/stat.h>

namespace quillory {

/// A file's bytes, read once.
struct FileBytes
{
    int error = 0; ///< errno of what failed; 0 when all was read
    ByteBuffer bytes;
    struct stat status = {};      ///< of the open file, after its last byte was read
    QByteArray encodingAttribute; ///< the file's text-encoding attribute; empty where it has none
};

/// The extended attribute that names a text file's encoding, as encodingForAttribute() reads it.
inline constexpr const char* textEncodingAttribute = "user.com.apple.TextEncoding";

/// Reads the file at \a path to its end. A directory is an error (EISDIR). Pipes and devices are
/// read too, so the call may wait for long; it ends early, with ECANCELED, once \a cancelled is
/// set.
FileBytes readFile(const QString& path, const std::atomic_bool* cancelled = nullptr);

/// What takes no noticeable time to read and decode.
inline constexpr ByteCount quickFileSize{qsizetype(4) << 20};

/// True for a regular file so small that reading it takes no noticeable time.
bool isQuickToRead(const QString& path);

} // namespace quillory
