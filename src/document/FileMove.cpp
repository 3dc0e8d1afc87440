#include "document/FileMove.h"

#include "document/FileIdentity.h"
#include "document/FileMetadata.h"
#include "document/FileTransfer.h"
#include "document/TemporaryFile.h"

#include <QFile>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr mode_t privateMode = 0600; ///< until the copy has the mode of the file

FileResult<MovedFile> copyFile(FileOps& ops, const QByteArray& from, const QByteArray& to)
{
    using Result = FileResult<MovedFile>;
    const auto source = FileHandle::open(ops, from, O_RDONLY | O_NOFOLLOW);
    if (!source)
        return Result::failed(source.error());
    const auto before = ops.status(source->descriptor());
    if (!before)
        return Result::failed(before.error());
    const auto metadata = FileMetadata::of(ops, source->descriptor());
    if (!metadata)
        return Result::failed(metadata.error());
    auto copy = TemporaryFile::in(ops, folderOf(to), privateMode);
    if (!copy)
        return Result::failed(copy.error());
    const ByteSource bytes = bytesOf(ops, source->descriptor());
    FileStatus done = writeBytes(ops, copy->descriptor(), bytes);
    if (done)
        done = metadata->applyTo(ops, copy->descriptor());
    if (done)
        done = ops.sync(copy->descriptor());
    if (done)
        done = compareBytes(ops, copy->descriptor(), bytes);
    if (!done)
        return Result::failed(done.error());
    const auto after = ops.status(copy->descriptor());
    if (!after)
        return Result::failed(after.error());
    done = copy->publish(to, FileOps::Replacing::No);
    return done ? Result({*before, *after}) : Result::failed(done.error());
}

/// Removes the file at \a path, if it still is as it was. One that went away by itself is removed.
FileStatus removeUnchanged(FileOps& ops, const QByteArray& path, const struct stat& known)
{
    const auto now = ops.linkStatus(path);
    if (now && !FileIdentity::of(known).matches(*now))
        return FileStatus::failed(EBUSY);
    FileStatus removed = now ? ops.remove(path) : FileStatus::failed(now.error());
    return removed.error() == ENOENT ? FileStatus(Nothing()) : removed;
}

} // namespace

FileResult<MovedFile> moveFile(FileOps& ops, const QString& from, const QString& to)
{
    using Result = FileResult<MovedFile>;
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    const auto status = ops.linkStatus(source);
    if (!status)
        return Result::failed(status.error());
    const FileStatus renamed = ops.rename(source, target, FileOps::Replacing::No);
    if (renamed)
        return MovedFile{*status, *status};
    // Some file systems cannot refuse to replace.
    if (renamed.error() != EXDEV && renamed.error() != EINVAL)
        return Result::failed(renamed.error());
    auto copied = copyFile(ops, source, target);
    if (!copied)
        return copied;
    FileStatus done = syncFolder(ops, folderOf(target));
    if (done)
        done = removeUnchanged(ops, source, copied->before);
    if (done)
        return copied;
    (void)ops.remove(target);
    return Result::failed(done.error());
}

} // namespace quillory
