#pragma once

#include "document/DocumentRecord.h"
#include "document/FileIdentity.h"
#include "text/ByteLayout.h"
#include "text/TextSnapshot.h"

#include <QString>

namespace quillory {

class FileOps;
class RecoveryStore;
class VersionStore;

/// Why a save did not bring the text to the disk.
enum class SaveProblem
{
    None,
    Disk,           ///< the file system refused; nothing or everything of the old file is there
    ChangedByOther, ///< the file is not the one that was read or written last
    Unencodable,    ///< a character has no place in the encoding
    UnparsablePropertyList,
    NoEncoding, ///< the file's bytes were never decoded; writing would destroy them
    Incomplete, ///< the file is still being read
    NoVersion,  ///< nobody asked for the save, and what the file held could not be kept first
    NotQuiet,   ///< nobody asked for it, and the file is not there, or not meant to be written
};

/// What a save came to.
struct SaveResult
{
    bool answer = true;     ///< the document counts as saved
    bool written = false;   ///< the bytes are on disk, verified
    bool readsBack = false; ///< reading them gives the text as it was
    bool damaged = false;   ///< the file is a mix now; both versions are in the recovery store
    SaveProblem problem = SaveProblem::None;
    QString message;        ///< for the user: what happened to which file, and the way out
    TextOffset offset = -1; ///< of the first character that does not fit, in the text as shown
    LineIndex line;         ///< and column (from 0): where a property list stops making sense
    TextOffset column = 0;
    std::optional<FileIdentity> identity; ///< of the file as written
    QString recoveryRecord; ///< the record in the recovery store that holds the text; may be empty
    QByteArray versionDigest;   ///< of what the file held before, if that is kept as a version
    bool isVersionLost = false; ///< it was to be kept, and is not
};

/// All that a save needs: made on the GUI thread in O(1), run on any.
struct SaveJob
{
    QString path;
    QString type; ///< one of DocumentType
    TextSnapshot text;
    DocumentRecord record;
    ByteLayout layout;
    bool isUndecoded = false; ///< the file's bytes were never understood, so it is not written over
    bool isIncomplete = false; ///< the text is only the beginning of the file's; nothing is written
    bool hasEncodingAttribute = false; ///< the file has a text-encoding attribute, to be kept true
    /// What the file must still be; nothing when any file there may be replaced.
    std::optional<FileIdentity> expected;
    bool keepsText = true; ///< a save that fails leaves the text in the recovery store
    /// The record that an earlier, failed save left there.
    QString recoveryRecord;
    /// Where what the file held is kept; null where it need not be.
    VersionStore* versions = nullptr;
    StringEncoding encodingOnDisk = StringEncoding::none; ///< of what the file holds, if known
    /// Nobody asked for the save: it is not made where the user would have to be asked or told, nor
    /// where what the file held cannot be kept, if it is to be.
    bool isAutomatic = false;

    SaveResult run(FileOps& ops, RecoveryStore& recovery) const;
};

} // namespace quillory
