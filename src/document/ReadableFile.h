#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>
#include <functional>
#include <sys/stat.h>
#include <sys/types.h>

namespace quillory {

/// A file open for reading.
class ReadableFile
{
public:
    /// As read(2).
    using ReadCall = std::function<ssize_t(int descriptor, char* target, size_t size)>;

    explicit ReadableFile(const QString& path);
    ReadableFile(const ReadableFile&) = delete;
    ReadableFile& operator=(const ReadableFile&) = delete;
    ~ReadableFile();

    bool isOpen() const { return m_descriptor >= 0; }
    int descriptor() const { return m_descriptor; }
    /// In the place of the system's own, for tests.
    void setReadCall(const ReadCall& call) { m_read = call; }

    /// False, with errno set, when the file does not tell.
    bool getStatus(struct stat& status) const { return fstat(m_descriptor, &status) == 0; }

    /// Reads up to \a size bytes to \a target; fewer mean the file's end, a negative number -errno:
    /// -ECANCELED once \a cancelled, which may be null, is set.
    qsizetype read(char* target, qsizetype size, const std::atomic_bool* cancelled = nullptr) const;

    /// The file's text-encoding attribute; empty where it has none.
    QByteArray encodingAttribute() const;

private:
    int m_descriptor;
    ReadCall m_read;
};

} // namespace quillory
