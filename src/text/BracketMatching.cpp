#include "text/BracketMatching.h"

#include "text/TextUnits.h"

#include <array>
#include <bit>
#include <limits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quillory {

namespace {

constexpr std::array kinds{roundBrackets, curlyBrackets, squareBrackets, angleBrackets};

/// The brackets of one kind in a stretch of text that have no partner in it: first closers, then
/// openers.
struct Unmatched
{
    TextOffset closers = 0;
    TextOffset openers = 0;

    void follow(Unmatched next)
    {
        const TextOffset pairs = std::min(openers, next.closers);
        closers += next.closers - pairs;
        openers += next.openers - pairs;
    }
};

/// Where in 64 units there are brackets: the lowest bit is the first unit.
struct BracketBits
{
    quint64 openers = 0;
    quint64 closers = 0;
};

constexpr int blockUnits = 64;

#if defined(__SSE2__)

/// Sixteen units, a byte each; a unit that does not fit in one is no bracket, and becomes 255.
__m128i sixteen(const uchar* units)
{
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
}

__m128i sixteen(const char16_t* units)
{
    const auto* from = reinterpret_cast<const __m128i*>(units);
    // Packing takes units for signed: what is over 0x7FFF would become 0, which is no bracket.
    return _mm_packus_epi16(_mm_loadu_si128(from), _mm_loadu_si128(from + 1));
}

template<class Unit>
BracketBits bitsOf(const Unit* units, BracketKind kind)
{
    const __m128i opener = _mm_set1_epi8(char(kind.opener));
    const __m128i closer = _mm_set1_epi8(char(kind.closer));
    BracketBits bits;
    for (int i = 0; i < blockUnits; i += 16) {
        const __m128i part = sixteen(units + i);
        const auto where = [&](__m128i bracket) {
            return quint64(unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(part, bracket)))) << i;
        };
        bits.openers |= where(opener);
        bits.closers |= where(closer);
    }
    return bits;
}

#else

template<class Unit>
BracketBits bitsOf(const Unit* units, BracketKind kind)
{
    BracketBits bits;
    for (TextOffset i = 0; i < blockUnits; ++i) {
        bits.openers |= quint64(units[i] == kind.opener) << i;
        bits.closers |= quint64(units[i] == kind.closer) << i;
    }
    return bits;
}

#endif

Unmatched unmatchedIn(BracketBits bits)
{
    Unmatched result;
    const quint64 closersOfNeighbours = bits.openers << 1 & bits.closers;
    bits.openers ^= closersOfNeighbours >> 1;
    bits.closers ^= closersOfNeighbours;
    if (bits.openers == 0 || bits.closers == 0)
        return {std::popcount(bits.closers), std::popcount(bits.openers)};
    for (quint64 both = bits.openers | bits.closers; both != 0; both &= both - 1) {
        const bool opens = bits.openers & both & -both;
        result.follow(opens ? Unmatched{0, 1} : Unmatched{1, 0});
    }
    return result;
}

template<class Unit>
Unmatched unmatchedIn(const Unit* units, TextOffset count, BracketKind kind)
{
    Unmatched result;
    TextOffset i = 0;
    for (; i + blockUnits <= count; i += blockUnits)
        result.follow(unmatchedIn(bitsOf(units + i, kind)));
    for (; i < count; ++i) {
        if (units[i] == kind.opener)
            result.follow({0, 1});
        else if (units[i] == kind.closer)
            result.follow({1, 0});
    }
    return result;
}

const TextLeaf& asLeaf(const TextNode& node)
{
    return static_cast<const TextLeaf&>(node);
}

const TextBranch& asBranch(const TextNode& node)
{
    return static_cast<const TextBranch&>(node);
}

/// The look-ups in the trees of texts for brackets of one kind.
class BracketSearch
{
public:
    explicit BracketSearch(BracketKind kind)
        : m_kind(kind), m_question(u"unmatched " + QString(QChar(kind.opener)))
    {}

    Unmatched unmatched(const TextNode& node) const
    {
        Unmatched result;
        if (node.height == 0) {
            size_t hint = 0;
            for (TextOffset at = 0; at < node.metrics.units;) {
                const TextPiece piece = asLeaf(node).pieceAt(at, hint);
                std::visit(
                    [&](auto view) {
                        result.follow(unmatchedIn(unitsOf(view), view.size(), m_kind));
                    },
                    piece.units);
                at = piece.location + piece.length();
            }
            return result;
        }
        constexpr TextOffset largest = std::numeric_limits<quint32>::max();
        if (const auto known = node.notes.answer(m_question))
            return {TextOffset(*known >> 32), TextOffset(*known & largest)};
        for (int i = 0; i < asBranch(node).count; ++i)
            result.follow(unmatched(*asBranch(node).children[size_t(i)]));
        if (node.metrics.units <= largest)
            node.notes.add(m_question, quint64(result.closers) << 32 | quint64(result.openers));
        return result;
    }

    /// The opener that the \a pending-th closer wants, counted from \a end down to \a begin, places
    /// in \a node; where it is not in there, \a pending is what is then still wanted.
    std::optional<TextOffset> openerBefore(const TextNode& node, TextOffset begin, TextOffset end,
                                           TextOffset& pending) const
    {
        if (begin <= 0 && end == node.metrics.units && skips(node, pending, &Unmatched::openers))
            return {};
        if (node.height == 0)
            return openerInLeaf(asLeaf(node), std::max<TextOffset>(begin, 0), end, pending);
        const TextBranch& branch = asBranch(node);
        for (int i = branch.childAtUnit(end - 1); i >= 0 && end > begin; --i) {
            const TextNode& child = *branch.children[size_t(i)];
            const TextOffset start = branch.unitsBefore[size_t(i)];
            if (const auto found = openerBefore(child, begin - start, end - start, pending))
                return start + *found;
            end = start;
        }
        return {};
    }

