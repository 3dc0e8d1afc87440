#include "document/SystemFileOps.h"

#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/file.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillory {

namespace {

FileStatus statusOf(int answer)
{
    return answer < 0 ? FileStatus::failed(errno) : FileStatus(Nothing());
}

FileResult<qint64> countOf(ssize_t answer)
{
    return answer < 0 ? FileResult<qint64>::failed(errno) : FileResult<qint64>(answer);
}

/// What \a call, given a buffer and its size, fills in. Asks for the size first, and again when the
/// value has grown between the two calls.
template<class Call>
FileResult<QByteArray> sizedValue(Call&& call)
{
    for (;;) {
        const ssize_t size = call(nullptr, 0);
        if (size < 0)
            return FileResult<QByteArray>::failed(errno);
        QByteArray value(size, Qt::Uninitialized);
        const ssize_t filled = size > 0 ? call(value.data(), size_t(size)) : 0;
        if (filled >= 0) {
            value.truncate(filled);
            return value;
        }
        if (errno != ERANGE)
            return FileResult<QByteArray>::failed(errno);
    }
}

} // namespace

FileResult<int> SystemFileOps::tryOpen(const QByteArray& path, int flags, mode_t mode)
{
    const int descriptor = ::open(path.constData(), flags | O_CLOEXEC | O_NOCTTY, mode);
    return descriptor < 0 ? FileResult<int>::failed(errno) : FileResult<int>(descriptor);
}

FileStatus SystemFileOps::tryClose(int descriptor)
{
    return statusOf(::close(descriptor));
}

FileResult<qint64> SystemFileOps::tryRead(int descriptor, char* target, qint64 size, qint64 offset)
{
    return countOf(::pread(descriptor, target, size_t(size), offset));
}

FileResult<qint64> SystemFileOps::tryWrite(int descriptor, const char* bytes, qint64 size,
                                           qint64 offset)
{
    return countOf(::pwrite(descriptor, bytes, size_t(size), offset));
}

FileStatus SystemFileOps::trySync(int descriptor)
{
    return statusOf(::fsync(descriptor));
}

// posix_fallocate() would write to every block where the file system cannot reserve room.
FileStatus SystemFileOps::tryAllocate(int descriptor, qint64 size)
{
    return statusOf(::fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, size));
}

FileStatus SystemFileOps::tryTruncate(int descriptor, qint64 size)
{
    return statusOf(::ftruncate(descriptor, size));
}

FileResult<struct stat> SystemFileOps::tryStatus(int descriptor)
{
    using Answer = FileResult<struct stat>;
    struct stat status = {};
    return ::fstat(descriptor, &status) < 0 ? Answer::failed(errno) : Answer(status);
}

FileResult<struct stat> SystemFileOps::tryLinkStatus(const QByteArray& path)
{
    using Answer = FileResult<struct stat>;
    struct stat status = {};
    return ::lstat(path.constData(), &status) < 0 ? Answer::failed(errno) : Answer(status);
}

FileResult<QByteArray> SystemFileOps::tryReadLink(const QByteArray& path)
{
    char target[PATH_MAX];
    const ssize_t size = ::readlink(path.constData(), target, sizeof target);
    if (size < 0)
        return FileResult<QByteArray>::failed(errno);
    return QByteArray(target, size);
}

FileStatus SystemFileOps::tryLock(int descriptor)
{
    return statusOf(::flock(descriptor, LOCK_EX | LOCK_NB));
}

FileStatus SystemFileOps::tryChangeMode(int descriptor, mode_t mode)
{
    return statusOf(::fchmod(descriptor, mode));
}

FileStatus SystemFileOps::tryChangeOwner(int descriptor, uid_t owner, gid_t group)
{
    return statusOf(::fchown(descriptor, owner, group));
}

FileResult<QByteArrayList> SystemFileOps::tryAttributeNames(int descriptor)
{
    const auto list = sizedValue(
        [descriptor](char* names, size_t size) { return ::flistxattr(descriptor, names, size); });
    if (!list)
        return FileResult<QByteArrayList>::failed(list.error());
    QByteArrayList names = list->split('\0');
    names.removeLast(); // what follows the last terminator
    return names;
}

FileResult<QByteArray> SystemFileOps::tryAttribute(int descriptor, const QByteArray& name)
{
    return sizedValue([&](char* value, size_t size) {
        return ::fgetxattr(descriptor, name.constData(), value, size);
    });
}

FileStatus SystemFileOps::trySetAttribute(int descriptor, const QByteArray& name,
                                          const QByteArray& value)
{
    return statusOf(
        ::fsetxattr(descriptor, name.constData(), value.constData(), size_t(value.size()), 0));
}

FileStatus SystemFileOps::tryRemoveAttribute(int descriptor, const QByteArray& name)
{
    return statusOf(::fremovexattr(descriptor, name.constData()));
}

// The way that open(2) shows for O_TMPFILE; AT_EMPTY_PATH would ask for a privilege.
FileStatus SystemFileOps::tryLink(int descriptor, const QByteArray& path)
{
    const QByteArray open = "/proc/self/fd/" + QByteArray::number(descriptor);
    return statusOf(
        ::linkat(AT_FDCWD, open.constData(), AT_FDCWD, path.constData(), AT_SYMLINK_FOLLOW));
}

FileStatus SystemFileOps::tryRename(const QByteArray& from, const QByteArray& to,
                                    Replacing replacing)
{
    return statusOf(::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(),
                                replacing == Replacing::Yes ? 0U : RENAME_NOREPLACE));
}

FileStatus SystemFileOps::tryRemove(const QByteArray& path)
{
    return statusOf(::unlink(path.constData()));
}

FileStatus SystemFileOps::tryMakeFolder(const QByteArray& path, mode_t mode)
{
    return statusOf(::mkdir(path.constData(), mode));
}

FileStatus SystemFileOps::tryRemoveFolder(const QByteArray& path)
{
    return statusOf(::rmdir(path.constData()));
}

FileResult<QByteArrayList> SystemFileOps::tryNames(const QByteArray& folder)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> open(::opendir(folder.constData()), ::closedir);
    if (!open)
        return FileResult<QByteArrayList>::failed(errno);
    QByteArrayList names;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(open.get());
        if (!entry)
            break;
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..")
            names.append(name);
    }
    return errno != 0 ? FileResult<QByteArrayList>::failed(errno)
                      : FileResult<QByteArrayList>(names);
}

FileStatus SystemFileOps::tryMayWrite(const QByteArray& path)
{
    return statusOf(::faccessat(AT_FDCWD, path.constData(), W_OK, AT_EACCESS));
}

} // namespace quillory
