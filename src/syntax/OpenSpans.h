#pragma once

#include "syntax/ColouringState.h"
#include "text/TextSnapshot.h"

namespace quillory {

/// How things stand at an offset for one pair of delimiters.
struct OpenSpan
{
    bool isOpen = false; ///< a span that began before is open
    TextOffset from = 0; ///< where the search for delimiters goes on, counted from the offset
};

struct OpenSpans
{
    OpenSpan instruction;
    OpenSpan firstComment;
    OpenSpan secondComment;
};

/// What is open where the line at \a offset begins. What the text's nodes make of it is remembered
/// with them: the first look costs O(n), each after an edit O(log n), besides the lines at the
/// edit.
OpenSpans openSpansBefore(const TextSnapshot& text, TextOffset offset, const ColouringState& state);

} // namespace quillory
