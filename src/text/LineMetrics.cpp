#include "text/LineMetrics.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quillory {

namespace {

#if defined(__SSE2__)

/// 16 units at a time: one mask bit (8-bit units) or two (16-bit units) for each that may end a
/// line.
unsigned breakMask(const uchar* units)
{
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
    const __m128i hits = _mm_or_si128(_mm_cmpeq_epi8(block, _mm_set1_epi8('\n')),
                                      _mm_cmpeq_epi8(block, _mm_set1_epi8('\r')));
    return unsigned(_mm_movemask_epi8(hits));
}

unsigned breakMask(const char16_t* units)
{
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
    const __m128i controls = _mm_or_si128(_mm_cmpeq_epi16(block, _mm_set1_epi16('\n')),
                                          _mm_cmpeq_epi16(block, _mm_set1_epi16('\r')));
    // U+2028 and U+2029 differ in the last bit only.
    const __m128i separators =
        _mm_cmpeq_epi16(_mm_or_si128(block, _mm_set1_epi16(1)), _mm_set1_epi16(0x2029));
    return unsigned(_mm_movemask_epi8(_mm_or_si128(controls, separators)));
}

#endif

/// Calls \a visit(begin, end) with the place of every line break in \a units, first to last, until
/// it answers false.
template<class Unit, class Visit>
void forEachBreak(std::span<const Unit> units, Visit&& visit)
{
    const TextOffset size = TextOffset(units.size());
    TextOffset index = 0;
    // Answers the index to go on at, or -1 to stop.
    const auto visitAt = [&](TextOffset at) -> TextOffset {
        const bool pair =
            units[size_t(at)] == '\r' && at + 1 < size && units[size_t(at + 1)] == '\n';
        const TextOffset end = at + (pair ? 2 : 1);
        return visit(at, end) ? end : -1;
    };
#if defined(__SSE2__)
    constexpr TextOffset block = 16 / sizeof(Unit);
    TextOffset next =
        0; // units before it are behind us: the LF of a CR LF that began a block earlier
    for (; index + block <= size; index += block) {
        unsigned mask = breakMask(units.data() + index);
        while (mask != 0) {
            const TextOffset at = index + __builtin_ctz(mask) / int(sizeof(Unit));
            mask &= mask - 1;
            if constexpr (sizeof(Unit) == 2)
                mask &= mask - 1;
            if (at < next)
                continue;
            next = visitAt(at);
            if (next < 0)
                return;
        }
    }
    index = std::max(index, next);
#endif
    while (index < size) {
        if (!isLineBreak(units[size_t(index)])) {
            ++index;
            continue;
        }
        index = visitAt(index);
        if (index < 0)
            return;
    }
}

template<class Unit>
TextMetrics measure(std::span<const Unit> units)
{
    TextMetrics metrics;
    metrics.units = TextOffset(units.size());
    TextOffset lineStart = 0;
    forEachBreak(units, [&](TextOffset begin, TextOffset end) {
        if (metrics.breaks++ == 0)
            metrics.firstLine = begin;
        else
            metrics.innerLine = std::max(metrics.innerLine, begin - lineStart);
        lineStart = end;
        return true;
    });
    metrics.lastLine = metrics.units - lineStart;
    if (metrics.breaks == 0)
        metrics.firstLine = metrics.units;
    return metrics;
}

template<class Unit>
TextOffset findEndOfBreak(std::span<const Unit> units, qsizetype number)
{
    TextOffset found = -1;
    forEachBreak(units, [&](TextOffset, TextOffset end) {
        if (--number > 0)
            return true;
        found = end;
        return false;
    });
    return found;
}

template<class Unit>
qsizetype countBreaks(std::span<const Unit> units, TextOffset limit)
{
    qsizetype count = 0;
    // One unit more, so that a CR whose LF is cut off is seen as the pair that it is.
    const size_t seen = std::min(units.size(), size_t(limit + 1));
    forEachBreak(units.first(seen), [&](TextOffset, TextOffset end) {
        count += end <= limit ? 1 : 0;
        return end < limit;
    });
    return count;
}

} // namespace

TextMetrics metricsOf(std::span<const uchar> latin1)
{
    return measure(latin1);
}

TextMetrics metricsOf(std::span<const char16_t> utf16)
{
    return measure(utf16);
}

TextOffset endOfBreak(std::span<const uchar> latin1, qsizetype number)
{
    return findEndOfBreak(latin1, number);
}

TextOffset endOfBreak(std::span<const char16_t> utf16, qsizetype number)
{
    return findEndOfBreak(utf16, number);
}

qsizetype breaksBefore(std::span<const uchar> latin1, TextOffset end)
{
    return countBreaks(latin1, end);
}

qsizetype breaksBefore(std::span<const char16_t> utf16, TextOffset end)
{
    return countBreaks(utf16, end);
}

TextMetrics operator+(const TextMetrics& a, const TextMetrics& b)
{
    TextMetrics sum;
    sum.units = a.units + b.units;
    sum.breaks = a.breaks + b.breaks;
    const TextOffset joined = a.lastLine + b.firstLine;
    sum.firstLine = a.breaks == 0 ? joined : a.firstLine;
    sum.lastLine = b.breaks == 0 ? joined : b.lastLine;
    sum.innerLine = std::max(a.innerLine, b.innerLine);
    if (a.breaks > 0 && b.breaks > 0)
        sum.innerLine = std::max(sum.innerLine, joined);
    return sum;
}

} // namespace quillory
