#include "editing/SelectionMerging.h"

#include <algorithm>

namespace quillory {

namespace {

bool startsEarlier(const Selection& a, const Selection& b)
{
    return a.range().location < b.range().location;
}

bool isOne(TextRange a, TextRange b)
{
    return b.location < a.end() || (b.location == a.end() && (a.isEmpty() || b.isEmpty()));
}

} // namespace

MergedSelections mergedSelections(std::vector<Selection> selections, size_t primary,
                                  TextOffset length)
{
    for (Selection& selection : selections) {
        selection.anchor = std::clamp<TextOffset>(selection.anchor, 0, length);
        selection.head = std::clamp<TextOffset>(selection.head, 0, length);
    }
    const TextRange kept = selections[std::min(primary, selections.size() - 1)].range();
    if (!std::is_sorted(selections.begin(), selections.end(), startsEarlier))
        std::stable_sort(selections.begin(), selections.end(), startsEarlier);

    size_t count = 1; // of those that are merged, at the front
    for (size_t i = 1; i < selections.size(); ++i) {
        Selection& last = selections[count - 1];
        const Selection next = selections[i];
        if (!isOne(last.range(), next.range())) {
            selections[count++] = next;
            continue;
        }
        const TextRange both = TextRange::between(last.range().location,
                                                  std::max(last.range().end(), next.range().end()));
        const Selection& direction = last.isCaret() ? next : last;
        const bool backwards = direction.head < direction.anchor;
        last = backwards ? Selection{both.end(), both.location} : Selection::over(both);
    }
    selections.resize(count);

    const auto holder =
        std::partition_point(selections.begin(), selections.end(), [&](const Selection& selection) {
            const TextRange range = selection.range();
            return range.end() < kept.location ||
                   (range.end() == kept.location && !isOne(range, kept));
        });
    const size_t found = size_t(holder - selections.begin());
    return {std::move(selections), std::min(found, count - 1)};
}

JoinedText joinedSelections(const TextSnapshot& text, const std::vector<Selection>& selections)
{
    const TextSnapshot lineBreak(u"\n");
    JoinedText result;
    std::vector<TextEdit> pieces;
    TextOffset length = 0;
    for (const Selection& selection : selections) {
        if (selection.isCaret())
            continue;
        if (!pieces.empty()) {
            pieces.push_back({{}, lineBreak});
            ++length;
        }
        pieces.push_back({{}, text.slice(selection.range())});
        result.parts.push_back({length, selection.range().length});
        length += selection.range().length;
    }
    result.text = TextSnapshot().replacing(pieces);
    return result;
}

} // namespace quillory
