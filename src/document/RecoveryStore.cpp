#include "document/RecoveryStore.h"

#include "document/FileTransfer.h"
#include "document/RecoveryHeader.h"
#include "document/TemporaryFile.h"

#include <QFile>
#include <QUuid>
#include <algorithm>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t recordMode = 0600;
constexpr int maximumPrevious = 1000;

QString textName(const QString& id)
{
    return id + QStringLiteral(".text");
}

QString previousPrefix(const QString& id)
{
    return id + QStringLiteral(".previous");
}

bool isPreviousName(const QString& name)
{
    return name.contains(QStringLiteral(".previous"));
}

bool isRecordName(const QString& name)
{
    return !name.startsWith(QLatin1Char('.')) &&
           (name.endsWith(QStringLiteral(".text")) || isPreviousName(name));
}

/// Makes \a folder and those above it; an existing one is fine. Answers whether there was none.
FileResult<bool> makeFolders(FileOps& ops, const QByteArray& folder)
{
    FileStatus made = ops.makeFolder(folder, folderMode);
    if (!made && made.error() == ENOENT) {
        const auto above = makeFolders(ops, folderOf(folder));
        if (!above)
            return above;
        made = ops.makeFolder(folder, folderMode);
    }
    if (!made && made.error() != EEXIST)
        return FileResult<bool>::failed(made.error());
    return bool(made);
}

/// Makes the names of \a folder and of all above it last.
FileStatus syncPath(FileOps& ops, const QByteArray& folder)
{
    QByteArray path = folder;
    for (qsizetype slash; (slash = path.lastIndexOf('/')) >= 0;) {
        const FileStatus synced = syncFolder(ops, folderOf(path));
        if (!synced)
            return synced;
        path.truncate(slash);
    }
    return Nothing();
}

} // namespace

RecoveryStore::RecoveryStore(FileOps& ops, QString folder, bool isFolderLasting)
    : m_ops(ops), m_folder(std::move(folder)), m_isFolderLasting(isFolderLasting)
{}

QByteArray RecoveryStore::pathOf(const QString& name) const
{
    return QFile::encodeName(m_folder) + '/' + QFile::encodeName(name);
}

FileStatus RecoveryStore::prepareFolder()
{
    const FileStatus made = makeFolder();
    // Not only when the folder was made just now: the last try may have ended before its name was
    // on the device.
    if (!made || m_isFolderLasting)
        return made;
    const FileStatus synced = syncPath(m_ops, QFile::encodeName(m_folder));
    m_isFolderLasting = bool(synced);
    return synced;
}

FileStatus RecoveryStore::makeFolder()
{
    const QByteArray path = QFile::encodeName(m_folder);
    const auto made = makeFolders(m_ops, path);
    if (!made)
        return FileStatus::failed(made.error());
    if (*made)
        m_isFolderLasting = false;
    const auto folder = FileHandle::open(m_ops, path, O_RDONLY | O_DIRECTORY);
    if (!folder)
        return FileStatus::failed(folder.error());
    const auto status = m_ops.status(folder->descriptor());
    if (!status)
        return FileStatus::failed(status.error());
    if ((status->st_mode & 077) == 0)
        return Nothing();
    return m_ops.changeMode(folder->descriptor(), folderMode);
}

FileStatus RecoveryStore::write(const QString& name, FileOps::Replacing replacing,
                                RecoveryEntry entry, const ByteSource& source,
                                const ByteSummary* known)
{
    const auto summary = known ? FileResult<ByteSummary>(*known) : summaryOf(source);
    if (!summary)
        return FileStatus::failed(summary.error());
    if (!entry.time.isValid())
        entry.time = QDateTime::currentDateTimeUtc();
    const QByteArray header = RecoveryHeader{entry, *summary}.encoded();
    const ByteSource whole = [&](const ByteSink& sink) { return sink(header) && source(sink); };

    const QByteArray folder = QFile::encodeName(m_folder);
    auto file = TemporaryFile::in(m_ops, folder, recordMode);
    if (!file)
        return FileStatus::failed(file.error());
    const int descriptor = file->descriptor();
    FileStatus done = writeBytes(m_ops, descriptor, whole);
    if (done)
        done = m_ops.sync(descriptor);
    if (done)
        done = compareBytes(m_ops, descriptor, whole);
    if (done)
        done = file->publish(pathOf(name), replacing);
    if (!done)
        return done;
    done = syncFolder(m_ops, folder);
    if (!done && replacing == FileOps::Replacing::No)
        (void)m_ops.remove(pathOf(name)); // no one would know of it
    return done;
}

