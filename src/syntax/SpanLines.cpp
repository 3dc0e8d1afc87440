#include "syntax/SpanLines.h"

#include "syntax/ColouringPasses.h"
#include "syntax/NextOccurrence.h"
#include "syntax/WrappedScript.h"
#include "text/LineMetrics.h"

namespace quillory {

SpanTable SpanTable::followedBy(SpanTable next) const
{
    SpanTable both;
    for (SpanState state = 0; state < 16; ++state)
        both.set(state, next.after(after(state)));
    return both;
}

/// One line, and what hides an opening in it.
class SpanLines::Line
{
public:
    Line(const SpanLines& lines, std::u16string_view line) : units(line), m_lines(lines) {}

    /// Forgets the comments that were covered.
    void begin() { m_covered.clear(); }

    /// A comment covers what lies from \a begin to \a end: a literal there hides nothing any more.
    void cover(TextOffset begin, TextOffset end)
    {
        m_covered.push_back(TextRange::between(begin, end));
    }

    bool isHidden(TextOffset place)
    {
        if (!m_lines.m_guards || !hasDelimiter())
            return false;
        const auto covers = [place](TextRange range) { return range.contains(place); };
        return painted().isIn(place, ColourRole::string) && !std::ranges::any_of(m_covered, covers);
    }

    TextOffset letterFrom(TextOffset place) const
    {
        while (place < length()) {
            const char32_t character = characterAt(units, place);
            if (m_lines.m_letters.contains(character))
                break;
            place += unitsOf(character);
        }
        return place;
    }

    TextOffset length() const { return TextOffset(units.size()); }

    const std::u16string_view units;

private:
    bool hasDelimiter()
    {
        if (!m_hasDelimiter) {
            m_hasDelimiter = false;
            for (const QString& delimiter :
                 {m_lines.m_guards->firstString, m_lines.m_guards->secondString}) {
                // Patterns may find more than their delimiter.
                if (!delimiter.isEmpty() &&
                    (!isPlainDelimiter(delimiter) ||
                     units.find(delimiter.front().unicode()) != std::u16string_view::npos))
                    m_hasDelimiter = true;
            }
        }
        return *m_hasDelimiter;
    }

    const ColourCanvas& painted()
    {
        if (!m_canvas) {
            const ColouringState& guards = *m_lines.m_guards;
            m_canvas.emplace(units, m_roles);
            const auto second = secondStringLiterals(m_canvas->unitsAfterBreak(), guards);
            const auto first = firstStringLiterals(m_canvas->unitsAfterBreak(), guards);
            colourStrings(*m_canvas, second.found, first.found);
            colourLineComments(*m_canvas, guards.firstSingleLineComment);
            colourLineComments(*m_canvas, guards.secondSingleLineComment);
        }
        return *m_canvas;
    }

