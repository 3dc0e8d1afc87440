#pragma once

#include "text/Selection.h"
#include "text/TextSnapshot.h"

#include <vector>

namespace quillory {

struct MergedSelections
{
    std::vector<Selection> selections; ///< in the order of the text, apart
    size_t primary = 0;                ///< the one that holds the primary selection asked for
};

/// \a selections, of which there is at least one, pulled into a text of \a length code units and
/// put in order. Those that overlap become one, and so does a caret with what it touches; ranges
/// that only touch stay apart.
MergedSelections mergedSelections(std::vector<Selection> selections, size_t primary,
                                  TextOffset length);

/// Several stretches of text as one, with a line break between every two.
struct JoinedText
{
    TextSnapshot text;
    std::vector<TextRange> parts; ///< of \a text
};

/// What \a selections of \a text hold; carets are left out.
JoinedText joinedSelections(const TextSnapshot& text, const std::vector<Selection>& selections);

} // namespace quillory
