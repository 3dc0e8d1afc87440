#include "editing/SelectionCommands.h"

#include "editing/QPTextView.h"
#include "editing/SmartInsertDelete.h"
#include "text/LineMetrics.h"

#include <algorithm>

namespace quillory {

namespace {

using Selections = std::vector<Selection>;

/// The first selection that ends at or after \a offset.
Selections::const_iterator selectionReaching(const Selections& selections, TextOffset offset)
{
    return std::partition_point(selections.begin(), selections.end(),
                                [&](const Selection& s) { return s.range().end() < offset; });
}

/// The part of \a text for each of \a count selections; nothing when each gets all of it.
std::vector<TextRange> partsFor(const TextSnapshot& text, std::span<const TextRange> parts,
                                size_t count)
{
    if (count < 2)
        return {};
    if (parts.size() == count)
        return {parts.begin(), parts.end()};
    const bool isEnded = !text.isEmpty() && isLineBreak(text.at(text.length() - 1));
    if (text.lineCount() - isEnded != qsizetype(count))
        return {};
    std::vector<TextRange> lines;
    lines.reserve(count);
    for (size_t i = 0; i < count; ++i)
        lines.push_back(text.lineContent(LineIndex(qsizetype(i))));
    return lines;
}

} // namespace

bool removeSelectionAt(QPTextView& editor, TextOffset offset)
{
    Selections selections = editor.selections();
    const auto found = selectionReaching(selections, offset);
    if (selections.size() < 2 || found == selections.end())
        return false;
    const TextRange range = found->range();
    if (!found->isCaret() && (range.location >= offset || offset >= range.end()))
        return false;
    if (range.location > offset)
        return false;
    const size_t index = size_t(found - selections.begin());
    selections.erase(found);
    const auto primary = std::find(selections.begin(), selections.end(), editor.primarySelection());
    const size_t nearest = std::min(index, selections.size() - 1);
    const size_t kept =
        primary == selections.end() ? nearest : size_t(primary - selections.begin());
    editor.setSelections(std::move(selections), kept);
    return true;
}

bool isInSelectedText(const QPTextView& editor, TextOffset offset)
{
    const Selections& selections = editor.selections();
    const auto found = selectionReaching(selections, offset);
    return found != selections.end() && !found->isCaret() && found->range().location <= offset;
}

void splitSelectionsIntoLines(QPTextView& editor)
{
    const TextSnapshot& text = editor.string();
    Selections lines;
    for (const Selection& selection : editor.selections()) {
        const TextRange range = selection.range();
        const LineIndex last = text.lineAt(range.end());
        for (LineIndex line = text.lineAt(range.location); line.value() <= last.value(); ++line) {
            const TextRange content = text.lineContent(line);
            const TextOffset start = std::max(content.location, range.location);
            const bool onlyReached = line == last && start == range.end() && !selection.isCaret();
            if (!onlyReached)
                lines.push_back(Selection::over(TextRange::between(
                    start, std::max(start, std::min(content.end(), range.end())))));
        }
    }
    const size_t primary = lines.size() - 1;
    editor.setSelections(std::move(lines), primary);
}

void pasteText(QPTextView& editor, const TextSnapshot& text, std::span<const TextRange> parts,
               const QString& actionName, bool smart)
{
    const Selections& selections = editor.selections();
    const std::vector<TextRange> own = partsFor(text, parts, selections.size());
    if (own.empty() && !smart) {
        editor.replaceSelections(text, actionName);
        return;
    }
    std::vector<TextEdit> edits;
    Selections after;
    TextOffset shift = 0;
    for (size_t i = 0; i < selections.size(); ++i) {
        const TextRange range = selections[i].range();
        TextSnapshot piece = own.empty() ? text : text.slice(own[i]);
        if (smart)
            piece = smartlyInserted(editor.string(), range, piece);
        edits.push_back({range, piece});
        shift += piece.length() - range.length;
        after.push_back(Selection::caret(range.end() + shift));
    }
    const size_t primary = after.size() - 1;
    editor.replaceCharacters(edits, std::move(after), primary, actionName);
}

bool dropText(QPTextView& editor, const TextSnapshot& text, TextOffset offset, bool moving,
              const QString& actionName)
{
    if (text.isEmpty() || (moving && isInSelectedText(editor, offset)))
        return false;
    std::vector<TextEdit> edits{{{offset, 0}, text}};
    TextOffset start = offset;
    if (moving) {
        for (const Selection& selection : editor.selections()) {
            const TextRange range = selection.range();
            if (range.isEmpty())
                continue;
            edits.push_back({range, TextSnapshot()});
            if (range.location < offset)
                start -= range.length;
        }
        std::sort(edits.begin(), edits.end(), [](const TextEdit& a, const TextEdit& b) {
            return a.range.location < b.range.location;
        });
    }
    return editor.replaceCharacters(edits, {Selection::over({start, text.length()})}, 0,
                                    actionName);
}

} // namespace quillory
