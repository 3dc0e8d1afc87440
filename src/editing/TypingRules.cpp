#include "editing/TypingRules.h"

#include "editing/ClosingBrace.h"
#include "foundation/UserDefaults.h"
#include "text/BracketMatching.h"

#include <array>

namespace quillory {

namespace {

SelectionEdits bracketPairEdits(std::span<const Selection> selections, BracketKind kind)
{
    const std::array units{kind.opener, kind.closer};
    const TextSnapshot pair(QStringView(units.data(), 2));
    SelectionEdits result;
    for (const Selection& selection : selections) {
        result.type(selection.range(), pair);
        result.selections.back() = Selection::caret(result.selections.back().head - 1);
    }
    return result;
}

} // namespace

SelectionEdits typingEdits(const TextSnapshot& text, std::span<const Selection> selections,
                           const QString& typed, const UserDefaults* defaults)
{
    const char16_t single = typed.size() == 1 ? typed.front().unicode() : u'\0';
    if (single == u'}' && indentsNewLines(defaults))
        return closingBraceEdits(text, selections);
    const auto opened = kindOpenedBy(single);
    if (opened && defaults && defaults->value(keys::insertClosingParenthesisandBrace))
        return bracketPairEdits(selections, *opened);
    SelectionEdits result;
    const TextSnapshot replacement(typed);
    for (const Selection& selection : selections)
        result.type(selection.range(), replacement);
    return result;
}

bool indentsNewLines(const UserDefaults* defaults)
{
    return defaults && defaults->value(keys::indentNewLinesBraces);
}

} // namespace quillory
