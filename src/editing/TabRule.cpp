#include "editing/TabRule.h"

#include "editing/Blanks.h"

#include <algorithm>

namespace quillory {

namespace {

enum class TabAction
{
    Type,
    IndentLines,
    Collapse
};

TabAction actionFor(const TextSnapshot& text, TextRange range)
{
    if (range.isEmpty())
        return TabAction::Type;
    const TextOffset lineStart = text.lineStart(text.lineAt(range.location));
    return isIndentation(text, TextRange::between(lineStart, range.location))
               ? TabAction::IndentLines
               : TabAction::Collapse;
}

} // namespace

SelectionEdits tabEdits(const TextSnapshot& text, std::span<const Selection> selections)
{
    // Where tabs go: at carets and at the starts of lines, which may lie before earlier carets.
    std::vector<TextOffset> tabs;
    std::vector<TabAction> actions;
    actions.reserve(selections.size());
    for (const Selection& selection : selections) {
        const TextRange range = selection.range();
        actions.push_back(actionFor(text, range));
        if (actions.back() == TabAction::Type)
            tabs.push_back(range.location);
        if (actions.back() != TabAction::IndentLines)
            continue;
        LineIndex line = text.lineAt(range.location);
        do {
            tabs.push_back(text.lineStart(line));
        } while (text.lineStart(++line) < range.end());
    }
    std::ranges::sort(tabs);

    SelectionEdits result;
    const TextSnapshot tab(u"\t");
    for (const TextOffset offset : tabs)
        result.replace({offset, 0}, tab);

    // A tab at an offset goes before what begins there, and behind what ends there.
    const auto tabsBefore = [&](TextOffset offset) {
        return std::ranges::lower_bound(tabs, offset) - tabs.begin();
    };
    const auto tabsUpTo = [&](TextOffset offset) {
        return std::ranges::upper_bound(tabs, offset) - tabs.begin();
    };
    for (size_t i = 0; i < selections.size(); ++i) {
        const TextRange range = selections[i].range();
        const TextOffset start = range.location + tabsUpTo(range.location);
        const TextOffset end = range.end() + tabsBefore(range.end());
        if (actions[i] == TabAction::Type)
            result.selections.push_back(Selection::caret(start));
        else if (actions[i] == TabAction::Collapse)
            result.selections.push_back(Selection::caret(end));
        else if (selections[i].head < selections[i].anchor)
            result.selections.push_back({end, start});
        else
            result.selections.push_back({start, end});
    }
    return result;
}

} // namespace quillory
