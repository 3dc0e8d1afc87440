#pragma once

#include "text/TextRange.h"

#include <span>
#include <vector>

namespace quillory {

/// Which words of a text are misspelt, or which places were found, as far as it is known: ranges in
/// order and apart, which follow the edits. An edit costs O(ranges).
class MarkedRanges
{
public:
    const std::vector<TextRange>& all() const { return m_ranges; }
    bool isEmpty() const { return m_ranges.empty(); }

    /// Those that overlap \a range or touch its ends.
    std::span<const TextRange> touching(TextRange range) const;

    /// Moves the ranges as the text moved, and drops those with characters that changed. A range
    /// that ends where the change begins is dropped too when the change \a joinsBefore: what stands
    /// there now belongs to the word. \a joinsAfter is the same for one that begins where it ends.
    void followEdit(const TextChange& change, bool joinsBefore, bool joinsAfter);

    /// Has \a found, in order and apart, be those in \a checked, empty ones at its start included.
    /// Ranges that reach out of it go, too. The answer holds all that is new or gone; it is empty
    /// where nothing is.
    TextRange replace(TextRange checked, std::span<const TextRange> found);

    /// Drops those outside of \a range, if there are more than \a most.
    void trim(TextRange range, size_t most);
    void clear() { m_ranges.clear(); }

private:
    std::vector<TextRange> m_ranges;
};

} // namespace quillory
