#pragma once

#include "document/FileOps.h"

namespace quillory {

/// Passes calls on, counts them, and lets one of them, or all from one on, fail.
class FaultyFileOps : public FileOps
{
public:
    /// As an error: a write takes half of the bytes; other calls do their work.
    static constexpr int shortWrite = -1;
    /// A write answers that all was written, and writes zeroes; other calls do their work.
    static constexpr int wrongWrite = -2;

    struct Fault
    {
        int atCall = 0; ///< from 1; 0 for none
        int error = 0;
        bool persistent = false;
    };

    enum class Syncing
    {
        Skip, ///< answers without waiting for the device
        Real
    };

    FaultyFileOps(FileOps& real, Fault fault, Syncing syncing = Syncing::Skip)
        : m_real(real), m_fault(fault), m_syncing(syncing)
    {}

    int calls() const { return m_calls; }
    int openFiles() const { return m_openFiles; }

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

private:
    /// Counts a call; the error it must answer, or 0.
    int faultOfNextCall();

    template<class Call>
    auto counted(Call&& call)
    {
        const int error = faultOfNextCall();
        return error > 0 ? decltype(call())::failed(error) : call();
    }

    FileOps& m_real;
    Fault m_fault;
    Syncing m_syncing;
    int m_calls = 0;
    int m_openFiles = 0;
};

} // namespace quillory
