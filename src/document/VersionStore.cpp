#include "document/VersionStore.h"

#include "document/FileHandle.h"
#include "document/FileIdentity.h"
#include "document/FileTransfer.h"
#include "document/RecoveryStore.h"
#include "document/VersionPruning.h"

#include <QCryptographicHash>
#include <QFile>
#include <algorithm>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr qint64 pruningInterval = 3600; // seconds

QDateTime timeOf(const struct stat& status)
{
    return QDateTime::fromMSecsSinceEpoch(FileIdentity::of(status).modifiedNanos / 1'000'000,
                                          Qt::UTC);
}

QByteArray joined(const QByteArray& folder, const QByteArray& name)
{
    return folder + '/' + name;
}

} // namespace

QString VersionStore::folderFor(const QString& path) const
{
    const QByteArray digest =
        QCryptographicHash::hash(QFile::encodeName(path), QCryptographicHash::Blake2b_160);
    return m_folder + u'/' + QString::fromLatin1(digest.toHex());
}

FileResult<QByteArray> VersionStore::keep(const QString& path, StringEncoding encoding)
{
    using Answer = FileResult<QByteArray>;
    // Nothing is waited for where there is a pipe.
    const auto file = FileHandle::open(m_ops, QFile::encodeName(path), O_RDONLY | O_NONBLOCK);
    if (!file)
        return Answer::failed(file.error());
    const auto status = m_ops.status(file->descriptor());
    if (!status)
        return Answer::failed(status.error());
    if (!S_ISREG(status->st_mode))
        return Answer::failed(EINVAL);
    if (status->st_size > largest)
        return Answer::failed(EFBIG);
    const ByteSource bytes = bytesOf(m_ops, file->descriptor());
    const auto summary = summaryOf(bytes);
    if (!summary)
        return Answer::failed(summary.error());
    if (summary->size != status->st_size)
        return Answer::failed(ECANCELED);

    const QString folder = folderFor(path);
    const auto isLasting = [&] {
        const std::lock_guard lock(m_mutex);
        return m_lasting.contains(folder);
    };
    RecoveryStore store(m_ops, folder, isLasting());
    const auto records = store.records();
    if (!records)
        return Answer::failed(records.error());
    QStringList same;
    for (const RecoveryRecord& record : *records) {
        if (!record.isDamaged && record.digest == summary->digest)
            same.append(record.name);
    }
    RecoveryEntry entry;
    entry.path = path;
    entry.encoding = encoding;
    entry.time = timeOf(*status);
    if (!same.isEmpty() && records->last().name == same.last() &&
        records->last().entry.encoding == encoding)
        return summary->digest;
    auto kept = store.store(entry, bytes, {}, &*summary);
    // The folder, empty as it was, may have been taken away meanwhile.
    if (kept.error() == ENOENT)
        kept = store.store(entry, bytes, {}, &*summary);
    if (!kept)
        return Answer::failed(kept.error());
    {
        const std::lock_guard lock(m_mutex);
        m_lasting.insert(folder);
    }
    for (const QString& name : same)
        (void)store.removeRecord(name);
    return summary->digest;
}

FileResult<QVector<FileVersion>> VersionStore::versions(const QString& path)
{
    using Answer = FileResult<QVector<FileVersion>>;
    RecoveryStore store(m_ops, folderFor(path));
    const auto records = store.records();
    if (!records)
        return Answer::failed(records.error());
    QVector<FileVersion> versions;
    for (auto record = records->rbegin(); record != records->rend(); ++record) {
        if (!record->isDamaged)
            versions.append({path, record->entry.time, record->entry.encoding, record->size.value(),
                             record->digest, record->name});
    }
    return versions;
}

ByteSource VersionStore::bytes(const FileVersion& version)
{
    return [this, folder = folderFor(version.path), name = version.name](const ByteSink& sink) {
        RecoveryStore store(m_ops, folder);
        return store.bytes(name)(sink);
    };
}

FileStatus VersionStore::followRename(const QString& from, const QString& to)
{
    const QByteArray before = QFile::encodeName(folderFor(from));
    const QByteArray after = QFile::encodeName(folderFor(to));
    FileStatus done = m_ops.rename(before, after, FileOps::Replacing::No);
    if (done)
        return syncFolder(m_ops, QFile::encodeName(m_folder));
    if (done.error() == ENOENT)
        return Nothing();
    // The other file has versions of its own.
    const auto names = m_ops.names(before);
    if (!names)
        return FileStatus::failed(names.error());
    done = Nothing();
    for (const QByteArray& name : *names) {
        const FileStatus moved =
            m_ops.rename(joined(before, name), joined(after, name), FileOps::Replacing::Yes);
        if (!moved)
            done = moved;
    }
    const FileStatus synced = syncFolder(m_ops, after);
    return done ? synced : done;
}

void VersionStore::prune(const QDateTime& now, bool isForced)
{
    const qint64 seconds = now.toSecsSinceEpoch();
    qint64 before = m_prunedAt;
    if (!isForced && seconds - before < pruningInterval)
        return;
    if (!m_prunedAt.compare_exchange_strong(before, seconds))
        return; // another thread does it

    const QByteArray root = QFile::encodeName(m_folder);
    const auto folders = m_ops.names(root);
    if (!folders)
        return;
    std::vector<KeptVersion> versions;
    QByteArrayList paths;
    for (int file = 0; file < folders->size(); ++file) {
        const QByteArray folder = joined(root, folders->at(file));
        const auto names = m_ops.names(folder);
        for (const QByteArray& name : names ? *names : QByteArrayList()) {
            const auto status = m_ops.linkStatus(joined(folder, name));
            if (!status || !S_ISREG(status->st_mode))
                continue;
            versions.push_back({file, timeOf(*status), status->st_size});
            paths.append(joined(folder, name));
        }
    }
    for (const size_t index : versionsToDrop(versions, now))
        (void)m_ops.remove(paths[qsizetype(index)]);
    // Those that hold something stay.
    for (const QByteArray& folder : *folders)
        (void)m_ops.removeFolder(joined(root, folder));
}

} // namespace quillory
