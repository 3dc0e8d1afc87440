#pragma once

#include "document/FileOps.h"

namespace quillory {

/// Owns an open file and closes it at the end. What close() answers is of no use: whatever must
/// have reached the disk was brought there, and asked about, by sync().
class FileHandle
{
public:
    FileHandle() = default;
    FileHandle(FileOps& ops, int descriptor) : m_ops(&ops), m_descriptor(descriptor) {}
    FileHandle(FileHandle&& other) noexcept
        : m_ops(other.m_ops), m_descriptor(std::exchange(other.m_descriptor, -1))
    {}
    FileHandle& operator=(FileHandle&& other) noexcept
    {
        std::swap(m_ops, other.m_ops);
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle()
    {
        if (m_descriptor >= 0)
            (void)m_ops->close(m_descriptor);
    }

    /// See FileOps::open.
    static FileResult<FileHandle> open(FileOps& ops, const QByteArray& path, int flags,
                                       mode_t mode = 0)
    {
        const FileResult<int> opened = ops.open(path, flags, mode);
        if (!opened)
            return FileResult<FileHandle>::failed(opened.error());
        return FileHandle(ops, *opened);
    }

    int descriptor() const { return m_descriptor; }

private:
    FileOps* m_ops = nullptr;
    int m_descriptor = -1;
};

} // namespace quillory
