#pragma once

#include "document/FileHandle.h"
#include "document/JournalForm.h"
#include "document/JournalRecord.h"

#include <atomic>
#include <optional>
#include <vector>

namespace quillory {

class RecoveryStore;

/// What is written to a journal at once, and read back as a whole or not at all.
struct JournalBatch
{
    struct Edit
    {
        TextChange change;
        TextSnapshot text; ///< after it
    };

    /// First in a file, and there only. Where the text before the first edit is empty, this is the
    /// whole base, and the edits, written together with it, are none of it.
    std::optional<JournalStart> start;
    std::optional<JournalForm> form;
    std::vector<Edit> edits;

    /// How many units the edits put in.
    TextOffset length() const;
};

/// Where the part of a journal that can be read ends.
struct JournalEnd
{
    qint64 offset = 0;
    JournalChecksum checksum = {};
};

/// A journal on disk, <id>.journal in the folder of the recovery store, open for writing and locked
/// for as long as this lives: so another program tells it from one that nobody writes any more.
/// Used by one thread at a time but for sync().
class JournalFile
{
public:
    /// A new one, made when the first batch comes.
    JournalFile(FileOps& ops, RecoveryStore& store, QString id);
    /// One that was there, with the lock on it, to go on at \a end.
    JournalFile(FileOps& ops, RecoveryStore& store, QString id, FileHandle file, JournalEnd end);

    const QString& id() const { return m_id; }
    bool isMade() const { return m_file.descriptor() >= 0; }

    /// Writes \a batch behind what there is; after a failure the journal is as it was. ECANCELED
    /// once \a abandoned is set.
    FileStatus append(const JournalBatch& batch, const std::atomic_bool& abandoned);
    /// Brings what was written to the device. May run beside append().
    FileStatus sync();
    /// Nothing is left of it.
    void remove();

    static QString nameOf(const QString& id);
    static QByteArray pathOf(const RecoveryStore& store, const QString& id);
    /// The ids of all journals in the store's folder.
    static QStringList idsIn(FileOps& ops, const RecoveryStore& store);
    /// Opens and locks the journal \a id; EWOULDBLOCK when another program writes it.
    static FileResult<FileHandle> openLocked(FileOps& ops, const RecoveryStore& store,
                                             const QString& id);

private:
    FileStatus make(const JournalBatch& batch, const std::atomic_bool& abandoned);
    FileStatus write(int descriptor, const JournalBatch& batch, JournalEnd& end,
                     const std::atomic_bool& abandoned);

    FileOps& m_ops;
    RecoveryStore& m_store;
    QString m_id;
    FileHandle m_file;
    JournalEnd m_end;
    std::atomic_bool m_isNameLasting = false;
    bool m_hasRest = false; ///< something that cannot be read lies behind the end
};

} // namespace quillory
