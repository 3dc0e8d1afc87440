#include "editing/spelling/SpellingWords.h"

#include "text/TextBoundary.h"

#include <QSet>
#include <algorithm>

namespace quillory {

namespace {

using namespace Qt::StringLiterals;
using Style = ProseRange::Style;

/// What stands so far from a word may decide whether it is looked up, in UTF-16 code units.
constexpr TextOffset reach = 512;
/// The longest word of capitals that is taken for an abbreviation.
constexpr qsizetype longestAbbreviation = 5;

/// \a range with what may matter for the words at its ends.
TextRange widened(const TextSnapshot& text, TextRange range)
{
    const TextRange lines = text.lineRangeForRange(range);
    return TextRange::between(std::max(lines.location, range.location - reach),
                              std::min(lines.end(), range.end() + reach));
}

bool hasUsualForm(QStringView word)
{
    if (word.size() < 2 || word.size() > longestSpellingWord)
        return false;
    qsizetype capitals = 0;
    bool capitalInside = false;
    for (qsizetype i = 0; i < word.size(); ++i) {
        const QChar unit = word.at(i);
        if (unit.isDigit() || unit == u'_' || unit == u'.' || unit == u':')
            return false;
        if (unit.isUpper()) {
            ++capitals;
            capitalInside = capitalInside || (i > 0 && word.at(i - 1).isLower());
        }
    }
    if (capitals == word.size())
        return capitals > longestAbbreviation;
    // "GUIs" and "McCoy" as well as names of programs
    return !capitalInside && (capitals < 2 || !word.at(1).isUpper());
}

/// Judges words by what stands around them in a stretch of prose.
class Surroundings
{
public:
    Surroundings(QStringView units, Style style)
        : m_units(units), m_style(style), m_isText(style == Style::Plain || style == Style::Markup)
    {
        if (style != Style::Markup)
            findQuotedCode();
    }

    bool allow(TextRange word) const
    {
        const char16_t before = at(word.location - 1);
        const char16_t after = at(word.end());
        if (before == u'\\' || before == u'@' || before == u'#' || before == u'$' ||
            before == u'_' || after == u'_' || after == u'&' || after == u'@')
            return false;
        if (after == u'=') // the name of an attribute or an option
            return false;
        if (before == u';' || (before == u'&' && after == u';')) // at an entity
            return false;
        if (m_style == Style::Markup && isBrokenByAccent(word))
            return false;
        if (m_style == Style::Comment && isNamed(word))
            return false;
        if (after == u'(' && (!m_isText || at(word.end() + 1) == u')'))
            return false;
        return !isQuotedCode(word) && isOrdinary(token(word));
    }

private:
    char16_t at(TextOffset offset) const
    {
        return offset >= 0 && offset < m_units.size() ? m_units.at(offset).unicode() : u'\0';
    }

    bool endsToken(TextOffset offset) const
    {
        const QChar unit = at(offset);
        static constexpr QStringView brackets = u"(){}[]<>";
        return unit.isNull() || unit.isSpace() || QStringView(u"\"“”„«»").contains(unit) ||
               (m_isText && brackets.contains(unit));
    }

    /// What stands between blanks around \a word, without marks at its ends.
    QStringView token(TextRange word) const
    {
        TextOffset start = word.location;
        TextOffset end = word.end();
        while (word.location - start < reach && !endsToken(start - 1))
            --start;
        while (end - word.end() < reach && !endsToken(end))
            ++end;
        static constexpr QStringView marks = u"'`‘’‚.,;:!?…*()[]{}<>|–—=";
        while (start < word.location && (marks.contains(m_units.at(start)) || at(start) == u'_'))
            ++start;
        while (end > word.end() && (marks.contains(m_units.at(end - 1)) || at(end - 1) == u'_'))
            --end;
        if (m_style == Style::Comment && m_units.sliced(start).startsWith(u"//"))
            start += std::min<TextOffset>(word.location - start, 2);
        return m_units.sliced(start, end - start);
    }

