#include "document/ReadableFile.h"

#include "document/FileBytes.h"

#include <QFile>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr qsizetype pieceSize = qsizetype(1) << 20; ///< between two looks at the flag

} // namespace

ReadableFile::ReadableFile(const QString& path)
    : m_descriptor(open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOCTTY)),
      m_read(::read)
{}

ReadableFile::~ReadableFile()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

qsizetype ReadableFile::read(char* target, qsizetype size, const std::atomic_bool* cancelled) const
{
    qsizetype done = 0;
    while (done < size) {
        if (cancelled && cancelled->load(std::memory_order_relaxed))
            return -ECANCELED;
        const ssize_t count =
            m_read(m_descriptor, target + done, size_t(std::min(size - done, pieceSize)));
        if (count == 0)
            break;
        if (count > 0)
            done += count;
        else if (errno != EINTR)
            return -errno;
    }
    return done;
}

QByteArray ReadableFile::encodingAttribute() const
{
    char value[256];
    const ssize_t size = fgetxattr(m_descriptor, textEncodingAttribute, value, sizeof value);
    return size > 0 ? QByteArray(value, size) : QByteArray();
}

} // namespace quillory
