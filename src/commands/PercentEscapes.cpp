#include "commands/PercentEscapes.h"

#include "text/TextEncoder.h"

namespace quillory {

namespace {

constexpr QLatin1StringView marks{"-_.!~*'();/?:@&=+$,"};

bool isKept(QChar unit, QLatin1StringView also)
{
    const char16_t u = unit.unicode();
    const bool isAlphanumeric =
        (u >= u'a' && u <= u'z') || (u >= u'A' && u <= u'Z') || (u >= u'0' && u <= u'9');
    return (isAlphanumeric || marks.contains(unit)) && !also.contains(unit);
}

} // namespace

std::optional<QString> withPercentEscapes(QStringView text, StringEncoding encoding,
                                          QLatin1StringView also)
{
    QString result;
    const ByteLayout withoutMark{false, standardLayout(encoding).bigEndian};
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype start = i;
        while (i < text.size() && isKept(text[i], also))
            ++i;
        result += text.sliced(start, i - start);
        const qsizetype escaped = i;
        while (i < text.size() && !isKept(text[i], also))
            ++i;
        QByteArray bytes;
        const auto failure = encode(TextSnapshot(text.sliced(escaped, i - escaped)), encoding,
                                    withoutMark, [&bytes](QByteArrayView part) {
                                        bytes += part;
                                        return true;
                                    });
        if (failure)
            return std::nullopt;
        for (const char byte : bytes)
            result += u'%' + QString::fromLatin1(QByteArray(1, byte).toHex().toUpper());
    }
    return result;
}

} // namespace quillory
