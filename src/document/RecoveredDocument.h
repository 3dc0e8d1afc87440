#pragma once

#include "document/DocumentReader.h"
#include "document/JournalReader.h"
#include "document/RecoveryStore.h"

#include <memory>

namespace quillory {

class VersionStore;

/// What a journal, or a record of the recovery store, comes to when nobody writes it any more.
struct RecoveredDocument
{
    enum class State
    {
        Nothing, ///< there is none, or another program writes it, or its file holds the text
        Text,    ///< the text as it was
        Pieces   ///< only what was put in: the text that was edited is lost
    };
    /// What became of the document's file since the text was read from it or saved to it.
    enum class File
    {
        None, ///< the document has none
        Unchanged,
        Changed,
        Gone
    };

    State state = State::Nothing;
    File file = File::None;
    QDateTime time;     ///< when the first edit was made, or the record stored
    bool isCut = false; ///< there was more, which cannot be read
    QString keptAside;  ///< where the journal is then, if there is Nothing for it
    ReadResult document;
    int untitledNumber = 0;
    bool hasIdentity = false; ///< false: any file there may be replaced
    QString recoveryRecord;

    /// The journal, locked; null for a record.
    std::shared_ptr<FileHandle> journal;
    JournalEnd end;
    bool holdsBase = false; ///< the journal can do without the document's file
};

/// Puts together what the journal \a id holds; the work is that of reading the document's file.
/// A journal of which the file holds everything is removed; one that holds more than can be read,
/// and nothing that the file does not hold, is kept aside. A text that the file does not hold any
/// more is looked for in \a versions, where they are given. May run on any thread.
RecoveredDocument recoverJournal(FileOps& ops, RecoveryStore& store, const QString& id,
                                 VersionStore* versions = nullptr);

/// The same for a record of a text whose save failed.
RecoveredDocument recoverRecord(RecoveryStore& store, const RecoveryRecord& record);

/// What lies in the recovery store: the ids of all journals, and the records that belong to none.
struct RecoverableTexts
{
    QStringList journals;
    QVector<RecoveryRecord> records;
};
RecoverableTexts recoverableTexts(FileOps& ops, RecoveryStore& store);

} // namespace quillory