FileResult<QString> RecoveryStore::store(const RecoveryEntry& entry, const ByteSource& source,
                                         const QString& id, const ByteSummary* summary)
{
    const QString name = id.isEmpty() ? QUuid::createUuid().toString(QUuid::Id128) : id;
    FileStatus done = prepareFolder();
    if (done)
        done =
            write(textName(name), id.isEmpty() ? FileOps::Replacing::No : FileOps::Replacing::Yes,
                  entry, source, summary);
    return done ? FileResult<QString>(name) : FileResult<QString>::failed(done.error());
}

FileResult<QString> RecoveryStore::storePrevious(const QString& id, const RecoveryEntry& entry,
                                                 const ByteSource& source)
{
    FileStatus done = prepareFolder();
    if (!done)
        return FileResult<QString>::failed(done.error());
    // One that an earlier, interrupted save left may hold the only complete old version.
    for (int number = 0; number < maximumPrevious; ++number) {
        const QString name = previousPrefix(id) + QString::number(number);
        if (m_ops.linkStatus(pathOf(name)))
            continue;
        done = write(name, FileOps::Replacing::No, entry, source);
        if (done)
            return name;
        if (done.error() != EEXIST)
            break;
    }
    return FileResult<QString>::failed(done ? EEXIST : done.error());
}

FileStatus RecoveryStore::removeRecord(const QString& name)
{
    const FileStatus removed = m_ops.remove(pathOf(name));
    if (!removed && removed.error() != ENOENT)
        return removed;
    return syncFolder(m_ops, QFile::encodeName(m_folder));
}

FileStatus RecoveryStore::remove(const QString& id)
{
    if (id.isEmpty())
        return Nothing();
    const auto names = m_ops.names(QFile::encodeName(m_folder));
    if (!names)
        return names.error() == ENOENT ? FileStatus(Nothing()) : FileStatus::failed(names.error());
    bool anyRemoved = false;
    FileStatus done = Nothing();
    for (const QByteArray& encoded : *names) {
        const QString name = QFile::decodeName(encoded);
        if (name != textName(id) && !name.startsWith(previousPrefix(id)))
            continue;
        const FileStatus removed = m_ops.remove(pathOf(name));
        if (removed)
            anyRemoved = true;
        else if (removed.error() != ENOENT)
            done = removed;
    }
    const FileStatus synced =
        anyRemoved ? syncFolder(m_ops, QFile::encodeName(m_folder)) : FileStatus(Nothing());
    return done ? synced : done;
}

RecoveryRecord RecoveryStore::record(const QString& name)
{
    RecoveryRecord record;
    record.name = name;
    record.id = name.section(QLatin1Char('.'), 0, 0);
    record.isPrevious = isPreviousName(name);
    record.isDamaged = true;
    const auto file = FileHandle::open(m_ops, pathOf(name), O_RDONLY | O_NOFOLLOW);
    if (!file)
        return record;
    const auto header = RecoveryHeader::read(m_ops, file->descriptor());
    const auto status = m_ops.status(file->descriptor());
    if (!header || !status)
        return record;
    record.entry = header->entry;
    record.size = ByteCount(header->bytes.size);
    record.digest = header->bytes.digest;
    record.isDamaged = status->st_size != header->sizeOnDisk + header->bytes.size;
    return record;
}

FileResult<QVector<RecoveryRecord>> RecoveryStore::records()
{
    using Answer = FileResult<QVector<RecoveryRecord>>;
    QVector<RecoveryRecord> records;
    const auto names = m_ops.names(QFile::encodeName(m_folder));
    if (!names)
        return names.error() == ENOENT ? Answer(records) : Answer::failed(names.error());
    for (const QByteArray& encoded : *names) {
        const QString name = QFile::decodeName(encoded);
        if (isRecordName(name))
            records.append(record(name));
    }
    std::sort(records.begin(), records.end(), [](const auto& a, const auto& b) {
        return std::tie(a.entry.time, a.name) < std::tie(b.entry.time, b.name);
    });
    return records;
}

ByteSource RecoveryStore::bytes(const QString& name)
{
    return [this, path = pathOf(name)](const ByteSink& sink) {
        const auto file = FileHandle::open(m_ops, path, O_RDONLY | O_NOFOLLOW);
        if (!file)
            return false;
        const auto header = RecoveryHeader::read(m_ops, file->descriptor());
        if (!header)
            return false;
        const ByteSource payload = bytesOf(m_ops, file->descriptor(), header->sizeOnDisk);
        const auto found = summaryOf([&](const ByteSink& digest) {
            return payload([&](QByteArrayView piece) { return sink(piece) && digest(piece); });
        });
        return found && found->size == header->bytes.size && found->digest == header->bytes.digest;
    };
}

} // namespace quillory
