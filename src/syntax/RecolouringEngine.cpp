#include "syntax/RecolouringEngine.h"

#include "syntax/ColouringPasses.h"
#include "syntax/OpenSpans.h"
#include "syntax/StringLiterals.h"

namespace quillory {

namespace {

/// How far behind the lines a delimiter that begins in them can reach.
TextOffset lookaheadOf(const ColouringState& state)
{
    qsizetype longest = 1;
    for (const QString* delimiter :
         {&state.beginInstruction, &state.endInstruction, &state.beginFirstMultiLineComment,
          &state.endFirstMultiLineComment, &state.beginSecondMultiLineComment,
          &state.endSecondMultiLineComment})
        longest = std::max(longest, delimiter->size());
    return longest - 1;
}

} // namespace

Recolouring recoloured(const TextSnapshot& text, TextRange range, const ColouringState& sharedState,
                       const ColourRoles& roles)
{
    Recolouring result;
    result.range = text.lineRangeForRange(range);
    if (result.range.isEmpty())
        return result;
    const ColouringState state = withOwnPatterns(sharedState);
    const OpenSpans open = openSpansBefore(text, result.range.location, state);
    ColourCanvas canvas(text, result.range, roles, lookaheadOf(state));

    colourCommands(canvas, state);
    colourNumbers(canvas, state);
    colourInstructions(canvas, state, open.instruction);
    colourWords(canvas, state);
    colourVariables(canvas, state);
    const StringLiterals second = secondStringLiterals(canvas.unitsAfterBreak(), state);
    const StringLiterals first = firstStringLiterals(canvas.unitsAfterBreak(), state);
    colourStrings(canvas, second.found, first.found);
    colourAttributes(canvas, state);
    colourLineComments(canvas, state.firstSingleLineComment);
    colourLineComments(canvas, state.secondSingleLineComment);
    colourBlockComments(canvas, state, state.beginFirstMultiLineComment,
                        state.endFirstMultiLineComment, open.firstComment);
    colourBlockComments(canvas, state, state.beginSecondMultiLineComment,
                        state.endSecondMultiLineComment, open.secondComment);
    repairStrings(canvas, second.found);

    if (second.hitLimit)
        result.limitedKey = QStringLiteral("secondString");
    if (first.hitLimit)
        result.limitedKey = QStringLiteral("firstString");
    result.runs = canvas.runs();
    return result;
}

} // namespace quillory
