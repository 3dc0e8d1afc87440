#include "editing/NewlineRule.h"

#include "editing/Blanks.h"

namespace quillory {

namespace {

/// Where the line begins that a line break typed at \a offset ends. Typed behind a CR it becomes
/// one break with it.
TextOffset startOfEndedLine(const TextSnapshot& text, TextOffset offset)
{
    const bool joins = offset > 0 && text.at(offset - 1) == u'\r';
    return text.lineStart(text.lineAt(joins ? offset - 1 : offset));
}

TextSnapshot joined(const TextSnapshot& first, const TextSnapshot& second)
{
    return second.isEmpty() ? first : first.replacing({first.length(), 0}, second);
}

} // namespace

SelectionEdits newlineEdits(const TextSnapshot& text, std::span<const Selection> selections,
                            bool indenting)
{
    const TextSnapshot lineBreak(u"\n");
    const TextSnapshot indent(u"\t");
    SelectionEdits result;
    for (const Selection& selection : selections) {
        const TextRange range = selection.range();
        TextSnapshot typed = lineBreak;
        if (indenting) {
            TextOffset start = startOfEndedLine(text, range.location);
            if (!result.edits.empty() && start <= result.edits.back().range.end()) {
                // The line begins with what the selection before this one left there: blanks.
                start = result.edits.back().range.end();
                typed = result.edits.back().replacement;
            }
            const TextRange ended = TextRange::between(start, range.location);
            const TextRange blanks = TextRange::between(start, blanksEnd(text, ended));
            typed = joined(typed, text.slice(blanks));
            if (endsIn(text, ended, u'{'))
                typed = joined(typed, indent);
        }
        result.type(range, typed);
    }
    return result;
}

} // namespace quillory
