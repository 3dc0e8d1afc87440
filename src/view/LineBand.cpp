#include "view/LineBand.h"

#include <algorithm>

namespace quillory {

bool isBanded(const TextSnapshot& text, LineIndex line, std::span<const Selection> selections)
{
    const TextRange range = text.line(line);
    const bool isLast = range.end() == text.length() && line.value() + 1 == text.lineCount();
    const auto begins = [&](TextOffset offset) { return offset < range.end() || isLast; };
    const auto first =
        std::partition_point(selections.begin(), selections.end(), [&](const Selection& selection) {
            return selection.range().end() < range.location;
        });
    // One that ends where the line begins, and a caret behind it, may be the first two.
    return std::any_of(first, first + std::min<ptrdiff_t>(2, selections.end() - first),
                       [&](const Selection& selection) {
                           const TextRange selected = selection.range();
                           if (!begins(selected.location))
                               return false;
                           return selection.isCaret() || selected.end() > range.location;
                       });
}

} // namespace quillory
