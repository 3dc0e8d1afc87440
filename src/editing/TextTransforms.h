#pragma once

#include "editing/BlockEdit.h"

#include <span>

namespace quillory {

// What cleans text up. The functions of a string are linear in its length.

/// Without the characters at both ends that Unicode has not assigned, or assigns to nobody
/// (general category Cn). Those inside stay.
TextSnapshot zapGremlinsInString(const TextSnapshot& string);

/// Without CR LF, CR and LF; nothing takes their place. Of other line breaks (U+000B, U+000C,
/// U+0085, U+2028, U+2029) those at both ends go.
TextSnapshot removeLineEndingsInString(const TextSnapshot& string);

/// Without tabs and then without every four spaces side by side, wherever they are; then without
/// blanks and line breaks at both ends.
TextSnapshot removeTabsInString(const TextSnapshot& string);

/// \a function for the text of each of \a ranges, which are in order and apart.
BlockEdit transformed(const TextSnapshot& text, std::span<const TextRange> ranges,
                      TextSnapshot (*function)(const TextSnapshot&));

/// Takes the spaces and tabs from the ends of all lines from the one that holds a range's start to
/// the one that holds its end. Carets change nothing. Ranges are in order and apart.
BlockEdit withoutTrailingBlanks(const TextSnapshot& text, std::span<const TextRange> ranges);

} // namespace quillory
