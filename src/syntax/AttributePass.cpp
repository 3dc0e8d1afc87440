#include "syntax/ColouringPasses.h"

namespace quillory {

void colourAttributes(ColourCanvas& canvas, const ColouringState& state)
{
    const std::u16string_view units = canvas.units();
    const QStringView all(units.data(), canvas.length());
    for (TextOffset at = 0;;) {
        const TextOffset begin = all.indexOf(u' ', at);
        if (begin < 0 || begin + 1 >= canvas.length())
            return;
        at = begin + 1;
        if (!canvas.isIn(begin, ColourRole::command))
            continue;
        while (at < canvas.length()) {
            const char32_t character = characterAt(units, at);
            if (!state.attributesCharacterSet.contains(character))
                break;
            at += unitsOf(character);
        }
        if (at < canvas.length() && units[size_t(at)] == u'=')
            canvas.paint(begin, at, ColourRole::attribute);
    }
}

} // namespace quillory
