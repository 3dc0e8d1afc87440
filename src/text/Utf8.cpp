#include "text/Utf8.h"

#include <QtEndian>
#include <algorithm>
#include <bit>

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

/// Writes eight bytes as a code unit each.
void widenWord(const uchar* at, char16_t* to)
{
#if defined(__SSE2__)
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(at));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
#else
    std::copy_n(at, sizeof(quint64), to);
#endif
}

/// Decodes one sequence of any length and answers how many bytes it has; 0 where it is malformed.
/// Four bytes make two code units, fewer make one.
int decodeSequence(const uchar* at, const uchar* end, char16_t* to)
{
    const int length = sequenceLength(at, end);
    char32_t character = at[0] & (0xFFU >> (length + 1));
    for (int i = 1; i < length; ++i)
        character = character << 6 | (at[i] & 0x3FU);
    for (const char16_t unit : QChar::fromUcs4(character))
        *to++ = unit;
    return length;
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
    constexpr qsizetype word = sizeof(quint64);
    const auto* const begin = reinterpret_cast<const uchar*>(bytes.data());
    const uchar* const end = begin + bytes.size();
    const uchar* at = begin;
    char16_t* to = units;
    const char16_t* const stop = units + room;
    while (at < end && stop - to >= 2) {
        const bool hasRoom = end - at >= 2 * word && stop - to >= 2 * word;
        if (*at < 0x80 && hasRoom && at[1] >= 0x80) {
            *to++ = *at++;
        } else if (*at < 0x80) {
            const auto high =
                hasRoom ? qFromLittleEndian<quint64>(at) & 0x8080808080808080 : quint64(0);
            if (high == 0) {
                const qsizetype most = std::min<qsizetype>({end - at, stop - to, longAscii});
                const QByteArrayView rest(at, most);
                const qsizetype run = asciiPrefixLength(rest);
                if (run == longAscii)
                    break;
                widen(rest.first(run), to);
                at += run;
                to += run;
                continue;
            }
            widenWord(at, to);
            const int ascii = std::countr_zero(high) / 8;
            at += ascii;
            to += ascii;
        }
        // The lengths that nearly all characters have are looked at first.
        if (hasRoom && (*at & 0xF0) == 0xE0 && isTrail(at[1]) && isTrail(at[2])) {
            const auto unit = char16_t((at[0] & 0x0F) << 12 | (at[1] & 0x3F) << 6 | (at[2] & 0x3F));
            if (unit < 0x800 || QChar::isSurrogate(unit))
                return {at - begin, to - units, false};
            *to++ = unit;
            at += 3;
            continue;
        }
        if (hasRoom && *at >= 0xC2 && *at < 0xE0 && isTrail(at[1])) {
            *to++ = char16_t((at[0] & 0x1F) << 6 | (at[1] & 0x3F));
            at += 2;
            continue;
        }
        const int length = decodeSequence(at, end, to);
        if (length == 0)
            return {at - begin, to - units, false};
        at += length;
        to += length == 4 ? 2 : 1;
    }
    return {at - begin, to - units, true};
}

Utf8Progress encodeUtf8(QStringView units, char* bytes)
{
    char* to = bytes;
    const char16_t* const begin = units.utf16();
    const char16_t* const end = begin + units.size();
    const char16_t* at = begin;
    while (at < end) {
#if defined(__SSE2__)
        if (end - at >= 8) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
            const __m128i high = _mm_and_si128(block, _mm_set1_epi16(short(0xFF80)));
            if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) == 0xFFFF) {
                _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(block, block));
                at += 8;
                to += 8;
                continue;
            }
        }
#endif
        // At most as many as the block above has, before it is tried again.
        const char16_t* const pause = at + std::min<qsizetype>(end - at, 8);
        while (at < pause) {
            const unsigned unit = *at;
            if (unit < 0x80) {
                *to++ = char(unit);
            } else if (!QChar::isSurrogate(unit)) {
                // Without a branch on the length: where it is two, the third byte is overwritten.
                const unsigned isThree = unit >= 0x800 ? 1 : 0;
                to[0] = char(0xC0 | isThree << 5 | unit >> (6 + 6 * isThree));
                to[1] = char(0x80 | (unit >> 6 * isThree & 0x3F));
                to[2] = char(0x80 | (unit & 0x3F));
                to += 2 + int(isThree);
            } else {
                if (!QChar::isHighSurrogate(unit) || at + 1 == end || !QChar::isLowSurrogate(at[1]))
                    return {at - begin, to - bytes, false};
                const char32_t character = QChar::surrogateToUcs4(char16_t(unit), *++at);
                *to++ = char(0xF0 | character >> 18);
                *to++ = char(0x80 | (character >> 12 & 0x3F));
                *to++ = char(0x80 | (character >> 6 & 0x3F));
                *to++ = char(0x80 | (character & 0x3F));
            }
            ++at;
        }
    }
    return {at - begin, to - bytes, true};
}

} // namespace quillory
