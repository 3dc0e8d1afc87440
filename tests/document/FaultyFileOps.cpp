#include "document/FaultyFileOps.h"

namespace quillory {

int FaultyFileOps::faultOfNextCall()
{
    ++m_calls;
    const bool fails = m_fault.atCall > 0 &&
                       (m_fault.persistent ? m_calls >= m_fault.atCall : m_calls == m_fault.atCall);
    return fails ? m_fault.error : 0;
}

FileResult<int> FaultyFileOps::tryOpen(const QByteArray& path, int flags, mode_t mode)
{
    return counted([&] {
        auto opened = m_real.open(path, flags, mode);
        m_openFiles += opened ? 1 : 0;
        return opened;
    });
}

// The kernel lets go of a descriptor even when close() fails.
FileStatus FaultyFileOps::tryClose(int descriptor)
{
    --m_openFiles;
    const FileStatus closed = m_real.close(descriptor);
    return counted([&] { return closed; });
}

FileResult<qint64> FaultyFileOps::tryRead(int descriptor, char* target, qint64 size, qint64 offset)
{
    return counted([&] { return m_real.read(descriptor, target, size, offset); });
}

FileResult<qint64> FaultyFileOps::tryWrite(int descriptor, const char* bytes, qint64 size,
                                           qint64 offset)
{
    const int error = faultOfNextCall();
    if (error > 0)
        return FileResult<qint64>::failed(error);
    const QByteArray zeroes(error == wrongWrite ? size : 0, '\0');
    if (error == wrongWrite)
        bytes = zeroes.constData();
    return m_real.write(descriptor, bytes, error == shortWrite ? (size + 1) / 2 : size, offset);
}

FileStatus FaultyFileOps::trySync(int descriptor)
{
    return counted([&]() -> FileStatus {
        return m_syncing == Syncing::Real ? m_real.sync(descriptor) : FileStatus(Nothing());
    });
}

FileStatus FaultyFileOps::tryAllocate(int descriptor, qint64 size)
{
    return counted([&] { return m_real.allocate(descriptor, size); });
}

FileStatus FaultyFileOps::tryTruncate(int descriptor, qint64 size)
{
    return counted([&] { return m_real.truncate(descriptor, size); });
}

FileResult<struct stat> FaultyFileOps::tryStatus(int descriptor)
{
    return counted([&] { return m_real.status(descriptor); });
}

FileResult<struct stat> FaultyFileOps::tryLinkStatus(const QByteArray& path)
{
    return counted([&] { return m_real.linkStatus(path); });
}

FileResult<QByteArray> FaultyFileOps::tryReadLink(const QByteArray& path)
{
    return counted([&] { return m_real.readLink(path); });
}

FileStatus FaultyFileOps::tryLock(int descriptor)
{
    return counted([&] { return m_real.lock(descriptor); });
}

FileStatus FaultyFileOps::tryChangeMode(int descriptor, mode_t mode)
{
    return counted([&] { return m_real.changeMode(descriptor, mode); });
}

FileStatus FaultyFileOps::tryChangeOwner(int descriptor, uid_t owner, gid_t group)
{
    return counted([&] { return m_real.changeOwner(descriptor, owner, group); });
}

FileResult<QByteArrayList> FaultyFileOps::tryAttributeNames(int descriptor)
{
    return counted([&] { return m_real.attributeNames(descriptor); });
}

FileResult<QByteArray> FaultyFileOps::tryAttribute(int descriptor, const QByteArray& name)
{
    return counted([&] { return m_real.attribute(descriptor, name); });
}

FileStatus FaultyFileOps::trySetAttribute(int descriptor, const QByteArray& name,
                                          const QByteArray& value)
{
    return counted([&] { return m_real.setAttribute(descriptor, name, value); });
}

FileStatus FaultyFileOps::tryRemoveAttribute(int descriptor, const QByteArray& name)
{
    return counted([&] { return m_real.removeAttribute(descriptor, name); });
}

FileStatus FaultyFileOps::tryLink(int descriptor, const QByteArray& path)
{
    return counted([&] { return m_real.link(descriptor, path); });
}

FileStatus FaultyFileOps::tryRename(const QByteArray& from, const QByteArray& to,
                                    Replacing replacing)
{
    return counted([&] { return m_real.rename(from, to, replacing); });
}

FileStatus FaultyFileOps::tryRemove(const QByteArray& path)
{
    return counted([&] { return m_real.remove(path); });
}

FileStatus FaultyFileOps::tryMakeFolder(const QByteArray& path, mode_t mode)
{
    return counted([&] { return m_real.makeFolder(path, mode); });
}

FileStatus FaultyFileOps::tryRemoveFolder(const QByteArray& path)
{
    return counted([&] { return m_real.removeFolder(path); });
}

FileResult<QByteArrayList> FaultyFileOps::tryNames(const QByteArray& folder)
{
    return counted([&] { return m_real.names(folder); });
}

FileStatus FaultyFileOps::tryMayWrite(const QByteArray& path)
{
    return counted([&] { return m_real.mayWrite(path); });
}

} // namespace quillory