    /// The same for the closer that an opener wants, from \a begin on.
    std::optional<TextOffset> closerFrom(const TextNode& node, TextOffset begin,
                                         TextOffset& pending) const
    {
        if (begin == 0 && skips(node, pending, &Unmatched::closers))
            return {};
        if (node.height == 0)
            return closerInLeaf(asLeaf(node), begin, pending);
        const TextBranch& branch = asBranch(node);
        for (int i = branch.childAtUnit(begin); i < branch.count; ++i) {
            const TextNode& child = *branch.children[size_t(i)];
            const TextOffset start = branch.unitsBefore[size_t(i)];
            if (const auto found =
                    closerFrom(child, std::max<TextOffset>(begin - start, 0), pending))
                return start + *found;
        }
        return {};
    }

private:
    /// Whether \a node holds none of the \a partners that are still wanted; then it is passed.
    bool skips(const TextNode& node, TextOffset& pending, TextOffset Unmatched::*partners) const
    {
        const Unmatched all = unmatched(node);
        if (all.*partners >= pending)
            return false;
        pending += all.openers + all.closers - 2 * (all.*partners);
        return true;
    }

    std::optional<TextOffset> openerInLeaf(const TextLeaf& leaf, TextOffset begin, TextOffset end,
                                           TextOffset& pending) const
    {
        size_t hint = 0;
        while (end > begin) {
            const TextPiece piece = leaf.pieceAt(end - 1, hint);
            const TextOffset first = std::max<TextOffset>(begin - piece.location, 0);
            const auto visit = [&](auto view) -> std::optional<TextOffset> {
                for (TextOffset i = end - piece.location; i-- > first;) {
                    const char16_t unit = unitsOf(view)[i];
                    if (unit == m_kind.closer)
                        ++pending;
                    else if (unit == m_kind.opener && --pending == 0)
                        return piece.location + i;
                }
                return {};
            };
            if (const auto found = std::visit(visit, piece.units))
                return found;
            end = piece.location;
        }
        return {};
    }

    std::optional<TextOffset> closerInLeaf(const TextLeaf& leaf, TextOffset begin,
                                           TextOffset& pending) const
    {
        size_t hint = 0;
        while (begin < leaf.metrics.units) {
            const TextPiece piece = leaf.pieceAt(begin, hint);
            const auto visit = [&](auto view) -> std::optional<TextOffset> {
                for (TextOffset i = begin - piece.location; i < view.size(); ++i) {
                    const char16_t unit = unitsOf(view)[i];
                    if (unit == m_kind.opener)
                        ++pending;
                    else if (unit == m_kind.closer && --pending == 0)
                        return piece.location + i;
                }
                return {};
            };
            if (const auto found = std::visit(visit, piece.units))
                return found;
            begin = piece.location + piece.length();
        }
        return {};
    }

    BracketKind m_kind;
    QString m_question;
};

void noteBracketsBelow(const TextNode& node)
{
    if (node.height == 0)
        return;
    for (int i = 0; i < asBranch(node).count; ++i)
        noteBracketsBelow(*asBranch(node).children[size_t(i)]);
    for (const BracketKind kind : kinds)
        (void)BracketSearch(kind).unmatched(node);
}

std::optional<BracketKind> kindWith(char16_t BracketKind::*side, char16_t unit)
{
    const auto kind = std::ranges::find(kinds, unit, side);
    return kind == kinds.end() ? std::optional<BracketKind>() : *kind;
}

} // namespace

std::optional<BracketKind> kindOpenedBy(char16_t unit)
{
    return kindWith(&BracketKind::opener, unit);
}

std::optional<BracketKind> kindClosedBy(char16_t unit)
{
    return kindWith(&BracketKind::closer, unit);
}

std::optional<TextOffset> openerBefore(const TextSnapshot& text, TextOffset offset,
                                       BracketKind kind, TextOffset from)
{
    TextOffset pending = 1;
    if (offset <= from)
        return {};
    return BracketSearch(kind).openerBefore(*text.root(), from, offset, pending);
}

std::optional<TextOffset> closerFrom(const TextSnapshot& text, TextOffset offset, BracketKind kind)
{
    TextOffset pending = 1;
    if (offset >= text.length())
        return {};
    return BracketSearch(kind).closerFrom(*text.root(), offset, pending);
}

std::optional<TextOffset> matchingOpener(const TextSnapshot& text, TextOffset closerAt)
{
    const auto kind = kindClosedBy(text.at(closerAt));
    return kind ? openerBefore(text, closerAt, *kind) : std::nullopt;
}

std::optional<TextOffset> matchingCloser(const TextSnapshot& text, TextOffset openerAt)
{
    const auto kind = kindOpenedBy(text.at(openerAt));
    return kind ? closerFrom(text, openerAt + 1, *kind) : std::nullopt;
}

void noteBrackets(const TextSnapshot& text)
{
    if (text.root())
        noteBracketsBelow(*text.root());
}

} // namespace quillory