    bool isOrdinary(QStringView token) const
    {
        if (token.contains(u'@') || token.contains(u"://") ||
            token.startsWith("www."_L1, Qt::CaseInsensitive))
            return false;
        // An option; a dash without blanks around it may end with the line.
        if (token.startsWith(u'-') && token.size() > 1)
            return false;
        if (m_isText)
            return !token.startsWith(u'/') && !token.startsWith(u"~/") && token.count(u'/') < 2;
        static constexpr QStringView code = u"=()[]{}<>_;\\/@#$%^&*~+|:";
        return std::none_of(token.begin(), token.end(),
                            [](QChar unit) { return code.contains(unit); });
    }

    /// A part of a LaTeX word such as Bj{\"o}rn, beauti\-ful.
    bool isBrokenByAccent(TextRange word) const
    {
        const TextOffset start = word.location;
        const TextOffset end = word.end();
        static constexpr QStringView accents = u"\"'`^~=.-";
        return at(start - 1) == u'}' || at(end) == u'{' ||
               (at(end) == u'\\' && accents.contains(QChar(at(end + 1)))) ||
               (at(start - 2) == u'\\' && accents.contains(QChar(at(start - 1))));
    }

    /// Right behind what says in a documentation comment that a name follows.
    bool isNamed(TextRange word) const
    {
        TextOffset end = word.location;
        while (end > 0 && m_units.at(end - 1) == u' ')
            --end;
        TextOffset start = end;
        while (start > 0 && end - start < reach && !m_units.at(start - 1).isSpace())
            --start;
        const QStringView before = m_units.sliced(start, end - start);
        if (end == word.location || before.size() < 2 || !QStringView(u"@\\").contains(before[0]))
            return false;
        static const QSet<QStringView> commands{u"param", u"tparam", u"a",   u"p",
                                                u"c",     u"ref",    u"see", u"throws"};
        return commands.contains(before.sliced(1));
    }

    /// What stands between two runs of backticks on one line.
    void findQuotedCode()
    {
        TextOffset opened = -1;
        for (TextOffset i = 0; i < m_units.size(); ++i) {
            if (at(i) == u'\n' || at(i) == u'\r') {
                opened = -1;
            } else if (at(i) == u'`' && at(i - 1) != u'`') {
                if (opened >= 0)
                    m_quotedCode.push_back(TextRange::between(opened, i));
                opened = opened < 0 ? i : -1;
            }
        }
    }

    bool isQuotedCode(TextRange word) const
    {
        const auto code =
            std::partition_point(m_quotedCode.begin(), m_quotedCode.end(),
                                 [&](TextRange range) { return range.end() <= word.location; });
        return code != m_quotedCode.end() && code->contains(word.location);
    }

    QStringView m_units;
    Style m_style;
    bool m_isText;
    std::vector<TextRange> m_quotedCode;
};

/// Puts blanks in the place of escape sequences such as \n, so that words begin behind them.
void blankEscapes(QString& units)
{
    for (qsizetype i = 0; i + 1 < units.size(); ++i) {
        if (units.at(i) != u'\\')
            continue;
        if (QStringView(u"abfnrtv0\"'\\").contains(units.at(i + 1)))
            units.replace(i, 2, u"  "_qs);
        ++i;
    }
}

} // namespace

std::vector<SpellingWord> spellingWords(const TextSnapshot& text, TextRange range,
                                        const SpellingScope& scope)
{
    std::vector<SpellingWord> words;
    for (const ProseRange& prose : scope.proseIn(text, widened(text, range))) {
        // With what stands at its edges, which may belong to its words.
        const TextRange edged =
            TextRange{prose.range.location - 2, prose.range.length + 4}.clampedTo(text.length());
        QString units = text.string(edged);
        if (prose.style == Style::Literal)
            blankEscapes(units);
        const Surroundings surroundings(units, prose.style);
        for (const TextRange found : letterWords(units)) {
            const TextRange place{edged.location + found.location, found.length};
            if (place.intersection(range).isEmpty() || place.intersection(prose.range) != place)
                continue;
            QString word = units.mid(found.location, found.length);
            if (hasUsualForm(word) && surroundings.allow(found) && !scope.isDefined(word))
                words.push_back({place, std::move(word)});
        }
    }
    return words;
}

} // namespace quillory
