#pragma once

#include "document/ByteSource.h"
#include "document/FileOps.h"
#include "text/StringEncoding.h"
#include "text/TextRange.h"

#include <QDateTime>
#include <QString>
#include <QVector>
#include <atomic>

namespace quillory {

class FileHandle;
struct ByteSummary;

/// What the bytes of a record are.
struct RecoveryEntry
{
    QString path; ///< of the file that they belong to; empty for a document never saved
    StringEncoding encoding = StringEncoding::none;
    int lbFormat = 0; ///< see LineBreaks.h
    QDateTime time;   ///< of the bytes, in UTC; where none is given, when they were stored
};

/// One file of the store.
struct RecoveryRecord
{
    QString name; ///< in the store
    QString id;   ///< shared by the records of one text
    /// The bytes are those that the file held before a save overwrote it in place, not the text.
    bool isPrevious = false;
    /// The record cannot be read, or is cut short; bytes() gives what is left of it.
    bool isDamaged = false;
    RecoveryEntry entry;
    ByteCount size;
    QByteArray digest; ///< summaryOf() the bytes as they were stored
};

/// Keeps texts that are not safely in their files yet: before a file is overwritten in place, and
/// after a save that failed. A record is removed only once the bytes were verified in their file.
///
/// A record is a file that gets its name when it is complete and on the device:
///   8 bytes "QlryRec1", the header's size (4 bytes, little-endian), the header (a CBOR map), the
///   header's digest, the bytes. The header holds their size and their digest.
/// Records of one text are <id>.text and <id>.previous0, .previous1 …
///
/// Any thread may use a store, and several processes may share a folder.
class RecoveryStore
{
public:
    /// Uses \a folder, which is made (for its owner only) when the first record is stored.
    /// \a isFolderLasting tells that isFolderLasting() was true for it.
    RecoveryStore(FileOps& ops, QString folder, bool isFolderLasting = false);

    QString folder() const { return m_folder; }
    /// The folder's name is on the device, which spares bringing it there.
    bool isFolderLasting() const { return m_isFolderLasting; }

    /// Makes the folder, for its owner only, if it is not there.
    FileStatus makeFolder();
    /// The same, and brings its name to the device.
    FileStatus prepareFolder();

    /// Keeps what \a source gives; when the answer comes, it outlasts a power cut. The answer is
    /// the record's id: \a id where that is given, whose text is then replaced by the new one.
    /// \a summary is that of what \a source gives, where it is known.
    FileResult<QString> store(const RecoveryEntry& entry, const ByteSource& source,
                              const QString& id = {}, const ByteSummary* summary = nullptr);

    /// Keeps the bytes that the file of record \a id holds, beside the text. Answers the name.
    FileResult<QString> storePrevious(const QString& id, const RecoveryEntry& entry,
                                      const ByteSource& source);

    /// Removes the record \a name alone.
    FileStatus removeRecord(const QString& name);

    /// Removes all records of \a id; an unknown or empty one is none.
    FileStatus remove(const QString& id);

    /// All records, damaged ones among them, newest last. Reads their headers only.
    FileResult<QVector<RecoveryRecord>> records();

    /// The bytes of the record \a name: false, at the latest after the last one, when the record is
    /// damaged.
    ByteSource bytes(const QString& name);

private:
    QByteArray pathOf(const QString& name) const;
    FileStatus write(const QString& name, FileOps::Replacing replacing, RecoveryEntry entry,
                     const ByteSource& source, const ByteSummary* known = nullptr);
    RecoveryRecord record(const QString& name);

    FileOps& m_ops;
    QString m_folder;
    std::atomic_bool m_isFolderLasting;
};

} // namespace quillory
