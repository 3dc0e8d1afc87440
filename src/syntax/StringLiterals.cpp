#include "syntax/StringLiterals.h"

#include "syntax/ColourCanvas.h"
#include "syntax/regex/ICUMatcher.h"

namespace quillory {

namespace {

constexpr char16_t carriageReturn = u'\r';
constexpr char16_t lineFeed = u'\n';

/// What "." does not match: the line terminators of ICU's regular expressions.
constexpr bool isLineTerminator(char16_t unit)
{
    return (unit >= 0x0A && unit <= 0x0D) || unit == 0x85 || unit == 0x2028 || unit == 0x2029;
}

/// What follows the opening delimiter at \a place.
struct Body
{
    bool isClosed = false;
    TextOffset end = 0; ///< behind the closing delimiter, or where no literal can go on
};

Body bodyAfter(std::u16string_view units, TextOffset place, char16_t delimiter, StringKind kind)
{
    bool takesBreaks = kind == StringKind::manyLines;
    const auto length = TextOffset(units.size());
    for (TextOffset at = place + 1; at < length; ++at) {
        const char16_t unit = units[size_t(at)];
        if (unit == delimiter)
            return {true, at + 1};
        if (unit == u'\\') {
            if (at + 1 == length || isLineTerminator(units[size_t(at) + 1]))
                return {false, at};
            ++at;
            takesBreaks |= kind == StringKind::breaksAfterEscape;
        } else if ((unit == carriageReturn || unit == lineFeed) && !takesBreaks) {
            return {false, at};
        }
    }
    return {false, length};
}

StringLiterals patternLiterals(std::u16string_view units,
                               const std::shared_ptr<ICUPattern>& pattern)
{
    StringLiterals literals;
    if (!pattern)
        return literals;
    try {
        ICUMatcher matcher(pattern, QString::fromUtf16(units.data(), qsizetype(units.size())));
        while (matcher.findNext()) {
            const TextRange match = matcher.rangeOfMatch();
            if (match.isEmpty())
                continue;
            const TextOffset begin = match.location + unitsOf(characterAt(units, match.location));
            literals.found.push_back({match.location, begin, match.end()});
        }
    } catch (const ICUException& exception) {
        if (!exception.isLimit())
            throw;
        literals.hitLimit = true;
    }
    return literals;
}

StringLiterals literalsOf(std::u16string_view units, const QString& delimiter, StringKind kind,
                          const std::shared_ptr<ICUPattern>& pattern)
{
    if (delimiter.isEmpty())
        return {};
    if (!isPlainDelimiter(delimiter))
        return patternLiterals(units, pattern);
    return {plainLiterals(units, delimiter.front().unicode(), kind), false};
}

} // namespace

ColouringState withOwnPatterns(const ColouringState& state)
{
    ColouringState own = state;
    for (std::shared_ptr<ICUPattern>* pattern : {&own.firstStringPattern, &own.secondStringPattern})
        *pattern = *pattern ? std::make_shared<ICUPattern>(**pattern) : nullptr;
    return own;
}

bool isPlainDelimiter(QStringView delimiter)
{
    static constexpr std::u16string_view special = u"\\^$.|?*+()[]{}-&";
    if (delimiter.size() != 1 || delimiter.front().isSurrogate())
        return false;
    const char16_t unit = delimiter.front().unicode();
    return special.find(unit) == std::u16string_view::npos && !isLineTerminator(unit);
}

// Where no literal can go on (a line break, a backslash that escapes none, the text's end), the
// search goes on from there: every delimiter passed over was escaped, and a literal that opened at
// it would stop at the same place or before.
std::vector<StringLiteral> plainLiterals(std::u16string_view units, char16_t delimiter,
                                         StringKind kind)
{
    const CharacterSet& word = CharacterSet::regularExpressionWord();
    const QStringView all(units.data(), TextOffset(units.size()));
    std::vector<StringLiteral> literals;
    TextOffset from = 0; // of the first character that may stand before a literal
    for (;;) {
        const TextOffset place = all.indexOf(QChar(delimiter), from + 1);
        if (place < 0)
            return literals;
        TextOffset before = place - 1;
        if (before > from && QChar::isLowSurrogate(units[size_t(before)]) &&
            QChar::isHighSurrogate(units[size_t(before) - 1]))
            --before;
        if (word.contains(characterAt(units, before))) {
            from = place;
            continue;
        }
        const Body body = bodyAfter(units, place, delimiter, kind);
        if (body.isClosed)
            literals.push_back({before, place, body.end});
        from = body.end;
    }
}

StringLiterals firstStringLiterals(std::u16string_view units, const ColouringState& state)
{
    return literalsOf(units, state.firstString,
                      state.colourMultiLineStrings ? StringKind::manyLines : StringKind::oneLine,
                      state.firstStringPattern);
}

StringLiterals secondStringLiterals(std::u16string_view units, const ColouringState& state)
{
    return literalsOf(units, state.secondString,
                      state.colourMultiLineStrings ? StringKind::manyLines
                                                   : StringKind::breaksAfterEscape,
                      state.secondStringPattern);
}

} // namespace quillory
