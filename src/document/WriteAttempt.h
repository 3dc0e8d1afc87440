#pragma once

#include "document/ByteSource.h"
#include "document/FileError.h"
#include "document/FileHandle.h"

#include <QMap>
#include <optional>

namespace quillory {

/// The file that is to be written over, open for reading.
struct OldFile
{
    FileHandle file;
    struct stat status = {}; ///< when it was opened
};

/// What to write where: shared by the two ways of doing it, replaceFile() and overwriteFile().
struct WriteTask
{
    FileOps& ops;
    QByteArray target; ///< no symbolic link
    const ByteSource& source;
    qint64 size = 0; ///< of what the source gives
    /// Extended attributes to set beside the file's own, or, where empty, to remove; a file system
    /// that cannot is no error.
    QMap<QByteArray, QByteArray> attributes;
    bool mustBeUnchanged = false; ///< the old file, until the new bytes take its place

    void setAttributes(int descriptor) const
    {
        for (auto it = attributes.begin(); it != attributes.end(); ++it)
            (void)(it->isEmpty() ? ops.removeAttribute(descriptor, it.key())
                                 : ops.setAttribute(descriptor, it.key(), *it));
    }
};

/// What became of a task.
struct WriteAttempt
{
    enum class Outcome
    {
        Written,
        NotPossible,    ///< this way cannot keep all that belongs to the file; the other one may
        ChangedByOther, ///< another program wrote the file meanwhile; it was left alone
        Failed
    };

    Outcome outcome = Outcome::Failed;
    DiskState disk = DiskState::Unchanged;
    FileError error;                   ///< unless written
    std::optional<struct stat> status; ///< of the file as it is now, if it was touched
    bool isTextStored = false;         ///< in the recovery store

    static WriteAttempt changedByOther() { return of(Outcome::ChangedByOther, {}); }
    static WriteAttempt failed(FileError error) { return of(Outcome::Failed, std::move(error)); }

    /// One that changed nothing.
    static WriteAttempt of(Outcome outcome, FileError error)
    {
        WriteAttempt attempt;
        attempt.outcome = outcome;
        attempt.error = std::move(error);
        return attempt;
    }
};

} // namespace quillory
