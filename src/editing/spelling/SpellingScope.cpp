#include "editing/spelling/SpellingScope.h"

#include "editing/spelling/MarkupCode.h"
#include "syntax/RecolouringEngine.h"
#include "syntax/StringLiterals.h"
#include "syntax/SyntaxColouring.h"
#include "text/TextReader.h"

#include <algorithm>

namespace quillory {

namespace {

using namespace Qt::StringLiterals;

/// A range in longer lines is coloured as though it were a text of its own.
constexpr TextOffset longLines = TextOffset(64) * 1024;

bool isMarkup(const Definition& definition)
{
    const auto isOn = [&](QLatin1StringView key) { return definition.flag(key).value_or(false); };
    return isOn("canUsePDFPreview"_L1) ||
           (isOn("canCloseTags"_L1) && !isOn("shouldBeRecolered"_L1));
}

bool holdsBlank(const TextSnapshot& text, TextRange range)
{
    TextReader reader(text);
    for (TextOffset i = range.location; i < range.end(); ++i) {
        if (reader.at(i) == u' ')
            return true;
    }
    return false;
}

/// Each role unlike the others, whatever the theme makes of them.
std::vector<RoleRun> rolesIn(const TextSnapshot& text, TextRange range, const ColouringState& state)
{
    const ColourRoles roles;
    if (text.lineRangeForRange(range).length <= range.length + longLines)
        return recoloured(text, range, state, roles).runs;
    const TextSnapshot alone = text.slice(range);
    std::vector<RoleRun> runs = recoloured(alone, alone.range(), state, roles).runs;
    for (RoleRun& run : runs)
        run.range.location += range.location;
    return runs;
}

/// The runs, with one of no role for each gap between them.
std::vector<RoleRun> withGaps(const std::vector<RoleRun>& runs, TextRange range)
{
    std::vector<RoleRun> all;
    TextOffset at = range.location;
    const auto pass = [&](TextOffset to) {
        if (to > at)
            all.push_back({TextRange::between(at, to), ColourRole::none});
    };
    for (const RoleRun& run : runs) {
        const TextRange shown = run.range.intersection(range);
        if (shown.isEmpty())
            continue;
        pass(shown.location);
        all.push_back({shown, run.role});
        at = shown.end();
    }
    pass(range.end());
    return all;
}

/// In markup. A string right behind a part of a tag is the value of its attribute; formulas stand
/// between dollars, code between backticks, what is linked between brackets.
bool isMarkupProse(const TextSnapshot& text, const RoleRun& run, ColourRole before)
{
    const char16_t first = text.at(run.range.location);
    switch (run.role) {
    case ColourRole::none:
    case ColourRole::comment:
        return true;
    case ColourRole::string:
        return before != ColourRole::command && before != ColourRole::attribute && first != u'$' &&
               first != u'`';
    case ColourRole::variable:
        return first == u'[';
    default:
        return false;
    }
}

/// \a prose without \a code; both in order, and the latter may overlap.
std::vector<ProseRange> without(const std::vector<ProseRange>& prose,
                                const std::vector<TextRange>& code)
{
    std::vector<ProseRange> result;
    for (const ProseRange& piece : prose) {
        TextOffset at = piece.range.location;
        for (const TextRange range : code) {
            const TextRange gap =
                TextRange::between(at, std::max(at, range.location)).intersection(piece.range);
            if (!gap.isEmpty())
                result.push_back({gap, piece.style});
            at = std::max(at, range.end());
        }
        const TextRange rest =
            TextRange::between(at, std::max(at, piece.range.end())).intersection(piece.range);
        if (!rest.isEmpty())
            result.push_back({rest, piece.style});
    }
    return result;
}

} // namespace

SpellingScope::SpellingScope(const SyntaxColouring& colouring)
{
    if (colouring.isPlainText())
        return;
    m_kind = isMarkup(*colouring.definition()) ? Kind::Markup : Kind::Source;
    m_state = std::make_shared<ColouringState>(withOwnPatterns(colouring.state()));
}

std::vector<ProseRange> SpellingScope::proseIn(const TextSnapshot& text, TextRange range) const
{
    switch (m_kind) {
    case Kind::Markup:
        return proseInMarkup(text, range);
    case Kind::Source:
        return proseInSource(text, range);
    default:
        return {{range, ProseRange::Style::Plain}};
    }
}

std::vector<ProseRange> SpellingScope::proseInMarkup(const TextSnapshot& text,
                                                     TextRange range) const
{
    std::vector<ProseRange> prose;
    std::vector<TextRange> code;
    if (m_state->beginCommand == u"<")
        code = codeElements(text, range);
    ColourRole before = ColourRole::none;
    for (const RoleRun& run : withGaps(rolesIn(text, range, *m_state), range)) {
        if (isMarkupProse(text, run, before))
            prose.push_back({run.range, ProseRange::Style::Markup});
        else if (run.role == ColourRole::variable && text.at(run.range.location) == u'\\')
            code.push_back(nameArguments(text, run.range));
        before = run.role;
    }
    return code.empty() ? prose : without(prose, code);
}

std::vector<ProseRange> SpellingScope::proseInSource(const TextSnapshot& text,
                                                     TextRange range) const
{
    std::vector<ProseRange> prose;
    for (const RoleRun& run : rolesIn(text, range, *m_state)) {
        const TextRange shown = run.range.intersection(range);
        if (shown.isEmpty())
            continue;
        if (run.role == ColourRole::comment)
            prose.push_back({shown, ProseRange::Style::Comment});
        else if (run.role == ColourRole::string && holdsBlank(text, shown))
            prose.push_back({shown, ProseRange::Style::Literal});
    }
    return prose;
}

bool SpellingScope::isDefined(const QString& word) const
{
    if (!m_state)
        return false;
    const ColouringState& s = *m_state;
    const ColouringState::Words* const lists[]{&s.keywords, &s.values,     &s.main,
                                               &s.ns,       &s.statements, &s.types,
                                               &s.enums,    &s.functs,     &s.simple};
    const QString asListed = s.keywordsCaseSensitive ? word : word.toLower();
    return std::any_of(std::begin(lists), std::end(lists), [&](const auto* list) {
        return list->contains(word) || list->contains(asListed);
    });
}

} // namespace quillory
