#include "document/FileBytes.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr qsizetype pieceSize = qsizetype(1) << 20;
constexpr qsizetype quickSize = qsizetype(4) << 20;

class OpenFile
{
public:
    explicit OpenFile(const QString& path)
        : m_descriptor(open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY))
    {}
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

bool isSet(const std::atomic_bool* flag)
{
    return flag && flag->load(std::memory_order_relaxed);
}

/// Reads up to \a size bytes to \a target; fewer mean the file's end, a negative number -errno.
qsizetype readFully(int descriptor, char* target, qsizetype size, const std::atomic_bool* cancelled)
{
    qsizetype done = 0;
    while (done < size) {
        if (isSet(cancelled))
            return -ECANCELED;
        const ssize_t count =
            read(descriptor, target + done, size_t(std::min(size - done, pieceSize)));
        if (count == 0)
            break;
        if (count > 0)
            done += count;
        else if (errno != EINTR)
            return -errno;
    }
    return done;
}

QByteArray attributeOf(int descriptor)
{
    char value[256];
    const ssize_t size = fgetxattr(descriptor, textEncodingAttribute, value, sizeof value);
    return size > 0 ? QByteArray(value, size) : QByteArray();
}

} // namespace

FileBytes readFile(const QString& path, const std::atomic_bool* cancelled)
{
    FileBytes result;
    const OpenFile file(path);
    if (file.descriptor() < 0 || fstat(file.descriptor(), &result.status) < 0) {
        result.error = errno;
        return result;
    }
    if (S_ISDIR(result.status.st_mode)) {
        result.error = EISDIR;
        return result;
    }
    qsizetype count = 0;
    result.bytes = ByteBuffer::filled(ByteCount(result.status.st_size), [&](char* target) {
        count = readFully(file.descriptor(), target, result.status.st_size, cancelled);
        return count;
    });
    // Pipes, devices and files of the kernel's own name no size; other files may have grown.
    QByteArray more;
    while (count == result.status.st_size + more.size()) {
        const qsizetype before = more.size();
        more.resize(before + pieceSize);
        const qsizetype got =
            readFully(file.descriptor(), more.data() + before, pieceSize, cancelled);
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
    result.encodingAttribute = attributeOf(file.descriptor());
    if (fstat(file.descriptor(), &result.status) < 0)
        result.error = errno;
    return result;
}

bool isQuickToRead(const QString& path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_size <= quickSize;
}

} // namespace quillory
