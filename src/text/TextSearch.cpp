#include "text/TextSearch.h"

#include "text/TextReader.h"

#include <bit>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The text is searched leaf by leaf. Inside a leaf, sixteen bytes at a time are compared with the
// needle's first and last unit at once, and only where both are equal the rest is looked at. An
// occurrence that straddles leaves begins in the last few units of one of them; those places are
// compared one by one.

namespace quillory {

namespace {

enum class Direction
{
    forwards,
    backwards
};

#if defined(__SSE2__)

__m128i filled(uchar unit)
{
    return _mm_set1_epi8(char(unit));
}

__m128i filled(char16_t unit)
{
    return _mm_set1_epi16(short(unit));
}

__m128i equal(__m128i a, __m128i b, uchar)
{
    return _mm_cmpeq_epi8(a, b);
}

__m128i equal(__m128i a, __m128i b, char16_t)
{
    return _mm_cmpeq_epi16(a, b);
}

#endif

/// Searches the units of one leaf for a needle of the same width.
template<class Unit>
class LeafSearch
{
public:
    LeafSearch(std::basic_string_view<Unit> haystack, std::basic_string_view<Unit> needle)
        : m_haystack(haystack), m_needle(needle),
          m_places(TextOffset(haystack.size()) - TextOffset(needle.size()) + 1)
    {}

    /// The first or the last occurrence; -1 where there is none.
    TextOffset find(Direction direction) const
    {
        return direction == Direction::forwards ? first() : last();
    }

private:
    bool matchesAt(TextOffset place) const
    {
        return m_haystack.substr(size_t(place), m_needle.size()) == m_needle;
    }

#if defined(__SSE2__)
    static constexpr TextOffset block = 16 / sizeof(Unit);

    /// One bit a byte: set where, counted from \a place, the first and the last unit are right.
    unsigned candidates(TextOffset place) const
    {
        const Unit* at = m_haystack.data() + place;
        const auto load = [](const Unit* from) {
            return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
        };
        const __m128i firsts = equal(load(at), filled(m_needle.front()), Unit());
        const __m128i lasts =
            equal(load(at + m_needle.size() - 1), filled(m_needle.back()), Unit());
        return unsigned(_mm_movemask_epi8(_mm_and_si128(firsts, lasts)));
    }

    /// The bits of a single unit.
    static constexpr unsigned unitBits = (1U << sizeof(Unit)) - 1;
#endif

    TextOffset first() const
    {
        TextOffset place = 0;
#if defined(__SSE2__)
        for (; place + block <= m_places; place += block) {
            for (unsigned mask = candidates(place); mask != 0;) {
                const int bit = std::countr_zero(mask);
                const TextOffset candidate = place + bit / TextOffset(sizeof(Unit));
                if (matchesAt(candidate))
                    return candidate;
                mask &= ~(unitBits << bit);
            }
        }
#endif
        for (; place < m_places; ++place) {
            if (matchesAt(place))
                return place;
        }
        return -1;
    }

    TextOffset last() const
    {
        TextOffset end = m_places;
#if defined(__SSE2__)
        for (; end >= block; end -= block) {
            for (unsigned mask = candidates(end - block); mask != 0;) {
                const int bit = std::bit_width(mask) - int(sizeof(Unit));
                const TextOffset candidate = end - block + bit / TextOffset(sizeof(Unit));
                if (matchesAt(candidate))
                    return candidate;
                mask &= ~(unitBits << bit);
            }
        }
#endif
        while (end > 0) {
            if (matchesAt(--end))
                return end;
        }
        return -1;
    }

    std::basic_string_view<Unit> m_haystack;
    std::basic_string_view<Unit> m_needle;
    TextOffset m_places;
};

/// One search through a text.
class Search
{
public:
    Search(const TextSnapshot& text, QStringView needle, Direction direction)
        : m_pieces(text.root().data()), m_reader(text), m_needle(needle), m_direction(direction)
    {
        for (const QChar unit : needle) {
            m_isNarrow &= unit.unicode() <= 0xFF;
            m_narrowNeedle.push_back(uchar(unit.unicode()));
        }
    }

    TextOffset find(TextRange within)
    {
        if (m_needle.isEmpty())
            return -1;
        return m_direction == Direction::forwards ? forwards(within) : backwards(within);
    }

private:
    using NarrowView = std::basic_string_view<uchar>;

    TextOffset forwards(TextRange within)
    {
        for (TextOffset at = within.location; at + m_needle.size() <= within.end();) {
            const TextPiece piece = pieceAt(at, within);
            const TextOffset found = findInside(piece);
            if (found >= 0)
                return found;
            at = piece.location + piece.length();
            const TextOffset end = std::min(at, within.end() - m_needle.size() + 1);
            for (TextOffset place = firstStraddling(piece); place < end; ++place) {
                if (matchesAt(place))
                    return place;
            }
        }
        return -1;
    }

    TextOffset backwards(TextRange within)
    {
        for (TextOffset end = within.end(); end > within.location;) {
            const TextPiece piece = pieceAt(end - 1, within);
            TextOffset place = std::min(end, within.end() - m_needle.size() + 1);
            while (--place >= firstStraddling(piece)) {
                if (matchesAt(place))
                    return place;
            }
            const TextOffset found = findInside(piece);
            if (found >= 0)
                return found;
            end = piece.location;
        }
        return -1;
    }

    /// The piece that holds \a offset, cut to \a within.
    TextPiece pieceAt(TextOffset offset, TextRange within)
    {
        const TextPiece piece = m_pieces.at(offset);
        const TextRange part = within.intersection({piece.location, piece.length()});
        return trimmed(piece, part.location - piece.location, part.length);
    }

    TextOffset firstStraddling(const TextPiece& piece) const
    {
        return piece.location + std::max<TextOffset>(0, piece.length() - m_needle.size() + 1);
    }

    TextOffset findInside(const TextPiece& piece) const
    {
        if (piece.length() < m_needle.size())
            return -1;
        TextOffset index = -1;
        if (const auto* wide = std::get_if<QStringView>(&piece.units)) {
            const std::u16string_view needle(m_needle.utf16(), size_t(m_needle.size()));
            index = LeafSearch({wide->utf16(), size_t(wide->size())}, needle).find(m_direction);
        } else if (m_isNarrow) {
            const auto narrow = std::get<QLatin1StringView>(piece.units);
            const NarrowView units(reinterpret_cast<const uchar*>(narrow.data()),
                                   size_t(narrow.size()));
            index = LeafSearch<uchar>(units, m_narrowNeedle).find(m_direction);
        }
        return index < 0 ? -1 : piece.location + index;
    }

    bool matchesAt(TextOffset place)
    {
        for (TextOffset i = 0; i < m_needle.size(); ++i) {
            if (m_reader.at(place + i) != m_needle[i].unicode())
                return false;
        }
        return true;
    }

    TextPieces m_pieces;
    TextReader m_reader;
    QStringView m_needle;
    std::basic_string<uchar> m_narrowNeedle;
    bool m_isNarrow = true;
    Direction m_direction;
};

} // namespace

TextOffset find(const TextSnapshot& text, QStringView needle, TextRange within)
{
    return Search(text, needle, Direction::forwards).find(within);
}

TextOffset findBackwards(const TextSnapshot& text, QStringView needle, TextRange within)
{
    return Search(text, needle, Direction::backwards).find(within);
}

} // namespace quillory
