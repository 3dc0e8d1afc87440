#include "syntax/ColouringPasses.h"
#include "syntax/NextOccurrence.h"
#include "syntax/WrappedScript.h"
#include "text/TextSearch.h"

namespace quillory {

void colourInstructions(ColourCanvas& canvas, const ColouringState& state, OpenSpan start)
{
    if (state.beginInstruction.isEmpty())
        return;
    NextOccurrence opens(canvas.unitsAndLookahead(), state.beginInstruction);
    NextOccurrence closes(canvas.unitsAndLookahead(), state.endInstruction);
    TextOffset begin = start.isOpen ? -1 : opens.from(0);
    TextOffset inside = start.isOpen ? 0 : begin + state.beginInstruction.size();
    while ((begin >= 0 || start.isOpen) && begin < canvas.length()) {
        start.isOpen = false;
        const TextOffset close = closes.from(inside);
        const TextOffset end = close < 0 ? canvas.textEnd() : close + state.endInstruction.size();
        canvas.paint(begin, end, ColourRole::instruction);
        begin = opens.from(end);
        inside = begin + state.beginInstruction.size();
    }
}

void colourBlockComments(ColourCanvas& canvas, const ColouringState& state, const QString& begin,
                         const QString& end, OpenSpan start)
{
    if (begin.isEmpty())
        return;
    NextOccurrence opens(canvas.unitsAndLookahead(), begin);
    NextOccurrence closes(canvas.unitsAndLookahead(), end);
    const bool mayWrapScript = end == QLatin1StringView("-->");
    WrappedScript wrapped(canvas.text(), state.letterCharacterSet);
    const TextOffset shift = canvas.range().location;
    for (TextOffset at = start.from; at < canvas.length();) {
        TextOffset from = -1;
        TextOffset inside = 0;
        if (!start.isOpen) {
            from = opens.from(at);
            if (from < 0 || from >= canvas.length())
                return;
            if (canvas.isIn(from, ColourRole::string)) {
                at = from + 1;
                continue;
            }
            inside = from + begin.size();
        }
        start.isOpen = false;
        TextOffset close = closes.from(inside);
        if (close < 0 && mayWrapScript) {
            const TextRange rest = TextRange::between(
                shift + std::max(inside, canvas.length() - end.size() + 1), canvas.text().length());
            close = find(canvas.text(), end, rest);
            close = close < 0 ? -1 : close - shift;
        }
        at = close < 0 ? canvas.textEnd() : close + end.size();
        if (mayWrapScript && close >= 0) {
            if (const TextOffset letter = wrapped.endTagAfter(at + shift); letter >= 0) {
                at = letter - shift;
                continue;
            }
        }
        canvas.paint(from, at, ColourRole::comment);
    }
}

} // namespace quillory
