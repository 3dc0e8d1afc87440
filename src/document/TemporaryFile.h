#pragma once

#include "document/FileHandle.h"

namespace quillory {

/// A new file that gets its name only when it is complete. Where the file system can, it has none
/// until then, so that not even a crash leaves it behind; elsewhere it has a random one that starts
/// with a dot. A file that is not published goes away with this object.
class TemporaryFile
{
public:
    TemporaryFile() = default;
    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&& other) noexcept;
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    /// Makes an empty file in \a folder, open for reading and writing, with the permissions \a mode
    /// less those that the umask takes.
    static FileResult<TemporaryFile> in(FileOps& ops, const QByteArray& folder, mode_t mode);

    int descriptor() const { return m_file.descriptor(); }

    /// Names the file \a path, which must lie in its folder. EEXIST when another file has that name
    /// and \a replacing is No. The folder is not synced.
    FileStatus publish(const QByteArray& path, FileOps::Replacing replacing);

    /// The file, once it is published.
    FileHandle takeFile() { return std::move(m_file); }

private:
    TemporaryFile(FileOps& ops, QByteArray folder, QByteArray name, FileHandle file);

    FileOps* m_ops = nullptr;
    QByteArray m_folder;
    QByteArray m_path; ///< its own name for now; empty while it has none
    FileHandle m_file;
};

} // namespace quillory
