#pragma once

#include "document/FileTransfer.h"
#include "document/RecoveryStore.h"

namespace quillory {

/// The head of a recovery record; see RecoveryStore for its form.
struct RecoveryHeader
{
    RecoveryEntry entry;
    ByteSummary bytes;     ///< of what follows the header
    qint64 sizeOnDisk = 0; ///< of the header, once read

    QByteArray encoded() const;

    /// EBADMSG when the file does not start with a whole header.
    static FileResult<RecoveryHeader> read(FileOps& ops, int descriptor);
};

} // namespace quillory
