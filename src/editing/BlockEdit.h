#pragma once

#include "text/TextSnapshot.h"

#include <optional>
#include <vector>

namespace quillory {

/// What a command on the selected text comes to.
struct BlockEdit
{
    std::vector<TextEdit> edits;   ///< ranges of the text as it was, in order and apart
    std::vector<TextRange> ranges; ///< one for each that was selected, of the text with the edits
    /// All edits in one, where they are so many that telling of each takes longer.
    std::optional<TextEdit> whole;
};

/// All edits of \a text that lead to \a after as one, over the stretch from \a first to \a last,
/// offsets of \a text outside which nothing changed.
TextEdit wholeEdit(const TextSnapshot& text, const TextSnapshot& after, TextOffset first,
                   TextOffset last);

/// Adds BlockEdit::whole where that is of use. O(length of the stretch).
void joinManyEdits(BlockEdit& block, const TextSnapshot& text);

} // namespace quillory
