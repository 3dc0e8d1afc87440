#pragma once

#include "editing/BlockEdit.h"

#include <QString>
#include <span>

namespace quillory {

/// Puts \a marker, which is not empty, at the start of each line of \a ranges, or takes it away
/// behind the blanks at their starts: for each range by what its start and its first line tell.
/// Markers are compared without regard to case. The line that a range only reaches the start of is
/// not its own. Ranges are in the order of the text and apart; each begins afterwards at the start
/// of its first line. Where one begins in a line that an earlier one was in, it finds that line as
/// it is by then.
BlockEdit commentToggled(const TextSnapshot& text, std::span<const TextRange> ranges,
                         const QString& marker);

} // namespace quillory
