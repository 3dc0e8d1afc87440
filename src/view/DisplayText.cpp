#include "view/DisplayText.h"

namespace quillory {

namespace {

constexpr char16_t replacementCharacter = 0xFFFD;

char16_t codeOf(char latin1)
{
    return uchar(latin1);
}

char16_t codeOf(QChar unit)
{
    return unit.unicode();
}

char16_t displayUnit(char16_t unit, const TextFont& font)
{
    if (unit < 0x20)
        return unit == u'\t'               ? unit
               : font.hasControlPictures() ? char16_t(0x2400 + unit)
                                           : replacementCharacter;
    if (unit < 0x7F)
        return unit;
    if (unit < 0xA0)
        return unit == 0x7F && font.hasControlPictures() ? char16_t(0x2421) : replacementCharacter;
    // Line and paragraph separators end lines; U+FFFC would make room for an object.
    if (unit == 0x2028 || unit == 0x2029 || unit >= 0xFFFC)
        return replacementCharacter;
    return unit;
}

void replaceUnpairedSurrogates(QString& string)
{
    for (qsizetype i = 0; i < string.size(); ++i) {
        if (!string[i].isSurrogate())
            continue;
        if (string[i].isHighSurrogate() && i + 1 < string.size() && string[i + 1].isLowSurrogate())
            ++i;
        else
            string[i] = QChar(replacementCharacter);
    }
}

} // namespace

QString displayText(const TextSnapshot& text, TextRange range, const TextFont& font,
                    WorkCounters& counters)
{
    QString result(range.length, Qt::Uninitialized);
    auto* out = reinterpret_cast<char16_t*>(result.data());
    bool surrogates = false;
    text.forEachPiece(range, [&](const TextPiece& piece) {
        ++counters.piecesVisited;
        std::visit(
            [&](auto units) {
                for (const auto unit : units) {
                    const char16_t shown = displayUnit(codeOf(unit), font);
                    surrogates = surrogates || QChar::isSurrogate(shown);
                    *out++ = shown;
                }
            },
            piece.units);
    });
    if (surrogates)
        replaceUnpairedSurrogates(result);
    return result;
}

} // namespace quillory
