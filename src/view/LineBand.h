#pragma once

#include "text/Selection.h"
#include "text/TextSnapshot.h"

#include <span>

namespace quillory {

/// Whether the band behind the lines that are worked on lies behind \a line: behind every line with
/// a caret, and every one that a selection covers something of. \a selections: in order and apart.
bool isBanded(const TextSnapshot& text, LineIndex line, std::span<const Selection> selections);

} // namespace quillory
