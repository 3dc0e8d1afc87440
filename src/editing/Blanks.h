#pragma once

#include "text/TextSnapshot.h"

namespace quillory {

// Horizontal white space is CharacterSet::whitespace(); the looks take time by the length of the
// run of blanks alone.

/// Where the run of horizontal white space ends that \a range begins with.
TextOffset blanksEnd(const TextSnapshot& text, TextRange range);

/// Whether \a range holds spaces (U+0020) and tabs (U+0009) only.
bool isIndentation(const TextSnapshot& text, TextRange range);

/// Whether the last character of \a range that is neither white space nor a line break is
/// \a character.
bool endsIn(const TextSnapshot& text, TextRange range, char16_t character);

} // namespace quillory
