#include "text/NonLossyAscii.h"

#include "text/TextBuilder.h"

#include <charconv>

namespace quillory {

namespace {

struct Escape
{
    char16_t unit = 0;
    qsizetype length = 0; ///< bytes with the backslash; 0 where there is none
};

/// The number of exactly \a digits digits that lead \a bytes; -1 where there is none.
int leadingNumber(QByteArrayView bytes, qsizetype digits, int base)
{
    int number = -1;
    if (bytes.size() < digits || bytes[0] == '-')
        return -1;
    const char* const end = bytes.data() + digits;
    return std::from_chars(bytes.data(), end, number, base).ptr == end ? number : -1;
}

/// The escape that leads \a bytes, of which the first is a backslash.
Escape leadingEscape(QByteArrayView bytes)
{
    if (bytes.startsWith("\\\\"))
        return {u'\\', 2};
    const bool isUnicode = bytes.startsWith("\\u");
    const qsizetype prefix = isUnicode ? 2 : 1;
    const qsizetype digits = isUnicode ? 4 : 3;
    const int number = leadingNumber(bytes.sliced(prefix), digits, isUnicode ? 16 : 8);
    if (number < 0 || (!isUnicode && number > 0xFF))
        return {};
    return {char16_t(number), prefix + digits};
}

} // namespace

bool decodeNonLossyAscii(QByteArrayView bytes, TextBuilder& text)
{
    while (!bytes.isEmpty()) {
        if (uchar(bytes[0]) > 0x7F)
            return false;
        if (bytes[0] == '\\') {
            const Escape escape = leadingEscape(bytes);
            if (escape.length == 0)
                return false;
            text.append(QStringView(&escape.unit, 1));
            bytes = bytes.sliced(escape.length);
            continue;
        }
        qsizetype plain = 0;
        while (plain < bytes.size() && bytes[plain] != '\\' && uchar(bytes[plain]) < 0x80)
            ++plain;
        text.append(QLatin1StringView(bytes.first(plain)));
        bytes = bytes.sliced(plain);
    }
    return true;
}

char* encodeNonLossyAscii(QStringView units, char* bytes)
{
    for (const QChar character : units) {
        const char16_t unit = character.unicode();
        if (unit == u'\\') {
            *bytes++ = '\\';
            *bytes++ = '\\';
        } else if (unit < 0x80) {
            *bytes++ = char(unit);
        } else if (unit < 0x100) {
            *bytes++ = '\\';
            for (const int shift : {6, 3, 0})
                *bytes++ = char('0' + (unit >> shift & 7));
        } else {
            *bytes++ = '\\';
            *bytes++ = 'u';
            for (const int shift : {12, 8, 4, 0})
                *bytes++ = "0123456789abcdef"[unit >> shift & 15];
        }
    }
    return bytes;
}

} // namespace quillory
