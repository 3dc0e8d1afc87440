#pragma once

#include "text/TextRange.h"

namespace quillory {

/// A selected stretch of text with a direction, or, where both ends meet, a caret.
struct Selection
{
    TextOffset anchor = 0; ///< the end that stays when the selection is extended
    TextOffset head = 0;   ///< the end that moves, where the caret is drawn

    constexpr TextRange range() const { return TextRange::between(anchor, head); }
    constexpr bool isCaret() const { return anchor == head; }
    constexpr bool operator==(const Selection&) const = default;

    static constexpr Selection caret(TextOffset offset) { return {offset, offset}; }
    static constexpr Selection over(TextRange range) { return {range.location, range.end()}; }
};

/// Where \a offset lies after \a change. One inside the replaced characters goes to the same
/// distance into the new ones, at most to their end; one at an insertion stays before it.
constexpr TextOffset mapped(TextOffset offset, const TextChange& change)
{
    if (offset <= change.replaced.location)
        return offset;
    if (offset >= change.replaced.end())
        return offset + change.delta();
    return std::min(offset, change.replaced.location + change.insertedLength);
}

/// Where \a range lies after \a change.
constexpr TextRange mapped(TextRange range, const TextChange& change)
{
    return TextRange::between(mapped(range.location, change), mapped(range.end(), change));
}

} // namespace quillory
