#pragma once

#include "document/WriteAttempt.h"

namespace quillory {

/// Writes the bytes to a temporary file beside the target and, when they are on the device and
/// verified, gives it the target's name: at no moment is the target anything but the old or the new
/// file. \a old is null where there is none yet; then a file that appears meanwhile is left alone.
///
/// NotPossible, with nothing changed, when the new file could not have the old one's owner, mode,
/// access list and attributes, or when the folder may not be changed.
WriteAttempt replaceFile(const WriteTask& task, const OldFile* old);

} // namespace quillory
