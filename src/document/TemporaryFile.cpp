#include "document/TemporaryFile.h"

#include <QRandomGenerator>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr int attempts = 8; ///< at a random name of 64 bits that no file has

QByteArray randomPathIn(const QByteArray& folder)
{
    return folder + "/.quillory-" +
           QByteArray::number(QRandomGenerator::system()->generate64(), 16) + ".tmp";
}

/// Whether the kernel's view of the open files is there, through which a file gets its first name.
bool canBeNamedLater(FileOps& ops, int descriptor)
{
    return bool(ops.linkStatus("/proc/self/fd/" + QByteArray::number(descriptor)));
}

} // namespace

TemporaryFile::TemporaryFile(FileOps& ops, QByteArray folder, QByteArray name, FileHandle file)
    : m_ops(&ops), m_folder(std::move(folder)), m_path(std::move(name)), m_file(std::move(file))
{}

TemporaryFile::TemporaryFile(TemporaryFile&& other) noexcept
    : m_ops(other.m_ops), m_folder(std::move(other.m_folder)),
      m_path(std::exchange(other.m_path, QByteArray())), m_file(std::move(other.m_file))
{}

TemporaryFile& TemporaryFile::operator=(TemporaryFile&& other) noexcept
{
    std::swap(m_ops, other.m_ops);
    std::swap(m_folder, other.m_folder);
    std::swap(m_path, other.m_path);
    std::swap(m_file, other.m_file);
    return *this;
}

TemporaryFile::~TemporaryFile()
{
    if (!m_path.isEmpty())
        (void)m_ops->remove(m_path);
}

FileResult<TemporaryFile> TemporaryFile::in(FileOps& ops, const QByteArray& folder, mode_t mode)
{
    auto unnamed = FileHandle::open(ops, folder, O_TMPFILE | O_RDWR, mode);
    if (unnamed && canBeNamedLater(ops, unnamed->descriptor()))
        return TemporaryFile(ops, folder, QByteArray(), *std::move(unnamed));

    // Whatever the reason was, what the named way answers is the better one to report.
    int error = EEXIST;
    for (int attempt = 0; attempt < attempts && error == EEXIST; ++attempt) {
        const QByteArray path = randomPathIn(folder);
        auto named = FileHandle::open(ops, path, O_CREAT | O_EXCL | O_RDWR, mode);
        if (named)
            return TemporaryFile(ops, folder, path, *std::move(named));
        error = named.error();
    }
    return FileResult<TemporaryFile>::failed(error);
}

FileStatus TemporaryFile::publish(const QByteArray& path, FileOps::Replacing replacing)
{
    if (m_path.isEmpty() && replacing == FileOps::Replacing::No)
        return m_ops->link(m_file.descriptor(), path);
    for (int attempt = 0; attempt < attempts && m_path.isEmpty(); ++attempt) {
        const QByteArray name = randomPathIn(m_folder);
        FileStatus named = m_ops->link(m_file.descriptor(), name);
        if (named)
            m_path = name;
        else if (named.error() != EEXIST)
            return named;
    }
    if (m_path.isEmpty())
        return FileStatus::failed(EEXIST);
    FileStatus renamed = m_ops->rename(m_path, path, replacing);
    if (!renamed && renamed.error() == EINVAL && replacing == FileOps::Replacing::No) {
        // The file system cannot refuse to replace; ask, then replace.
        if (m_ops->linkStatus(path))
            return FileStatus::failed(EEXIST);
        renamed = m_ops->rename(m_path, path, FileOps::Replacing::Yes);
    }
    if (renamed)
        m_path.clear();
    return renamed;
}

} // namespace quillory
