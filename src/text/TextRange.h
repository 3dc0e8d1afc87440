#pragma once

#include <QtGlobal>
#include <algorithm>
#include <compare>

namespace quillory {

/// A position in a text, or a length of text, in UTF-16 code units.
using TextOffset = qsizetype;

/// A count with a type of its own: made from a number, and turned into one, only in so many words.
template<class Tag>
class StrongIndex
{
public:
    constexpr StrongIndex() = default;
    constexpr explicit StrongIndex(qsizetype value) : m_value(value) {}

    constexpr qsizetype value() const { return m_value; }
    constexpr auto operator<=>(const StrongIndex&) const = default;

    constexpr StrongIndex operator+(qsizetype steps) const { return StrongIndex(m_value + steps); }
    constexpr StrongIndex operator-(qsizetype steps) const { return StrongIndex(m_value - steps); }
    constexpr qsizetype operator-(StrongIndex other) const { return m_value - other.m_value; }
    constexpr StrongIndex& operator++()
    {
        ++m_value;
        return *this;
    }

private:
    qsizetype m_value = 0;
};

/// A line of a text, counted from 0.
using LineIndex = StrongIndex<struct LineIndexTag>;

/// A number of bytes, of a file or of a buffer.
using ByteCount = StrongIndex<struct ByteCountTag>;

/// A stretch of text: its first code unit, and its length in UTF-16 code units (0 for a caret).
struct TextRange
{
    TextOffset location = 0;
    TextOffset length = 0;

    constexpr TextOffset end() const { return location + length; }
    constexpr bool isEmpty() const { return length == 0; }
    constexpr bool contains(TextOffset offset) const
    {
        return offset >= location && offset < end();
    }
    constexpr bool operator==(const TextRange&) const = default;

    /// The range between two offsets, which may stand in either order.
    static constexpr TextRange between(TextOffset a, TextOffset b)
    {
        return {std::min(a, b), std::max(a, b) - std::min(a, b)};
    }

    /// The part that both ranges cover; where they only touch or lie apart, an empty range at the
    /// later start.
    constexpr TextRange intersection(TextRange other) const
    {
        const TextOffset start = std::max(location, other.location);
        return {start, std::max<TextOffset>(0, std::min(end(), other.end()) - start)};
    }

    /// This range pulled into a text of \a length code units.
    constexpr TextRange clampedTo(TextOffset textLength) const
    {
        const TextOffset start = std::clamp<TextOffset>(location, 0, textLength);
        return {start, std::clamp<TextOffset>(end(), start, textLength) - start};
    }
};

/// What one edit did: the code units that went, and how many came in their place.
struct TextChange
{
    TextRange replaced;            ///< in the text before the edit
    TextOffset insertedLength = 0; ///< in UTF-16 code units

    constexpr TextOffset delta() const { return insertedLength - replaced.length; }
    constexpr TextRange inserted() const { return {replaced.location, insertedLength}; }
    constexpr bool isEmpty() const { return replaced.isEmpty() && insertedLength == 0; }
    constexpr bool operator==(const TextChange&) const = default;
};

} // namespace quillory