    const SpanLines& m_lines;
    const ColourRoles m_roles;
    std::optional<bool> m_hasDelimiter;
    std::optional<ColourCanvas> m_canvas;
    std::vector<TextRange> m_covered;
};

SpanLines SpanLines::instructions(const ColouringState& state)
{
    SpanLines lines;
    lines.m_pairs[0] = {state.beginInstruction, state.endInstruction, false};
    lines.finish({});
    return lines;
}

SpanLines SpanLines::comments(const ColouringState& state)
{
    SpanLines lines;
    const auto pair = [](const QString& begin, const QString& end) {
        return Pair{begin, end, !begin.isEmpty() && end == QLatin1StringView("-->")};
    };
    lines.m_pairs = {pair(state.beginFirstMultiLineComment, state.endFirstMultiLineComment),
                     pair(state.beginSecondMultiLineComment, state.endSecondMultiLineComment)};
    lines.m_letters = state.letterCharacterSet;
    lines.m_guards.emplace();
    ColouringState& guards = *lines.m_guards;
    guards.firstString = state.firstString;
    guards.secondString = state.secondString;
    guards.firstStringPattern = state.firstStringPattern;
    guards.secondStringPattern = state.secondStringPattern;
    guards.colourMultiLineStrings = state.colourMultiLineStrings;
    guards.firstSingleLineComment = state.firstSingleLineComment;
    guards.secondSingleLineComment = state.secondSingleLineComment;
    lines.finish({state.firstString, state.secondString, state.firstSingleLineComment,
                  state.secondSingleLineComment,
                  QString::number(int(state.colourMultiLineStrings))});
    return lines;
}

void SpanLines::finish(QStringList keyParts)
{
    for (const Pair& pair : m_pairs) {
        keyParts += {pair.begin, pair.end};
        if (pair.begin.isEmpty())
            continue;
        m_needles += pair.begin;
        if (!pair.end.isEmpty() && pair.end != pair.begin)
            m_needles += pair.end;
    }
    // U+FFFF is no character.
    m_key = keyParts.join(QChar(0xFFFF));
    for (SpanState state = 0; state < 16; ++state) {
        bool canBe = true;
        for (int i = 0; i < 2; ++i) {
            canBe &= !isOpen(state, i) || !m_pairs[size_t(i)].begin.isEmpty();
            canBe &= !isWaiting(state, i) || m_pairs[size_t(i)].mayWrapScript;
        }
        if (canBe)
            m_states.push_back(state);
    }
}

SpanLines::PairState SpanLines::after(Line& line, const Pair& pair, PairState state) const
{
    if (pair.begin.isEmpty())
        return state;
    TextOffset at = 0;
    if (state.isWaiting) {
        const TextOffset letter = line.letterFrom(0);
        state.isWaiting = letter == line.length();
        if (!state.isWaiting && isElementEndTag(line.units, letter)) {
            state.isOpen = false;
            at = letter;
        }
    }
    NextOccurrence opens(line.units, pair.begin);
    NextOccurrence closes(line.units, pair.end);
    for (;;) {
        TextOffset begin = at;
        if (!state.isOpen) {
            begin = opens.from(at);
            if (begin < 0)
                return state;
            at = begin + 1;
            if (line.isHidden(begin))
                continue;
            at = begin + pair.begin.size();
        }
        const TextOffset close = closes.from(at);
        state.isOpen = close < 0;
        if (state.isOpen) {
            line.cover(begin, line.length());
            return state;
        }
        at = close + pair.end.size();
        if (pair.mayWrapScript) {
            const TextOffset letter = line.letterFrom(at);
            state.isWaiting |= letter == line.length();
            if (letter < line.length() && isElementEndTag(line.units, letter)) {
                at = letter;
                continue;
            }
        }
        line.cover(begin, at);
    }
}

SpanTable SpanLines::lineTable(std::u16string_view units) const
{
    Line line(*this, units);
    SpanTable table;
    for (const SpanState state : m_states) {
        line.begin();
        SpanState result = 0;
        for (int i = 0; i < 2; ++i) {
            const PairState pair =
                after(line, m_pairs[size_t(i)], {isOpen(state, i), isWaiting(state, i)});
            result |= SpanState((pair.isOpen ? 1 : 0) | (pair.isWaiting ? 2 : 0)) << 2 * i;
        }
        table.set(state, result);
    }
    return table;
}

bool SpanLines::isWaitingSomewhere(SpanTable table) const
{
    return hasWaitingStates() && std::ranges::any_of(m_states, [&](SpanState state) {
               return isWaiting(table.after(state), 0) || isWaiting(table.after(state), 1);
           });
}

SpanTable SpanLines::table(std::u16string_view units) const
{
    std::vector<NextOccurrence> needles;
    for (const QString& needle : m_needles)
        needles.emplace_back(units, needle);
    const auto length = TextOffset(units.size());
    SpanTable table;
    for (TextOffset at = 0; at < length;) {
        TextOffset begin = at;
        if (!isWaitingSomewhere(table)) {
            TextOffset hit = length;
            for (NextOccurrence& needle : needles) {
                const TextOffset place = needle.from(at);
                hit = place < 0 ? hit : std::min(hit, place);
            }
            begin = hit;
            while (begin > at && !isLineBreak(units[size_t(begin) - 1]))
                --begin;
            if (hit == length)
                break;
        }
        TextOffset end = begin;
        while (end < length && !isLineBreak(units[size_t(end)]))
            ++end;
        if (end + 1 < length && units[size_t(end)] == u'\r' && units[size_t(end) + 1] == u'\n')
            ++end;
        end = std::min(end + 1, length);
        table = table.followedBy(lineTable(units.substr(size_t(begin), size_t(end - begin))));
        at = end;
    }
    return table;
}

} // namespace quillory
