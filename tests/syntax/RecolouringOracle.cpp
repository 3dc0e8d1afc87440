#include "syntax/RecolouringOracle.h"

#include "syntax/regex/ICUMatcher.h"
#include "text/Scanner.h"
#include "text/TextSearch.h"

#include <map>

namespace quillory::test {

namespace {

class Oracle
{
public:
    Oracle(const QString& string, const ColouringState& state, const ColourRoles& roles)
        : m_string(string), m_text(string), m_length(string.size()), m_state(state), m_roles(roles)
    {}

    std::vector<ColourRole> run()
    {
        m_painted.assign(size_t(m_length), ColourRole::none);
        commands();
        numbers();
        instructions();
        words(m_state.keywords, ColourRole::keyword, !m_state.keywordsCaseSensitive);
        words(m_state.values, ColourRole::other, false);
        words(m_state.main, ColourRole::object, false);
        words(m_state.ns, ColourRole::classRole, false);
        words(m_state.statements, ColourRole::other2, false);
        words(m_state.types, ColourRole::type, false);
        words(m_state.enums, ColourRole::constant, false);
        words(m_state.functs, ColourRole::basic, false);
        words(m_state.simple, ColourRole::method, false);
        words(m_state.autocompleteWords, ColourRole::autocomplete, !m_state.keywordsCaseSensitive);
        variables();
        if (!m_state.secondString.isEmpty()) {
            for (const TextRange& match : matches(m_state.secondStringPattern))
                paint(afterFirst(match), match.end(), ColourRole::string);
        }
        if (!m_state.firstString.isEmpty()) {
            for (const TextRange& match : matches(m_state.firstStringPattern)) {
                if (!carries(match.location, ColourRole::string))
                    paint(afterFirst(match), match.end(), ColourRole::string);
            }
        }
        attributes();
        lineComments(m_state.firstSingleLineComment);
        lineComments(m_state.secondSingleLineComment);
        blockComments(m_state.beginFirstMultiLineComment, m_state.endFirstMultiLineComment);
        blockComments(m_state.beginSecondMultiLineComment, m_state.endSecondMultiLineComment);
        if (!m_state.secondString.isEmpty()) {
            for (const TextRange& match : matches(m_state.secondStringPattern)) {
                if (!carries(match.location, ColourRole::string) &&
                    !carries(match.location, ColourRole::comment))
                    paint(afterFirst(match), match.end(), ColourRole::string);
            }
        }
        return m_painted;
    }

private:
    void paint(TextOffset begin, TextOffset end, ColourRole role)
    {
        for (TextOffset i = std::max<TextOffset>(0, begin); i < std::min(end, m_length); ++i)
            m_painted[size_t(i)] = role;
    }
    bool carries(TextOffset at, ColourRole role) const
    {
        return m_roles.same(at < 0 ? ColourRole::none : m_painted[size_t(at)], role);
    }
    QChar at(TextOffset index) const
    {
        return index >= 0 && index < m_length ? m_string[index] : QChar();
    }
    TextOffset lineEnd(TextOffset at) const { return m_text.lineRangeForRange({at, 0}).end(); }
    TextOffset contentEnd(TextOffset at) const
    {
        return m_text.lineContent(m_text.lineAt(at)).end();
    }
    TextOffset next(const QString& needle, TextOffset from) const
    {
        return needle.isEmpty() || from > m_length ? -1 : m_string.indexOf(needle, from);
    }
    TextOffset characterEnd(TextOffset at) const
    {
        return at + 1 < m_length && m_string[at].isHighSurrogate() &&
                       m_string[at + 1].isLowSurrogate()
                   ? at + 2
                   : at + 1;
    }
    char32_t character(TextOffset at) const
    {
        return characterEnd(at) == at + 2 ? QChar::surrogateToUcs4(m_string[at], m_string[at + 1])
                                          : m_string[at].unicode();
    }
    TextOffset upTo(const CharacterSet& set, TextOffset from) const
    {
        Scanner scanner(m_text);
        scanner.setCharactersToBeSkipped(CharacterSet());
        scanner.setScanLocation(from);
        scanner.scanUpToCharactersFromSet(set);
        return scanner.scanLocation();
    }

    void commands()
    {
        const QString& open = m_state.beginCommand;
        const QString& close = m_state.endCommand;
        TextOffset location = 0;
        for (TextOffset begin = 0; (begin = next(open, location)) >= 0;) {
            const TextOffset end = lineEnd(begin);
            const TextOffset closing = next(close, begin);
            if (closing == begin || closing < 0 || closing >= end) {
                location = end;
                continue;
            }
            TextOffset walk = begin + 1;
            for (int skipEndCommand = 0; walk < end; ++walk) {
                if (at(walk) == close[0]) {
                    if (skipEndCommand == 0)
                        break;
                    --skipEndCommand;
                } else if (at(walk) == open[0]) {
                    ++skipEndCommand;
                }
            }
            location = walk == end ? end : std::min(m_length, walk + close.size());
            paint(begin, location, ColourRole::command);
        }
    }

    void numbers()
    {
        for (TextOffset location = 0;;) {
            const TextOffset begin = upTo(m_state.attributesCharacterSet, location);
            if (begin >= m_length || characterEnd(begin) >= m_length)
                return;
            const TextOffset end = upTo(m_state.letterCharacterSet.inverted(), characterEnd(begin));
            location = end;
            if (!CharacterSet::decimalDigit().contains(character(begin)))
                continue;
            if (!m_state.shouldBeRecolered && carries(begin, ColourRole::command))
                continue;
            if (m_state.colorNumbers)
                paint(begin, end, ColourRole::number);
        }
    }

