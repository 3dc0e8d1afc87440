#include "syntax/ColouringPasses.h"

namespace quillory {

void colourVariables(ColourCanvas& canvas, const ColouringState& state)
{
    if (!state.beginVariable)
        return;
    const std::u16string_view units = canvas.units();
    const bool percentComments = state.firstSingleLineComment == QLatin1StringView("%");
    LineCursor lines(canvas);
    for (TextOffset at = 0; at < canvas.length();) {
        const TextOffset begin = at;
        const char32_t character = characterAt(units, begin);
        at += unitsOf(character);
        if (!state.beginVariable->contains(character))
            continue;
        if (at >= canvas.length())
            return;
        if (percentComments && units[size_t(at)] == u'%')
            continue;
        const TextOffset lineEnd = lines.at(begin).end;
        while (at < lineEnd) {
            const char32_t next = characterAt(units, at);
            if (state.endVariable.contains(next))
                break;
            at += unitsOf(next);
        }
        canvas.paint(begin, at, ColourRole::variable);
    }
}

} // namespace quillory
