#pragma once

#include "text/Selection.h"
#include "text/TextSnapshot.h"

#include <optional>
#include <vector>

namespace quillory {

/// What one key makes of a text with several selections, put together from the first to the last.
struct SelectionEdits
{
    std::vector<TextEdit> edits;       ///< ranges of the text as it was, in order and apart
    std::vector<Selection> selections; ///< of the text with all edits made
    TextOffset shift = 0;              ///< by the edits so far

    /// A stretch of the text as it was, behind all edits, that is to go before they are made, as an
    /// edit that undo knows nothing of.
    std::optional<TextRange> unregistered;

    /// Puts \a replacement in the place of \a range, which lies behind the edits so far.
    void replace(TextRange range, const TextSnapshot& replacement)
    {
        edits.push_back({range, replacement});
        shift += replacement.length() - range.length;
    }

    /// The same, with the caret behind it.
    void type(TextRange range, const TextSnapshot& replacement)
    {
        replace(range, replacement);
        selections.push_back(Selection::caret(range.end() + shift));
    }
};

} // namespace quillory
