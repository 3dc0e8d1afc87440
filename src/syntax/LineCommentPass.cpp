#include "syntax/ColouringPasses.h"
#include "syntax/NextOccurrence.h"

namespace quillory {

void colourLineComments(ColourCanvas& canvas, const QString& token)
{
    if (token.isEmpty())
        return;
    const std::u16string_view units = canvas.units();
    const bool isSlashes = token == QLatin1StringView("//");
    const bool isHash = token == QLatin1StringView("#") && canvas.length() > 1;
    const bool isPercent = token == QLatin1StringView("%") && canvas.length() > 1;
    NextOccurrence tokens(units, token);
    NextOccurrence shebangs(units, u"#!");
    LineCursor lines(canvas);
    TextOffset at = 0;
    for (TextOffset begin = 0; (begin = tokens.from(at)) >= 0;) {
        at = begin + 1;
        const char16_t before = canvas.unitsAfterBreak()[size_t(begin)];
        const ColourCanvas::Line& line = lines.at(begin);
        if (isHash) {
            const TextOffset shebang = shebangs.from(line.begin);
            if (shebang >= 0 && shebang < line.contentEnd) {
                at = line.end;
                continue;
            }
        }
        if ((isSlashes && before == u':') || (isHash && (before == u'$' || before == u'&')) ||
            (isPercent && before == u'\\'))
            continue;
        if (begin + token.size() < canvas.textEnd() && canvas.isIn(begin, ColourRole::string))
            continue;
        canvas.paint(begin, line.contentEnd, ColourRole::comment);
        at = std::max(at, line.contentEnd);
    }
}

} // namespace quillory
