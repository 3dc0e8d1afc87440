#include "editing/SelectionLines.h"

namespace quillory {

std::vector<Selection> onSameLines(const std::vector<Selection>& selections,
                                   const TextSnapshot& before, const TextSnapshot& after)
{
    const auto moved = [&](TextOffset offset) {
        const LineIndex line = before.lineAt(offset);
        if (line.value() >= after.lineCount())
            return after.length();
        const TextRange content = after.lineContent(line);
        return content.location + std::min(offset - before.lineStart(line), content.length);
    };
    std::vector<Selection> result;
    result.reserve(selections.size());
    for (const Selection& selection : selections)
        result.push_back({moved(selection.anchor), moved(selection.head)});
    return result;
}

} // namespace quillory
