#pragma once

#include "document/RecoveryStore.h"
#include "document/WriteAttempt.h"

namespace quillory {

/// Writes the bytes over those of the open file, which so keeps whatever belongs to it: hard links,
/// owner, attributes. Meanwhile it is neither the old nor the new file; so the new bytes and the
/// old ones are in the recovery store, on the device, before it is touched. When writing fails, the
/// old bytes are put back.
///
/// \a recoveryId is the record to keep the new bytes in, empty for a new one; when the call returns
/// it names the record that holds them, or is what it was when none was stored. Removing it once
/// the file is written is left to the caller.
WriteAttempt overwriteFile(const WriteTask& task, const OldFile& old, RecoveryStore& store,
                           const RecoveryEntry& entry, QString& recoveryId);

} // namespace quillory
