#include "text/TextReader.h"

#include <QChar>

namespace quillory {

void TextReader::load(TextOffset offset)
{
    Q_ASSERT(offset >= 0 && offset < length());
    const TextPiece piece = m_pieces.at(offset);
    m_start = piece.location;
    m_end = piece.location + piece.length();
    if (const auto* wide = std::get_if<QStringView>(&piece.units)) {
        m_wide = reinterpret_cast<const char16_t*>(wide->utf16());
        return;
    }
    m_wide = nullptr;
    m_narrow = reinterpret_cast<const uchar*>(std::get<QLatin1StringView>(piece.units).data());
}

char32_t TextReader::codePointAt(TextOffset offset)
{
    const char16_t unit = at(offset);
    if (QChar::isHighSurrogate(unit) && offset + 1 < length()) {
        const char16_t next = at(offset + 1);
        if (QChar::isLowSurrogate(next))
            return QChar::surrogateToUcs4(unit, next);
    }
    return unit;
}

char32_t TextReader::codePointBefore(TextOffset offset)
{
    const char16_t unit = at(offset - 1);
    if (QChar::isLowSurrogate(unit) && offset > 1) {
        const char16_t previous = at(offset - 2);
        if (QChar::isHighSurrogate(previous))
            return QChar::surrogateToUcs4(previous, unit);
    }
    return unit;
}

} // namespace quillory
