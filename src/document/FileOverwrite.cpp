#include "document/FileOverwrite.h"

#include "document/FileIdentity.h"
#include "document/FileMetadata.h"
#include "document/FileTransfer.h"

#include <QFile>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr int openFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK;

class Overwrite
{
public:
    Overwrite(const WriteTask& task, const OldFile& old, RecoveryStore& store,
              const RecoveryEntry& entry, QString& recoveryId)
        : m_task(task), m_old(old), m_store(store), m_entry(entry), m_recoveryId(recoveryId)
    {}

    WriteAttempt run()
    {
        WriteAttempt attempt = write();
        attempt.isTextStored = m_isTextStored;
        return attempt;
    }

private:
    WriteAttempt write()
    {
        FileOps& ops = m_task.ops;
        const auto metadata = FileMetadata::of(ops, m_old.file.descriptor());
        if (!metadata)
            return failed(FileStep::Inspect, metadata.error());
        m_metadata = *metadata;
        auto file = openForWriting();
        if (!file)
            return failed(FileStep::Open, file.error());
        m_descriptor = file->descriptor();
        if (const auto status = ops.status(m_descriptor); !status)
            return failed(FileStep::Inspect, status.error());
        else if (isOtherFile(*status))
            return WriteAttempt::changedByOther();

        if (const FileStatus done = allocateIfSupported(ops, m_descriptor, m_task.size); !done)
            return unchanged(FileStep::Allocate, done.error());
        const auto before = ops.status(m_descriptor); // reserving room may have changed its time
        if (!before)
            return unchanged(FileStep::Inspect, before.error());
        if (const FileStatus done = storeBoth(); !done)
            return unchanged(FileStep::StoreRecovery, done.error());
        if (isChangedSince(*before)) {
            (void)m_store.removeRecord(m_previousRecord);
            return WriteAttempt::changedByOther();
        }
        if (const FileError error = writeOver(m_task.source, m_task.size); error.code != 0)
            return putBack(error);
        m_task.setAttributes(m_descriptor);

        WriteAttempt attempt;
        attempt.outcome = WriteAttempt::Outcome::Written;
        attempt.disk = DiskState::New;
        attempt.status = statusNow();
        (void)m_store.removeRecord(m_previousRecord);
        return attempt;
    }

    FileError errorAt(FileStep step, int code) const
    {
        return {code, step,
                step == FileStep::StoreRecovery ? QFile::encodeName(m_store.folder())
                                                : m_task.target};
    }

    WriteAttempt failed(FileStep step, int code) const
    {
        return WriteAttempt::failed(errorAt(step, code));
    }

    /// Fails before the first byte; gives back the room that was reserved. Reserving it may have
    /// changed the file's time and cleared set-ID bits.
    WriteAttempt unchanged(FileStep step, int code) const
    {
        if (const auto status = statusNow())
            (void)m_task.ops.truncate(m_descriptor, status->st_size);
        (void)m_metadata.applyTo(m_task.ops, m_descriptor);
        WriteAttempt attempt = failed(step, code);
        attempt.status = statusNow();
        return attempt;
    }

    bool isChangedSince(const struct stat& before) const
    {
        const auto now = statusNow();
        return m_task.mustBeUnchanged && now && !FileIdentity::of(before).matches(*now);
    }

    /// A file that its owner protected is made writable for as long as opening it takes: whoever
    /// saves it has been asked.
    FileResult<FileHandle> openForWriting() const
    {
        FileOps& ops = m_task.ops;
        auto file = FileHandle::open(ops, m_task.target, openFlags);
        if (file || file.error() != EACCES || (m_metadata.mode & S_IWUSR) != 0)
            return file;
        if (!ops.changeMode(m_old.file.descriptor(), m_metadata.mode | S_IWUSR))
            return file;
        file = FileHandle::open(ops, m_task.target, openFlags);
        (void)ops.changeMode(m_old.file.descriptor(), m_metadata.mode);
        return file;
    }

    bool isOtherFile(const struct stat& status) const
    {
        const FileIdentity old = FileIdentity::of(m_old.status);
        return m_task.mustBeUnchanged ? !old.matches(status)
                                      : old.device != status.st_dev || old.inode != status.st_ino;
    }

    FileStatus storeBoth()
    {
        const auto id = m_store.store(m_entry, m_task.source, m_recoveryId);
        if (!id)
            return FileStatus::failed(id.error());
        m_recoveryId = *id;
        m_isTextStored = true;
        const auto previous =
            m_store.storePrevious(*id, m_entry, bytesOf(m_task.ops, m_old.file.descriptor()));
        m_previousRecord = *previous;
        return previous ? FileStatus(Nothing()) : FileStatus::failed(previous.error());
    }

    /// Makes \a source the file's bytes, on the device and verified. The file shrinks last, so that
    /// it lacks as little as possible if this breaks off.
    FileError writeOver(const ByteSource& source, qint64 size) const
    {
        FileOps& ops = m_task.ops;
        if (const FileStatus done = writeBytes(ops, m_descriptor, source); !done)
            return errorAt(done.error() == ECANCELED ? FileStep::Encode : FileStep::Write,
                           done.error());
        if (const FileStatus done = ops.truncate(m_descriptor, size); !done)
            return errorAt(FileStep::Write, done.error());
        (void)m_metadata.applyTo(ops, m_descriptor); // writing may have cleared set-ID bits
        if (const FileStatus done = ops.sync(m_descriptor); !done)
            return errorAt(FileStep::Sync, done.error());
        if (const FileStatus done = compareBytes(ops, m_descriptor, source); !done)
            return errorAt(FileStep::Verify, done.error());
        return {};
    }

    WriteAttempt putBack(const FileError& error)
    {
        WriteAttempt attempt = WriteAttempt::failed(error);
        const FileError again = writeOver(m_store.bytes(m_previousRecord), m_old.status.st_size);
        attempt.status = statusNow();
        if (again.code != 0)
            attempt.disk = DiskState::Damaged;
        else
            (void)m_store.removeRecord(m_previousRecord);
        return attempt;
    }

    std::optional<struct stat> statusNow() const
    {
        const auto status = m_task.ops.status(m_descriptor);
        return status ? std::optional(*status) : std::nullopt;
    }

    const WriteTask& m_task;
    const OldFile& m_old;
    RecoveryStore& m_store;
    const RecoveryEntry& m_entry;
    QString& m_recoveryId;
    bool m_isTextStored = false;
    QString m_previousRecord;
    FileMetadata m_metadata;
    int m_descriptor = -1;
};

} // namespace

WriteAttempt overwriteFile(const WriteTask& task, const OldFile& old, RecoveryStore& store,
                           const RecoveryEntry& entry, QString& recoveryId)
{
    return Overwrite(task, old, store, entry, recoveryId).run();
}

} // namespace quillory
