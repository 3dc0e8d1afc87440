#pragma once

#include "text/TextSnapshot.h"

#include <vector>

namespace quillory {

/// What a command on the selected text comes to.
struct BlockEdit
{
    std::vector<TextEdit> edits;   ///< ranges of the text as it was, in order and apart
    std::vector<TextRange> ranges; ///< one for each that was selected, of the text with the edits
};

/// All edits of \a text that lead to \a after as one, over the stretch from \a first to \a last,
/// offsets of \a text outside which nothing changed.
TextEdit wholeEdit(const TextSnapshot& text, const TextSnapshot& after, TextOffset first,
                   TextOffset last);

/// Makes one of the edits where they are so many that keeping and telling of each takes longer
/// than writing the stretch anew.
void joinManyEdits(BlockEdit& block, const TextSnapshot& text);

} // namespace quillory
