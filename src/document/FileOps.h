#pragma once

#include "document/FileResult.h"

#include <QByteArrayList>
#include <cerrno>
#include <sys/stat.h>

namespace quillory {

/// The calls to the file system that writing a document is made of: the one seam through which
/// tests make a call fail, or cut the power.
///
/// Paths are in the file system's own bytes, descriptors those of the process, sizes and offsets
/// bytes. Each public call repeats the virtual one below while that answers EINTR.
class FileOps
{
private:
    template<class Call>
    static auto uninterrupted(Call&& call)
    {
        for (;;) {
            auto result = call();
            if (result.error() != EINTR)
                return result;
        }
    }

public:
    FileOps() = default;
    FileOps(const FileOps&) = delete;
    FileOps& operator=(const FileOps&) = delete;
    virtual ~FileOps() = default;

    /// \a flags are those of open(2); \a mode counts for a file that the call makes.
    FileResult<int> open(const QByteArray& path, int flags, mode_t mode = 0)
    {
        return uninterrupted([&] { return tryOpen(path, flags, mode); });
    }
    /// Never repeated: the descriptor is gone, whatever the answer.
    FileStatus close(int descriptor) { return tryClose(descriptor); }
    /// How many bytes were read from \a offset on; 0 at the end of the file.
    FileResult<qint64> read(int descriptor, char* target, qint64 size, qint64 offset)
    {
        return uninterrupted([&] { return tryRead(descriptor, target, size, offset); });
    }
    /// How many bytes were written at \a offset: maybe fewer than asked for.
    FileResult<qint64> write(int descriptor, const char* bytes, qint64 size, qint64 offset)
    {
        return uninterrupted([&] { return tryWrite(descriptor, bytes, size, offset); });
    }
    /// Brings a file's bytes, or a folder's entries, to the device.
    FileStatus sync(int descriptor)
    {
        return uninterrupted([&] { return trySync(descriptor); });
    }
    /// Reserves room on the device for the first \a size bytes; the file's size stays.
    FileStatus allocate(int descriptor, qint64 size)
    {
        return uninterrupted([&] { return tryAllocate(descriptor, size); });
    }
    FileStatus truncate(int descriptor, qint64 size)
    {
        return uninterrupted([&] { return tryTruncate(descriptor, size); });
    }
    FileResult<struct stat> status(int descriptor)
    {
        return uninterrupted([&] { return tryStatus(descriptor); });
    }
    /// Of the link itself where \a path is a symbolic link.
    FileResult<struct stat> linkStatus(const QByteArray& path)
    {
        return uninterrupted([&] { return tryLinkStatus(path); });
    }
    FileResult<QByteArray> readLink(const QByteArray& path)
    {
        return uninterrupted([&] { return tryReadLink(path); });
    }
    /// Locks an open file for as long as it stays open; EWOULDBLOCK while somebody else does.
    FileStatus lock(int descriptor)
    {
        return uninterrupted([&] { return tryLock(descriptor); });
    }
    FileStatus changeMode(int descriptor, mode_t mode)
    {
        return uninterrupted([&] { return tryChangeMode(descriptor, mode); });
    }
    FileStatus changeOwner(int descriptor, uid_t owner, gid_t group)
    {
        return uninterrupted([&] { return tryChangeOwner(descriptor, owner, group); });
    }
    /// Extended attributes; an access list is the one named system.posix_acl_access.
    FileResult<QByteArrayList> attributeNames(int descriptor)
    {
        return uninterrupted([&] { return tryAttributeNames(descriptor); });
    }
    FileResult<QByteArray> attribute(int descriptor, const QByteArray& name)
    {
        return uninterrupted([&] { return tryAttribute(descriptor, name); });
    }
    FileStatus setAttribute(int descriptor, const QByteArray& name, const QByteArray& value)
    {
        return uninterrupted([&] { return trySetAttribute(descriptor, name, value); });
    }
    FileStatus removeAttribute(int descriptor, const QByteArray& name)
    {
        return uninterrupted([&] { return tryRemoveAttribute(descriptor, name); });
    }
    /// Gives the file a name; EEXIST where that is taken.
    FileStatus link(int descriptor, const QByteArray& path)
    {
        return uninterrupted([&] { return tryLink(descriptor, path); });
    }

    enum class Replacing
    {
        No, ///< EEXIST where the new name is taken
        Yes
    };
    FileStatus rename(const QByteArray& from, const QByteArray& to, Replacing replacing)
    {
        return uninterrupted([&] { return tryRename(from, to, replacing); });
    }
    FileStatus remove(const QByteArray& path)
    {
        return uninterrupted([&] { return tryRemove(path); });
    }
    FileStatus makeFolder(const QByteArray& path, mode_t mode)
    {
        return uninterrupted([&] { return tryMakeFolder(path, mode); });
    }
    /// ENOTEMPTY for one that holds something.
    FileStatus removeFolder(const QByteArray& path)
    {
        return uninterrupted([&] { return tryRemoveFolder(path); });
    }
    /// The names in a folder, without "." and "..", in no order.
    FileResult<QByteArrayList> names(const QByteArray& folder)
    {
        return uninterrupted([&] { return tryNames(folder); });
    }
    /// Whether the process may write what \a path leads to; EACCES or EROFS when not.
    FileStatus mayWrite(const QByteArray& path)
    {
        return uninterrupted([&] { return tryMayWrite(path); });
    }

protected:
    virtual FileResult<int> tryOpen(const QByteArray& path, int flags, mode_t mode) = 0;
    virtual FileStatus tryClose(int descriptor) = 0;
    virtual FileResult<qint64> tryRead(int descriptor, char* target, qint64 size,
                                       qint64 offset) = 0;
    virtual FileResult<qint64> tryWrite(int descriptor, const char* bytes, qint64 size,
                                        qint64 offset) = 0;
    virtual FileStatus trySync(int descriptor) = 0;
    virtual FileStatus tryAllocate(int descriptor, qint64 size) = 0;
    virtual FileStatus tryTruncate(int descriptor, qint64 size) = 0;
    virtual FileResult<struct stat> tryStatus(int descriptor) = 0;
    virtual FileResult<struct stat> tryLinkStatus(const QByteArray& path) = 0;
    virtual FileResult<QByteArray> tryReadLink(const QByteArray& path) = 0;
    virtual FileStatus tryLock(int descriptor) = 0;
    virtual FileStatus tryChangeMode(int descriptor, mode_t mode) = 0;
    virtual FileStatus tryChangeOwner(int descriptor, uid_t owner, gid_t group) = 0;
    virtual FileResult<QByteArrayList> tryAttributeNames(int descriptor) = 0;
    virtual FileResult<QByteArray> tryAttribute(int descriptor, const QByteArray& name) = 0;
    virtual FileStatus trySetAttribute(int descriptor, const QByteArray& name,
                                       const QByteArray& value) = 0;
    virtual FileStatus tryRemoveAttribute(int descriptor, const QByteArray& name) = 0;
    virtual FileStatus tryLink(int descriptor, const QByteArray& path) = 0;
    virtual FileStatus tryRename(const QByteArray& from, const QByteArray& to,
                                 Replacing replacing) = 0;
    virtual FileStatus tryRemove(const QByteArray& path) = 0;
    virtual FileStatus tryMakeFolder(const QByteArray& path, mode_t mode) = 0;
    virtual FileStatus tryRemoveFolder(const QByteArray& path) = 0;
    virtual FileResult<QByteArrayList> tryNames(const QByteArray& folder) = 0;
    virtual FileStatus tryMayWrite(const QByteArray& path) = 0;
};

} // namespace quillory
