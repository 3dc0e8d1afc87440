#include "document/FileMove.h"

#include "document/FileMetadata.h"
#include "document/FileTransfer.h"
#include "document/TemporaryFile.h"

#include <QFile>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr mode_t privateMode = 0600; ///< until the copy has the mode of the file

FileStatus copyFile(FileOps& ops, const QByteArray& from, const QByteArray& to)
{
    const auto source = FileHandle::open(ops, from, O_RDONLY);
    if (!source)
        return FileStatus::failed(source.error());
    const auto metadata = FileMetadata::of(ops, source->descriptor());
    if (!metadata)
        return FileStatus::failed(metadata.error());
    auto copy = TemporaryFile::in(ops, folderOf(to), privateMode);
    if (!copy)
        return FileStatus::failed(copy.error());
    const ByteSource bytes = bytesOf(ops, source->descriptor());
    if (FileStatus done = writeBytes(ops, copy->descriptor(), bytes); !done)
        return done;
    if (FileStatus done = metadata->applyTo(ops, copy->descriptor()); !done)
        return done;
    if (FileStatus done = ops.sync(copy->descriptor()); !done)
        return done;
    if (FileStatus done = compareBytes(ops, copy->descriptor(), bytes); !done)
        return done;
    return copy->publish(to, FileOps::Replacing::No);
}

} // namespace

FileStatus moveFile(FileOps& ops, const QString& from, const QString& to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    FileStatus renamed = ops.rename(source, target, FileOps::Replacing::No);
    // Some file systems cannot refuse to replace.
    if (renamed || (renamed.error() != EXDEV && renamed.error() != EINVAL))
        return renamed;
    if (FileStatus copied = copyFile(ops, source, target); !copied)
        return copied;
    FileStatus done = syncFolder(ops, folderOf(target));
    if (done)
        done = ops.remove(source);
    if (!done)
        (void)ops.remove(target);
    return done;
}

} // namespace quillory
