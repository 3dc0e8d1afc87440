#include "document/FileReplacement.h"

#include "document/FileIdentity.h"
#include "document/FileMetadata.h"
#include "document/FileTransfer.h"
#include "document/TemporaryFile.h"

namespace quillory {

namespace {

constexpr mode_t privateMode = 0600;
constexpr mode_t newFileMode = 0666; ///< less the umask

/// The folder does not let this process make or move files, though the file itself may be writable.
bool isRefusedByFolder(int error)
{
    return error == EACCES || error == EPERM || error == EBUSY || error == EXDEV;
}

class Replacement
{
public:
    Replacement(const WriteTask& task, const OldFile* old) : m_task(task), m_old(old) {}

    WriteAttempt run()
    {
        auto temporary = TemporaryFile::in(m_task.ops, folder(), m_old ? privateMode : newFileMode);
        if (!temporary)
            return refusedOrFailed(FileStep::Create, temporary.error());
        m_descriptor = temporary->descriptor();
        if (m_old && !readMetadata())
            return notPossible(FileStep::Metadata, EPERM);
        if (const FileError error = fill(); error.code != 0)
            return error.step == FileStep::Metadata ? notPossible(error.step, error.code)
                                                    : WriteAttempt::failed(error);
        return publish(*temporary);
    }

private:
    QByteArray folder() const { return folderOf(m_task.target); }

    FileError errorAt(FileStep step, int code) const { return {code, step, m_task.target}; }

    WriteAttempt notPossible(FileStep step, int code) const
    {
        return WriteAttempt::of(WriteAttempt::Outcome::NotPossible, errorAt(step, code));
    }

    WriteAttempt refusedOrFailed(FileStep step, int code) const
    {
        return m_old && isRefusedByFolder(code) ? notPossible(step, code)
                                                : WriteAttempt::failed(errorAt(step, code));
    }

    bool readMetadata()
    {
        auto metadata = FileMetadata::of(m_task.ops, m_old->file.descriptor());
        m_metadata = *metadata;
        return bool(metadata);
    }

    FileStatus applyMetadata()
    {
        return m_old ? m_metadata.applyTo(m_task.ops, m_descriptor) : FileStatus(Nothing());
    }

    /// Brings bytes and metadata to the device, and looks whether they are there.
    FileError fill()
    {
        FileOps& ops = m_task.ops;
        if (const FileStatus done = allocateIfSupported(ops, m_descriptor, m_task.size); !done)
            return errorAt(FileStep::Allocate, done.error());
        // Once before the bytes, to find out early; once after, since writing clears set-ID bits.
        if (const FileStatus done = applyMetadata(); !done)
            return errorAt(FileStep::Metadata, done.error());
        if (const FileStatus done = writeBytes(ops, m_descriptor, m_task.source); !done)
            return errorAt(done.error() == ECANCELED ? FileStep::Encode : FileStep::Write,
                           done.error());
        if (const FileStatus done = applyMetadata(); !done)
            return errorAt(FileStep::Metadata, done.error());
        m_task.setAttributes(m_descriptor);
        if (const FileStatus done = ops.sync(m_descriptor); !done)
            return errorAt(FileStep::Sync, done.error());
        if (const FileStatus done = compareBytes(ops, m_descriptor, m_task.source); !done)
            return errorAt(FileStep::Verify, done.error());
        const auto status = ops.status(m_descriptor);
        m_status = *status;
        return status ? FileError() : errorAt(FileStep::Inspect, status.error());
    }

    bool isChangedByOther() const
    {
        if (!m_old || !m_task.mustBeUnchanged)
            return false;
        const auto now = m_task.ops.linkStatus(m_task.target);
        return now && !FileIdentity::of(m_old->status).matches(*now);
    }

    /// Whether the target's name leads to the new file; a server may do what it says it did not.
    bool isInPlace() const
    {
        const auto now = m_task.ops.linkStatus(m_task.target);
        return now && now->st_dev == m_status.st_dev && now->st_ino == m_status.st_ino;
    }

    WriteAttempt publish(TemporaryFile& temporary)
    {
        if (isChangedByOther())
            return WriteAttempt::changedByOther();
        const FileStatus published = temporary.publish(
            m_task.target, m_old ? FileOps::Replacing::Yes : FileOps::Replacing::No);
        if (!published && !isInPlace()) {
            if (!m_old && published.error() == EEXIST)
                return WriteAttempt::changedByOther();
            return refusedOrFailed(FileStep::Publish, published.error());
        }
        WriteAttempt attempt;
        attempt.status = m_status;
        if (const FileStatus synced = syncFolder(m_task.ops, folder()); !synced) {
            attempt.disk = DiskState::Unconfirmed;
            attempt.error = errorAt(FileStep::Sync, synced.error());
            return attempt;
        }
        attempt.outcome = WriteAttempt::Outcome::Written;
        attempt.disk = DiskState::New;
        return attempt;
    }

    const WriteTask& m_task;
    const OldFile* m_old;
    FileMetadata m_metadata; ///< of the old file
    int m_descriptor = -1;
    struct stat m_status = {}; ///< of the new file, complete
};

} // namespace

WriteAttempt replaceFile(const WriteTask& task, const OldFile* old)
{
    return Replacement(task, old).run();
}

} // namespace quillory
