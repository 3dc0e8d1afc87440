#include "text/Utf8.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quillory {

namespace {

bool isTrail(uchar byte)
{
    return (byte & 0xC0) == 0x80;
}

/// The length of the well-formed sequence that begins at \a at, where a byte above 0x7F stands; 0
/// where there is none.
int sequenceLength(const uchar* at, const uchar* end)
{
    const uchar lead = at[0];
    const qsizetype rest = end - at;
    if (lead < 0xE0)
        return lead >= 0xC2 && rest >= 2 && isTrail(at[1]) ? 2 : 0;
    if (lead < 0xF0) {
        if (rest < 3 || !isTrail(at[1]) || !isTrail(at[2]))
            return 0;
        const bool overlong = lead == 0xE0 && at[1] < 0xA0;
        const bool surrogate = lead == 0xED && at[1] > 0x9F;
        return overlong || surrogate ? 0 : 3;
    }
    if (lead > 0xF4 || rest < 4 || !isTrail(at[1]) || !isTrail(at[2]) || !isTrail(at[3]))
        return 0;
    const bool overlong = lead == 0xF0 && at[1] < 0x90;
    const bool tooHigh = lead == 0xF4 && at[1] > 0x8F;
    return overlong || tooHigh ? 0 : 4;
}

} // namespace

qsizetype asciiPrefixLength(QByteArrayView bytes)
{
    const char* const begin = bytes.data();
    const char* const end = begin + bytes.size();
    const char* at = begin;
#if defined(__SSE2__)
    const auto block = [](const char* from) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    };
    for (; end - at >= 64; at += 64) {
        const __m128i any = _mm_or_si128(_mm_or_si128(block(at), block(at + 16)),
                                         _mm_or_si128(block(at + 32), block(at + 48)));
        if (_mm_movemask_epi8(any) != 0)
            break;
    }
    for (; end - at >= 16; at += 16) {
        const int high = _mm_movemask_epi8(block(at));
        if (high != 0)
            return at - begin + __builtin_ctz(unsigned(high));
    }
#endif
    while (at < end && uchar(*at) < 0x80)
        ++at;
    return at - begin;
}

void widen(QByteArrayView latin1, char16_t* units)
{
    const char* at = latin1.data();
    const char* const end = at + latin1.size();
#if defined(__SSE2__)
    for (; end - at >= 16; at += 16, units += 16) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        auto* to = reinterpret_cast<__m128i*>(units);
        _mm_storeu_si128(to, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
        _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
    }
#endif
    while (at < end)
        *units++ = uchar(*at++);
}

Utf8Progress decodeUtf8(QByteArrayView bytes, char16_t* units, qsizetype room, qsizetype longAscii)
{
    const auto* const begin = reinterpret_cast<const uchar*>(bytes.data());
    const uchar* const end = begin + bytes.size();
    const uchar* at = begin;
    char16_t* to = units;
    const char16_t* const stop = units + room;
    bool valid = true;
    while (at < end && stop - to >= 2) {
        if (*at < 0x80) {
            const QByteArrayView rest(at, std::min<qsizetype>(end - at, longAscii));
            const qsizetype run = asciiPrefixLength(rest);
            if (run == longAscii)
                break;
            const qsizetype some = std::min<qsizetype>(run, stop - to);
            widen(rest.first(some), to);
            at += some;
            to += some;
            continue;
        }
        const int length = sequenceLength(at, end);
        if (length == 3) {
            *to++ = char16_t((at[0] & 0x0F) << 12 | (at[1] & 0x3F) << 6 | (at[2] & 0x3F));
        } else if (length == 2) {
            *to++ = char16_t((at[0] & 0x1F) << 6 | (at[1] & 0x3F));
        } else if (length == 4) {
            const char32_t character = char32_t(at[0] & 0x07) << 18 | char32_t(at[1] & 0x3F) << 12 |
                                       char32_t(at[2] & 0x3F) << 6 | char32_t(at[3] & 0x3F);
            *to++ = QChar::highSurrogate(character);
            *to++ = QChar::lowSurrogate(character);
        } else {
            valid = false;
            break;
        }
        at += length;
    }
    return {at - begin, to - units, valid};
}

Utf8Progress encodeUtf8(QStringView units, char* bytes)
{
    char* to = bytes;
    const char16_t* const begin = units.utf16();
    const char16_t* const end = begin + units.size();
    const char16_t* at = begin;
    for (; at < end; ++at) {
        const char16_t unit = *at;
        if (unit < 0x80) {
            *to++ = char(unit);
        } else if (unit < 0x800) {
            *to++ = char(0xC0 | unit >> 6);
            *to++ = char(0x80 | (unit & 0x3F));
        } else if (!QChar::isSurrogate(unit)) {
            *to++ = char(0xE0 | unit >> 12);
            *to++ = char(0x80 | (unit >> 6 & 0x3F));
            *to++ = char(0x80 | (unit & 0x3F));
        } else {
            if (!QChar::isHighSurrogate(unit) || at + 1 == end || !QChar::isLowSurrogate(at[1]))
                return {at - begin, to - bytes, false};
            const char32_t character = QChar::surrogateToUcs4(unit, *++at);
            *to++ = char(0xF0 | character >> 18);
            *to++ = char(0x80 | (character >> 12 & 0x3F));
            *to++ = char(0x80 | (character >> 6 & 0x3F));
            *to++ = char(0x80 | (character & 0x3F));
        }
    }
    return {at - begin, to - bytes, true};
}

} // namespace quillory