    void instructions()
    {
        const QString& open = m_state.beginInstruction;
        TextOffset location = 0;
        for (TextOffset begin = 0; (begin = next(open, location)) >= 0;) {
            const TextOffset closing = next(m_state.endInstruction, begin + open.size());
            location = closing < 0 ? m_length : closing + m_state.endInstruction.size();
            paint(begin, location, ColourRole::instruction);
        }
    }

    void words(const ColouringState::Words& set, ColourRole role, bool lowers)
    {
        for (TextOffset location = 0;;) {
            const TextOffset begin = upTo(m_state.keywordStartCharacterSet, location);
            if (begin >= m_length || characterEnd(begin) >= m_length)
                return;
            const TextOffset end = upTo(m_state.keywordEndCharacterSet, characterEnd(begin));
            location = end;
            QString word = m_string.sliced(begin, end - begin);
            if (lowers)
                word = word.toLower();
            if (!set.contains(word))
                continue;
            if (m_state.shouldBeRecolered || !carries(begin, ColourRole::command))
                paint(begin, end, role);
        }
    }

    void variables()
    {
        if (!m_state.beginVariable)
            return;
        for (TextOffset location = 0;;) {
            const TextOffset begin = upTo(*m_state.beginVariable, location);
            if (begin >= m_length || characterEnd(begin) >= m_length)
                return;
            location = characterEnd(begin);
            if (m_state.firstSingleLineComment == QStringLiteral("%") && at(location) == u'%')
                continue;
            location = std::min(upTo(m_state.endVariable, location), lineEnd(begin));
            location = std::max(location, characterEnd(begin));
            paint(begin, location, ColourRole::variable);
        }
    }

    /// In the text with a line break before it; places count in the text.
    std::vector<TextRange> matches(const std::shared_ptr<ICUPattern>& pattern) const
    {
        std::vector<TextRange> found;
        if (!pattern)
            return found;
        ICUMatcher matcher(std::make_shared<ICUPattern>(*pattern), QLatin1Char('\n') + m_string);
        while (matcher.findNext()) {
            const TextRange match = matcher.rangeOfMatch();
            if (!match.isEmpty())
                found.push_back({match.location - 1, match.length});
        }
        return found;
    }
    TextOffset afterFirst(TextRange match) const
    {
        return match.location < 0 ? 0 : characterEnd(match.location);
    }

    void attributes()
    {
        for (TextOffset location = 0;;) {
            const TextOffset begin = next(QStringLiteral(" "), location);
            if (begin < 0 || begin + 1 >= m_length)
                return;
            location = begin + 1;
            if (!carries(begin, ColourRole::command))
                continue;
            location = upTo(m_state.attributesCharacterSet.inverted(), location);
            if (at(location) == u'=')
                paint(begin, location, ColourRole::attribute);
        }
    }

    void lineComments(const QString& token)
    {
        TextOffset location = 0;
        for (TextOffset begin = 0; (begin = next(token, location)) >= 0;) {
            location = begin + 1;
            const QString line = m_text.string(m_text.lineRangeForRange({begin, 0}));
            const QChar before = at(begin - 1);
            if (token == QStringLiteral("//") && before == u':')
                continue;
            if (token == QStringLiteral("#") && m_length > 1) {
                if (line.contains(QStringLiteral("#!"))) {
                    location = lineEnd(begin);
                    continue;
                }
                if (before == u'$' || before == u'&')
                    continue;
            }
            if (token == QStringLiteral("%") && m_length > 1 && before == u'\\')
                continue;
            if (begin + token.size() < m_length && carries(begin, ColourRole::string))
                continue;
            paint(begin, contentEnd(begin), ColourRole::comment);
            location = std::max(location, contentEnd(begin));
        }
    }

    void blockComments(const QString& open, const QString& close)
    {
        TextOffset location = 0;
        for (TextOffset begin = 0; (begin = next(open, location)) >= 0;) {
            location = begin + 1;
            if (carries(begin, ColourRole::string))
                continue;
            const TextOffset closing = next(close, begin + open.size());
            location = closing < 0 ? m_length : closing + close.size();
            if (close == QStringLiteral("-->") && closing >= 0) {
                const TextOffset letter = upTo(m_state.letterCharacterSet, location);
                const QString tag = m_string.sliced(letter - 2).left(9);
                if (letter < m_length &&
                    (tag.startsWith(QStringLiteral("</script>"), Qt::CaseInsensitive) ||
                     tag.startsWith(QStringLiteral("</style>"), Qt::CaseInsensitive))) {
                    location = letter;
                    continue;
                }
            }
            paint(begin, location, ColourRole::comment);
        }
    }

    QString m_string;
    TextSnapshot m_text;
    TextOffset m_length;
    const ColouringState& m_state;
    const ColourRoles& m_roles;
    std::vector<ColourRole> m_painted;
};

} // namespace

std::vector<ColourRole> coloursOf(const QString& text, const ColouringState& state,
                                  const ColourRoles& roles)
{
    return Oracle(text, state, roles).run();
}

} // namespace quillory::test
