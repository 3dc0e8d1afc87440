#include "app/TextPlace.h"

#include <QRegularExpression>

namespace quillory {

namespace {

/// True when the unit \a second belongs to the character that \a first began.
constexpr bool joins(char16_t first, char16_t second)
{
    return (first == u'\r' && second == u'\n') ||
           (QChar::isHighSurrogate(first) && QChar::isLowSurrogate(second));
}

constexpr char16_t unitOf(QChar unit)
{
    return unit.unicode();
}

constexpr char16_t unitOf(char unit)
{
    return uchar(unit);
}

/// Calls \a visit with each offset of \a range at which a character begins, until it answers false.
template<class Visit>
void forEachCharacter(const TextSnapshot& text, TextRange range, Visit&& visit)
{
    char16_t previous = 0;
    text.forEachPiece(range, [&](const TextPiece& piece) {
        return std::visit(
            [&](auto units) {
                TextOffset offset = piece.location;
                for (const auto unit : units) {
                    const char16_t code = unitOf(unit);
                    if (!joins(previous, code) && !visit(offset))
                        return false;
                    previous = code;
                    ++offset;
                }
                return true;
            },
            piece.units);
    });
}

} // namespace

std::optional<TextPlace> parseTextPlace(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^\\s*(\\d+)(?:\\s*[:,]\\s*(\\d+))?\\s*$"));
    const QRegularExpressionMatch match = form.match(text);
    bool fits = match.hasMatch();
    TextPlace place;
    if (fits)
        place.line = match.captured(1).toLongLong(&fits);
    if (fits && match.hasCaptured(2))
        place.column = match.captured(2).toLongLong(&fits);
    if (!fits || place.line < 1 || place.column < 1)
        return std::nullopt;
    return place;
}

qsizetype characterCount(const TextSnapshot& text, TextRange range)
{
    if (range.length > longestCounted)
        return range.length;
    qsizetype count = 0;
    forEachCharacter(text, range, [&](TextOffset) {
        ++count;
        return true;
    });
    return count;
}

TextPlace placeOf(const TextSnapshot& text, TextOffset offset)
{
    const LineIndex line = text.lineAt(offset);
    const TextRange before = TextRange::between(text.lineStart(line), offset);
    return {line.value() + 1, characterCount(text, before) + 1};
}

TextOffset offsetOf(const TextSnapshot& text, TextPlace place)
{
    const LineIndex line(std::clamp<qint64>(place.line, 1, text.lineCount()) - 1);
    const TextRange content = text.lineContent(line);
    const qint64 wanted = std::max<qint64>(place.column, 1) - 1;
    if (wanted > longestCounted)
        return content.location + std::min<TextOffset>(wanted, content.length);
    TextOffset result = content.end();
    qint64 column = 0;
    forEachCharacter(text, content, [&](TextOffset offset) {
        if (column++ < wanted)
            return true;
        result = offset;
        return false;
    });
    return result;
}

} // namespace quillory
