#include "syntax/ColouringPasses.h"
#include "syntax/NextOccurrence.h"

namespace quillory {

void colourCommands(ColourCanvas& canvas, const ColouringState& state)
{
    if (state.beginCommand.isEmpty() || state.endCommand.isEmpty())
        return;
    const std::u16string_view units = canvas.units();
    const char16_t nesting = state.beginCommand.front().unicode();
    const char16_t closing = state.endCommand.front().unicode();
    NextOccurrence opens(units, state.beginCommand);
    NextOccurrence closes(units, state.endCommand);
    LineCursor lines(canvas);
    TextOffset at = 0;
    for (TextOffset begin = 0; (begin = opens.from(at)) >= 0;) {
        const TextOffset lineEnd = lines.at(begin).end;
        const TextOffset close = closes.from(begin);
        if (close <= begin || close >= lineEnd) {
            at = lineEnd;
            continue;
        }
        TextOffset end = begin + 1;
        for (int depth = 0; end < lineEnd; ++end) {
            const char16_t unit = units[size_t(end)];
            if (unit == closing && depth-- == 0)
                break;
            if (unit == nesting && unit != closing)
                ++depth;
        }
        at = end == lineEnd ? lineEnd : std::min(end + state.endCommand.size(), canvas.length());
        canvas.paint(begin, at, ColourRole::command);
    }
}

} // namespace quillory
