#pragma once

#include "document/ByteSource.h"
#include "document/FileOps.h"

namespace quillory {

/// How many bytes \a source gives; ECANCELED when it fails.
FileResult<qint64> countBytes(const ByteSource& source);

struct ByteSummary
{
    qint64 size = 0;
    QByteArray digest; ///< 20 bytes
};

/// Size and digest of what \a source gives; ECANCELED when it fails.
FileResult<ByteSummary> summaryOf(const ByteSource& source);

/// Reserves room for \a size bytes, so that a full device is found out before anything is written;
/// done where the file system has no such thing.
FileStatus allocateIfSupported(FileOps& ops, int descriptor, qint64 size);

/// Writes what \a source gives to the start of an open file, and nothing beyond it; ECANCELED when
/// the source fails.
FileStatus writeBytes(FileOps& ops, int descriptor, const ByteSource& source);

/// Whether an open file holds what \a source gives and no more; EIO when it does not, ECANCELED
/// when the source fails. The bytes come through the kernel's cache: this finds what this program,
/// another one or the file system did wrong, while for the medium only sync() can speak.
FileStatus compareBytes(FileOps& ops, int descriptor, const ByteSource& source);

/// The bytes of an open file from \a offset on; \a descriptor and \a ops must outlive the source.
ByteSource bytesOf(FileOps& ops, int descriptor, qint64 offset = 0);

/// Brings a folder's entries to the device. File systems that have no such thing, and folders that
/// cannot be opened for lack of a right to list them, count as done.
FileStatus syncFolder(FileOps& ops, const QByteArray& folder);

/// The folder of the file at \a path, in a form that a name can be appended to after a "/".
QByteArray folderOf(const QByteArray& path);

} // namespace quillory
