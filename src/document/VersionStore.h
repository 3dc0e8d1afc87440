#pragma once

#include "document/ByteSource.h"
#include "document/FileOps.h"
#include "text/StringEncoding.h"

#include <QDateTime>
#include <QSet>
#include <QString>
#include <QVector>
#include <atomic>
#include <mutex>

namespace quillory {

/// What a file held before a save.
struct FileVersion
{
    QString path;                                   ///< of the file when it was kept
    QDateTime time;                                 ///< when the file had been written last, in UTC
    StringEncoding encoding = StringEncoding::none; ///< that it was opened in
    qint64 size = 0;                                ///< bytes
    QByteArray digest;
    QString name; ///< in the store
};

/// Keeps what files held before they were saved over, for a year at most (see versionsToDrop()).
///
/// The versions of a file are recovery records (see RecoveryStore) in a folder of their own, named
/// after the digest of the file's path. Bytes that are there already are not stored again. Calls
/// wait for the device: make them on another thread, any one; several processes may share a store.
class VersionStore
{
public:
    /// A larger file has no versions. In bytes.
    static constexpr qint64 largest = qint64(64) << 20;

    VersionStore(FileOps& ops, QString folder) : m_ops(ops), m_folder(std::move(folder)) {}

    QString folder() const { return m_folder; }

    /// Keeps what the file at \a path holds; when the answer comes, it outlasts a power cut. The
    /// answer is the digest of its bytes. EFBIG for a file that is larger than `largest`, ENOENT
    /// where there is none, ECANCELED when it changed meanwhile.
    FileResult<QByteArray> keep(const QString& path, StringEncoding encoding);

    /// Those of the file at \a path, the newest first; none is no error.
    FileResult<QVector<FileVersion>> versions(const QString& path);

    /// False, at the latest after the last byte, when the version is damaged.
    ByteSource bytes(const FileVersion& version);

    /// The file at \a from is at \a to now, and its versions are that one's.
    FileStatus followRename(const QString& from, const QString& to);

    /// Drops versions that are too old or too many, and the folders of files that have none; once
    /// in an hour at most, unless it \a isForced.
    void prune(const QDateTime& now, bool isForced = false);

private:
    QString folderFor(const QString& path) const;

    FileOps& m_ops;
    QString m_folder;
    std::mutex m_mutex;
    QSet<QString> m_lasting;            ///< folders of files; see RecoveryStore::isFolderLasting()
    std::atomic<qint64> m_prunedAt = 0; ///< seconds since 1970
};

} // namespace quillory
