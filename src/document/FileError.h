#pragma once

#include <QByteArray>
#include <QString>

namespace quillory {

/// What writing a file was about when it failed.
enum class FileStep
{
    Encode, ///< the source gave no bytes
    Resolve,
    Open,
    Inspect,
    Create,
    Allocate,
    Write,
    Metadata,
    Verify,
    Publish,
    Sync,
    StoreRecovery, ///< in the recovery store, before the file itself is touched
};

/// What is at a path after a try to write to it.
enum class DiskState
{
    Unchanged,
    New,         ///< the new bytes, brought to the device and verified
    Unconfirmed, ///< the new bytes, but the device did not confirm that they will outlast a crash
    Damaged,     ///< a mix of old and new bytes: both versions are in the recovery store
};

/// Why a file was not written.
struct FileError
{
    int code = 0; ///< an errno; ECANCELED when the source gave up; 0 for no error
    FileStep step = FileStep::Open;
    QByteArray path; ///< of the file or folder that the call was about

    /// The cause in plain words, fit to follow a colon: "there is no space left on its device".
    QString cause() const;

    /// For the user: what became of \a path, why, and the way out. \a isKept tells that the
    /// recovery store in \a recoveryFolder holds the text.
    QString message(const QString& path, DiskState disk, bool isKept,
                    const QString& recoveryFolder) const;
};

} // namespace quillory
