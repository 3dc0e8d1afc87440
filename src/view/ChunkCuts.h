#pragma once

#include "text/TextSnapshot.h"

namespace quillory {

/// How far left of \a offset, in code units, the stretch \a range can be cut in two that are laid
/// out apart without looking other than whole: after a tab where one is near, since what follows a
/// tab stands at a tab stop, else after a blank, so that letters that join stay together, else
/// between two characters. Where a single cluster of combining marks
/// goes on and on, the cut falls into it, though never between two surrogates. 0 to about 100.
TextOffset unitsToCut(const TextSnapshot& text, TextRange range, TextOffset offset);

} // namespace quillory
