#pragma once

#include "document/FileOps.h"

namespace quillory {

/// The file system of the machine: one call to the kernel each, with its answer as it comes.
class SystemFileOps : public FileOps
{
protected:
    FileResult<int> tryOpen(const QByteArray& path, int flags, mode_t mode) override;
    FileStatus tryClose(int descriptor) override;
    FileResult<qint64> tryRead(int descriptor, char* target, qint64 size, qint64 offset) override;
    FileResult<qint64> tryWrite(int descriptor, const char* bytes, qint64 size,
                                qint64 offset) override;
    FileStatus trySync(int descriptor) override;
    FileStatus tryAllocate(int descriptor, qint64 size) override;
    FileStatus tryTruncate(int descriptor, qint64 size) override;
    FileResult<struct stat> tryStatus(int descriptor) override;
    FileResult<struct stat> tryLinkStatus(const QByteArray& path) override;
    FileResult<QByteArray> tryReadLink(const QByteArray& path) override;
    FileStatus tryLock(int descriptor) override;
    FileStatus tryChangeMode(int descriptor, mode_t mode) override;
    FileStatus tryChangeOwner(int descriptor, uid_t owner, gid_t group) override;
    FileResult<QByteArrayList> tryAttributeNames(int descriptor) override;
    FileResult<QByteArray> tryAttribute(int descriptor, const QByteArray& name) override;
    FileStatus trySetAttribute(int descriptor, const QByteArray& name,
                               const QByteArray& value) override;
    FileStatus tryRemoveAttribute(int descriptor, const QByteArray& name) override;
    FileStatus tryLink(int descriptor, const QByteArray& path) override;
    FileStatus tryRename(const QByteArray& from, const QByteArray& to,
                         Replacing replacing) override;
    FileStatus tryRemove(const QByteArray& path) override;
    FileStatus tryMakeFolder(const QByteArray& path, mode_t mode) override;
    FileStatus tryRemoveFolder(const QByteArray& path) override;
    FileResult<QByteArrayList> tryNames(const QByteArray& folder) override;
    FileStatus tryMayWrite(const QByteArray& path) override;
};

} // namespace quillory
