#include "document/FileTransfer.h"

#include "document/FileHandle.h"

#include <QCryptographicHash>
#include <algorithm>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr qint64 pieceSize = qint64(1) << 18;

FileStatus writePiece(FileOps& ops, int descriptor, QByteArrayView bytes, qint64 offset)
{
    while (!bytes.isEmpty()) {
        const FileResult<qint64> count = ops.write(descriptor, bytes.data(), bytes.size(), offset);
        if (!count)
            return FileStatus::failed(count.error());
        if (*count == 0) // no file is known to answer so; waiting for more would take forever
            return FileStatus::failed(EIO);
        offset += *count;
        bytes = bytes.sliced(*count);
    }
    return Nothing();
}

/// Fills \a target from the file; fewer bytes mean that the file ends.
FileResult<qint64> readPiece(FileOps& ops, int descriptor, char* target, qint64 size, qint64 offset)
{
    qint64 done = 0;
    while (done < size) {
        const FileResult<qint64> count =
            ops.read(descriptor, target + done, size - done, offset + done);
        if (!count)
            return count;
        if (*count == 0)
            break;
        done += *count;
    }
    return done;
}

/// Runs \a source into \a take, which answers for each piece at its offset; the first error ends
/// it.
template<class Take>
FileResult<qint64> run(const ByteSource& source, Take&& take)
{
    qint64 offset = 0;
    int error = 0;
    const bool complete = source([&](QByteArrayView piece) {
        error = FileStatus(take(piece, offset)).error();
        offset += piece.size();
        return error == 0;
    });
    if (error == 0 && !complete)
        error = ECANCELED;
    return error != 0 ? FileResult<qint64>::failed(error) : FileResult<qint64>(offset);
}

bool meansUnsupported(int error)
{
    return error == EINVAL || error == ENOTSUP || error == ENOSYS;
}

/// Nothing to bring to a device that cannot be written to.
bool needsNoSync(int error)
{
    return meansUnsupported(error) || error == EROFS;
}

} // namespace

FileResult<qint64> countBytes(const ByteSource& source)
{
    return run(source, [](QByteArrayView, qint64) { return Nothing(); });
}

FileResult<ByteSummary> summaryOf(const ByteSource& source)
{
    QCryptographicHash hash(QCryptographicHash::Blake2b_160);
    const auto size = run(source, [&hash](QByteArrayView piece, qint64) {
        hash.addData(piece);
        return Nothing();
    });
    if (!size)
        return FileResult<ByteSummary>::failed(size.error());
    return ByteSummary{*size, hash.result()};
}

FileStatus allocateIfSupported(FileOps& ops, int descriptor, qint64 size)
{
    if (size == 0)
        return Nothing();
    FileStatus allocated = ops.allocate(descriptor, size);
    return meansUnsupported(allocated.error()) ? FileStatus(Nothing()) : allocated;
}

FileStatus writeBytes(FileOps& ops, int descriptor, const ByteSource& source)
{
    const auto written = run(source, [&](QByteArrayView piece, qint64 offset) {
        return writePiece(ops, descriptor, piece, offset);
    });
    return written ? FileStatus(Nothing()) : FileStatus::failed(written.error());
}

FileStatus compareBytes(FileOps& ops, int descriptor, const ByteSource& source)
{
    QByteArray onDisk;
    const auto compared = run(source, [&](QByteArrayView piece, qint64 offset) -> FileStatus {
        onDisk.resize(std::max(onDisk.size(), piece.size()));
        const auto count = readPiece(ops, descriptor, onDisk.data(), piece.size(), offset);
        if (!count)
            return FileStatus::failed(count.error());
        if (piece != QByteArrayView(onDisk.constData(), *count))
            return FileStatus::failed(EIO);
        return Nothing();
    });
    if (!compared)
        return FileStatus::failed(compared.error());
    char beyond = 0;
    const FileResult<qint64> more = ops.read(descriptor, &beyond, 1, *compared);
    if (!more)
        return FileStatus::failed(more.error());
    return *more == 0 ? FileStatus(Nothing()) : FileStatus::failed(EIO);
}

ByteSource bytesOf(FileOps& ops, int descriptor, qint64 offset)
{
    return [&ops, descriptor, offset](const ByteSink& sink) {
        QByteArray piece(pieceSize, Qt::Uninitialized);
        for (qint64 at = offset;;) {
            const auto count = readPiece(ops, descriptor, piece.data(), pieceSize, at);
            if (!count)
                return false;
            if (*count > 0 && !sink(QByteArrayView(piece.constData(), *count)))
                return false;
            if (*count < pieceSize)
                return true;
            at += *count;
        }
    };
}

FileStatus syncFolder(FileOps& ops, const QByteArray& folder)
{
    const auto open = FileHandle::open(ops, folder, O_RDONLY | O_DIRECTORY);
    if (!open)
        return open.error() == EACCES ? FileStatus(Nothing()) : FileStatus::failed(open.error());
    FileStatus synced = ops.sync(open->descriptor());
    return needsNoSync(synced.error()) ? FileStatus(Nothing()) : synced;
}

QByteArray folderOf(const QByteArray& path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return QByteArrayLiteral(".");
    return slash == 0 ? QByteArrayLiteral("/.") : path.first(slash);
}

} // namespace quillory
