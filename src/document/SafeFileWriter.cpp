#include "document/SafeFileWriter.h"

#include "document/FileOverwrite.h"
#include "document/FileReplacement.h"
#include "document/FileTransfer.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr int longestLinkChain = 40; ///< as in the kernel, see path_resolution(7)

struct Target
{
    QByteArray path; ///< no symbolic link
    std::optional<struct stat> status;
};

/// Follows the symbolic links at \a path; links among the folders are the kernel's to follow.
FileResult<Target> resolved(FileOps& ops, QByteArray path)
{
    for (int links = 0; links < longestLinkChain; ++links) {
        const auto status = ops.linkStatus(path);
        if (!status && status.error() == ENOENT)
            return Target{path, std::nullopt};
        if (!status)
            return FileResult<Target>::failed(status.error());
        if (!S_ISLNK(status->st_mode))
            return Target{path, *status};
        const auto link = ops.readLink(path);
        if (!link)
            return FileResult<Target>::failed(link.error());
        path = link->startsWith('/') ? *link : folderOf(path) + '/' + *link;
    }
    return FileResult<Target>::failed(ELOOP);
}

QString changedMessage(const QString& path)
{
    return QCoreApplication::translate(
               "FileError",
               "“%1” was not saved: another program changed the file, and nothing was "
               "written over its version. Save elsewhere to keep both, or overwrite it.")
        .arg(QFileInfo(path).fileName());
}

/// One save.
class Save
{
public:
    Save(FileOps& ops, RecoveryStore& store, const SafeWriteRequest& request)
        : m_ops(ops), m_store(store), m_request(request), m_entry(request.entry),
          m_recoveryId(request.recoveryRecord)
    {
        m_entry.path = request.path;
    }

    SafeWriteResult run()
    {
        const WriteAttempt attempt = write();
        SafeWriteResult result;
        result.disk = attempt.disk;
        result.error = attempt.error;
        if (attempt.status)
            result.identity = identityOf(*attempt.status);
        switch (attempt.outcome) {
        case WriteAttempt::Outcome::Written:
            result.outcome = SafeWriteResult::Outcome::Written;
            result.recoveryRecord = m_store.remove(m_recoveryId) ? QString() : m_recoveryId;
            break;
        case WriteAttempt::Outcome::ChangedByOther:
            result.outcome = SafeWriteResult::Outcome::ChangedByOther;
            result.message = changedMessage(m_request.path);
            result.recoveryRecord = m_recoveryId;
            break;
        case WriteAttempt::Outcome::NotPossible:
        case WriteAttempt::Outcome::Failed: {
            const bool isKept = keepText(attempt);
            result.message =
                attempt.error.message(m_request.path, attempt.disk, isKept, m_store.folder());
            result.recoveryRecord = m_recoveryId;
            break;
        }
        }
        return result;
    }

private:
    WriteAttempt failed(FileStep step, int code) const
    {
        return WriteAttempt::failed({code, step, QFile::encodeName(m_request.path)});
    }

    WriteAttempt write()
    {
        const auto target = resolved(m_ops, QFile::encodeName(m_request.path));
        if (!target)
            return failed(FileStep::Resolve, target.error());
        const auto size = countBytes(m_request.source);
        if (!size)
            return failed(FileStep::Encode, size.error());
        const WriteTask task{m_ops, target->path,         m_request.source,
                             *size, m_request.attributes, m_request.expected.has_value()};
        if (!target->status)
            return replaceFile(task, nullptr);
        if (S_ISDIR(target->status->st_mode))
            return failed(FileStep::Open, EISDIR);
        if (!S_ISREG(target->status->st_mode))
            return failed(FileStep::Open, ENXIO);
        return writeOver(task);
    }

    WriteAttempt writeOver(const WriteTask& task)
    {
        auto file = FileHandle::open(m_ops, task.target, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
        if (!file)
            return failed(FileStep::Open, file.error());
        const auto status = m_ops.status(file->descriptor());
        if (!status)
            return failed(FileStep::Inspect, status.error());
        const OldFile old{*std::move(file), *status};
        if (!isAsExpected(old))
            return WriteAttempt::changedByOther();

        if (old.status.st_nlink == 1) {
            WriteAttempt attempt = replaceFile(task, &old);
            if (attempt.outcome != WriteAttempt::Outcome::NotPossible)
                return attempt;
        }
        return overwriteFile(task, old, m_store, m_entry, m_recoveryId);
    }

    bool isAsExpected(const OldFile& old) const
    {
        if (!m_request.expected || m_request.expected->matches(old.status))
            return true;
        if (m_request.expected->digest.isEmpty() || m_request.expected->size != old.status.st_size)
            return false;
        const auto now = summaryOf(bytesOf(m_ops, old.file.descriptor()));
        return now && now->digest == m_request.expected->digest;
    }

    FileIdentity identityOf(const struct stat& status) const
    {
        FileIdentity identity = FileIdentity::of(status);
        if (m_request.expected && !m_request.expected->digest.isEmpty()) {
            const auto summary = summaryOf(m_request.source);
            identity.digest = summary->digest;
        }
        return identity;
    }

    /// Brings the text of a failed save to the recovery store, if it is not there yet.
    bool keepText(const WriteAttempt& attempt)
    {
        if (attempt.isTextStored || attempt.error.code == ECANCELED || !m_request.keepsText)
            return attempt.isTextStored;
        const auto id = m_store.store(m_entry, m_request.source, m_recoveryId);
        if (id)
            m_recoveryId = *id;
        return bool(id);
    }

    FileOps& m_ops;
    RecoveryStore& m_store;
    const SafeWriteRequest& m_request;
    RecoveryEntry m_entry;
    QString m_recoveryId;
};

} // namespace

SafeWriteResult SafeFileWriter::write(const SafeWriteRequest& request)
{
    return Save(m_ops, m_store, request).run();
}

bool SafeFileWriter::isWriteProtected(FileOps& ops, const QString& path)
{
    const auto target = resolved(ops, QFile::encodeName(path));
    if (!target || !target->status)
        return false;
    constexpr mode_t anyoneWrites = S_IWUSR | S_IWGRP | S_IWOTH;
    return (target->status->st_mode & anyoneWrites) == 0 || !ops.mayWrite(target->path);
}

} // namespace quillory
