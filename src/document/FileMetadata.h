#pragma once

#include "document/FileOps.h"

#include <QMap>

namespace quillory {

/// What a file carries beside its bytes and its name: owner, group, permissions with the set-ID
/// bits, and extended attributes, the access list among them.
///
/// security.capability, .ima and .evm vouch for the bytes that a file had. The kernel drops them
/// when a file is written to, so they are not kept here either.
struct FileMetadata
{
    uid_t owner = 0;
    gid_t group = 0;
    mode_t mode = 0; ///< the low 12 bits
    QMap<QByteArray, QByteArray> attributes;

    static FileResult<FileMetadata> of(FileOps& ops, int descriptor);

    /// Gives the open file all of this. EPERM when it does not have it all afterwards, though each
    /// call went well.
    FileStatus applyTo(FileOps& ops, int descriptor) const;

    bool operator==(const FileMetadata&) const = default;
};

} // namespace quillory
