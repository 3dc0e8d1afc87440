#include "document/FileBytes.h"

#include "document/ReadableFile.h"

#include <QFile>
#include <cerrno>

namespace quillory {

namespace {

constexpr qsizetype pieceSize = qsizetype(1) << 20;

} // namespace

FileBytes readFile(const QString& path, const std::atomic_bool* cancelled)
{
    FileBytes result;
    const ReadableFile file(path);
    if (!file.isOpen() || !file.getStatus(result.status)) {
        result.error = errno;
        return result;
    }
    if (S_ISDIR(result.status.st_mode)) {
        result.error = EISDIR;
        return result;
    }
    qsizetype count = 0;
    result.bytes = ByteBuffer::filled(ByteCount(result.status.st_size), [&](char* target) {
        count = file.read(target, result.status.st_size, cancelled);
        return count;
    });
    // Pipes, devices and files of the kernel's own name no size; other files may have grown.
    QByteArray more;
    while (count == result.status.st_size + more.size()) {
        const qsizetype before = more.size();
        more.resize(before + pieceSize);
        const qsizetype got = file.read(more.data() + before, pieceSize, cancelled);
        more.resize(before + std::max<qsizetype>(got, 0));
        if (got < 0)
            count = got;
        else if (got < pieceSize)
            break;
        else
            count += got;
    }
    if (count < 0) {
        result.error = int(-count);
        result.bytes = ByteBuffer();
        return result;
    }
    if (!more.isEmpty())
        result.bytes = ByteBuffer(result.bytes.view().toByteArray() + more);
    result.encodingAttribute = file.encodingAttribute();
    if (!file.getStatus(result.status))
        result.error = errno;
    return result;
}

bool isQuickToRead(const QString& path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_size <= quickFileSize.value();
}

} // namespace quillory
