#pragma once

#include "editing/BlockEdit.h"

#include <span>

namespace quillory {

// Moving lines right and left. A line ends here at LF, CR or CR LF. Ranges are in the order of the
// text and apart.

/// Puts a tab at the start of each of \a ranges and behind every line break in it, except one that
/// ends it. A caret goes behind its tab.
BlockEdit indented(const TextSnapshot& text, std::span<const TextRange> ranges);

/// Takes a tab, or else up to four spaces, from the start of each of \a ranges and from behind
/// every line break in it. Behind a break the j-th space goes only while its place, once those
/// before it went, plus j is within the range; at the start the k-th goes only while k is no
/// greater than the index of the range's last character. Carets change nothing.
BlockEdit unindented(const TextSnapshot& text, std::span<const TextRange> ranges);

} // namespace quillory
