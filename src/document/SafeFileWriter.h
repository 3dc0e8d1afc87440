#pragma once

#include "document/ByteSource.h"
#include "document/FileError.h"
#include "document/FileIdentity.h"
#include "document/RecoveryStore.h"

#include <QMap>
#include <optional>

namespace quillory {

struct SafeWriteRequest
{
    QString path;
    ByteSource source;
    /// What the file must still be, else it is left alone; nothing to write over any file there is.
    /// A file that is gone is made again in either case.
    std::optional<FileIdentity> expected;
    /// For the recovery store: how to read the bytes. The path is filled in.
    RecoveryEntry entry;
    /// The record in which an earlier, failed save left the text; empty when there is none.
    QString recoveryRecord;
    /// A save that fails leaves the text in the recovery store. Off where the text has another
    /// home.
    bool keepsText = true;
    /// Extended attributes to set beside the file's own, or, where empty, to remove.
    QMap<QByteArray, QByteArray> attributes;
};

struct SafeWriteResult
{
    enum class Outcome
    {
        Written,        ///< the new bytes are on the device, verified
        ChangedByOther, ///< the file is not what was expected; nothing was done
        Failed
    };

    Outcome outcome = Outcome::Failed;
    DiskState disk = DiskState::Unchanged;
    FileError error; ///< when it failed
    QString message; ///< for the user, unless it was written
    /// What to expect at the next save; nothing when this one did not touch the file. It has a
    /// digest when the request's had one.
    std::optional<FileIdentity> identity;
    /// The record that holds the text now, to be handed to the next save; empty when there is none,
    /// as after a save that went well.
    QString recoveryRecord;

    bool isWritten() const { return outcome == Outcome::Written; }
};

/// Saves files so that what is on disk is always entirely the old file or entirely the new one, and
/// so that owner, mode, access list, extended attributes, symbolic and hard links stay.
///
/// A file is replaced where that keeps all of them (see replaceFile()) and written over in place
/// where it does not (see overwriteFile()), with both versions in the recovery store meanwhile.
/// When a save fails, the text is put into the recovery store, from where a later save of it that
/// went well removes it.
///
/// Calls wait for the device: make them on a thread of their own.
class SafeFileWriter
{
public:
    /// Both must outlive the writer.
    SafeFileWriter(FileOps& ops, RecoveryStore& store) : m_ops(ops), m_store(store) {}

    SafeWriteResult write(const SafeWriteRequest& request);

    /// Whether \a path leads to a file that is not meant to be written: its mode gives nobody the
    /// right (root has it all the same), or this process lacks it. Saving may succeed nonetheless,
    /// and keeps the mode; so ask the user first. False where there is no file.
    static bool isWriteProtected(FileOps& ops, const QString& path);

private:
    FileOps& m_ops;
    RecoveryStore& m_store;
};

} // namespace quillory
