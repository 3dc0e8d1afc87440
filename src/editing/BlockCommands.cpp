#include "editing/BlockCommands.h"

#include "editing/ClosingTag.h"
#include "editing/CommentToggle.h"
#include "editing/Indentation.h"
#include "editing/QPTextView.h"
#include "editing/TabRule.h"
#include "editing/TextTransforms.h"
#include "foundation/Background.h"

namespace quillory {

namespace {

constexpr qsizetype quickTags = 10'000;

/// Whether the lines of \a ranges are too long to work through while the user waits.
bool isLong(const TextSnapshot& text, const std::vector<TextRange>& ranges)
{
    TextOffset length = 0;
    for (const TextRange range : ranges)
        length += text.lineRangeForRange(range).length;
    return length > QPTextView::longSelection;
}

/// The ranges of \a block as the selections that \a before have become.
std::vector<Selection> selectionsAfter(const BlockEdit& block, const std::vector<Selection>& before)
{
    std::vector<Selection> after;
    after.reserve(block.ranges.size());
    for (size_t i = 0; i < block.ranges.size(); ++i) {
        const TextRange range = block.ranges[i];
        const bool isBackward = i < before.size() && before[i].head < before[i].anchor;
        after.push_back(isBackward ? Selection{range.end(), range.location}
                                   : Selection::over(range));
    }
    return after;
}

size_t primaryOf(const QPTextView& editor)
{
    const auto& all = editor.selections();
    return size_t(std::find(all.begin(), all.end(), editor.primarySelection()) - all.begin());
}

} // namespace

BlockCommands::BlockCommands(QPTextView& editor, std::function<QString()> lineComment)
    : m_editor(editor), m_lineComment(std::move(lineComment))
{
    connect(&editor, &QPTextView::longIndentRequested, this, &BlockCommands::indentLines);
}

void BlockCommands::indentLines()
{
    runUndoably(
        [selections = m_editor.selections()](const TextSnapshot& text, const auto&) {
            SelectionEdits made = tabEdits(text, selections);
            BlockEdit block{std::move(made.edits), {}, {}};
            for (const Selection& selection : made.selections)
                block.ranges.push_back(selection.range());
            return block;
        },
        tr("Indent"));
}

void BlockCommands::indentSelection()
{
    run(indented, [this](const BlockEdit& block) { replaceDirectly(block); });
}

void BlockCommands::unindentSelection()
{
    run(unindented, [this](const BlockEdit& block) { replaceDirectly(block); });
}

void BlockCommands::commentAction()
{
    const QString marker = m_lineComment();
    qInfo("commentString: %s", qUtf8Printable(marker));
    if (marker.isEmpty() || marker.size() > m_editor.string().length()) {
        Q_EMIT m_editor.beep();
        return;
    }
    runUndoably(
        [marker](const TextSnapshot& text, const std::vector<TextRange>& ranges) {
            return commentToggled(text, ranges, marker);
        },
        tr("Comment"));
}

void BlockCommands::removeWhitespace()
{
    runUndoably(withoutTrailingBlanks, tr("Remove Trailing Blanks"));
}

void BlockCommands::zapGremlins()
{
    const TextOffset before = m_editor.string().length();
    run(
        [](const TextSnapshot& text, const std::vector<TextRange>& ranges) {
            return transformed(text, ranges, zapGremlinsInString);
        },
        [this, before](const BlockEdit& block) {
            replace(block, tr("Zap Gremlins"));
            const TextOffset removed = before - m_editor.string().length();
            Q_EMIT alertRequested(tr("Bye Billy."),
                                  tr("%li characters removed.")
                                      .replace(QStringLiteral("%li"), QString::number(removed)));
        });
}

void BlockCommands::unwrap()
{
    runUndoably(
        [](const TextSnapshot& text, const std::vector<TextRange>& ranges) {
            return transformed(text, ranges, removeLineEndingsInString);
        },
        tr("Unwrap"));
}

void BlockCommands::reformat()
{
    runUndoably(
        [](const TextSnapshot& text, const std::vector<TextRange>& ranges) {
            return transformed(text, ranges, removeTabsInString);
        },
        tr("Reformat"));
}

void BlockCommands::closeCurrentTag()
{
    const std::vector<TextRange> carets = m_editor.selectedRanges();
    const bool areCarets =
        std::all_of(carets.begin(), carets.end(), [](TextRange range) { return range.isEmpty(); });
    if (!areCarets) {
        Q_EMIT m_editor.beep();
        return;
    }
    if (!mayEdit())
        return;
    const auto apply = [this](const ClosedTags& closed) {
        if (closed.outcome == TagSearch::NothingOpen)
            Q_EMIT m_editor.beep();
        if (!closed.block.edits.empty())
            replace(closed.block, tr("Close Tag"));
    };
    const TextSnapshot text = m_editor.string();
    const ClosedTags closed = tagsClosed(text, carets, quickTags);
    if (closed.outcome != TagSearch::GaveUp) {
        apply(closed);
        return;
    }
    runInBackground(
        this,
        [text, carets] { return tagsClosed(text, carets, std::numeric_limits<qsizetype>::max()); },
        [this, text, carets, apply](const ClosedTags& found) {
            const bool isStill = m_editor.isEditable() && m_editor.selectedRanges() == carets &&
                                 m_editor.string().isSameTree(text);
            if (isStill)
                apply(found);
        });
}

bool BlockCommands::mayEdit()
{
    if (!m_editor.isEditable())
        Q_EMIT m_editor.beep();
    return m_editor.isEditable();
}

/// Has \a apply take what \a work makes of the selected text.
void BlockCommands::run(const Work& work, const Apply& apply)
{
    if (!mayEdit())
        return;
    const TextSnapshot text = m_editor.string();
    const std::vector<TextRange> ranges = m_editor.selectedRanges();
    if (!isLong(text, ranges)) {
        apply(work(text, ranges));
        return;
    }
    m_editor.setEditable(false);
    Q_EMIT editableChanged();
    runInBackground(
        this,
        [work, text, ranges] {
            BlockEdit block = work(text, ranges);
            joinManyEdits(block, text);
            return block;
        },
        [this, apply, text](const BlockEdit& block) {
            m_editor.setEditable(true);
            Q_EMIT editableChanged();
            if (m_editor.string().isSameTree(text)) // else the file was read again meanwhile
                apply(block);
        });
}

void BlockCommands::runUndoably(const Work& work, const QString& actionName)
{
    run(work, [this, actionName](const BlockEdit& block) { replace(block, actionName); });
}

void BlockCommands::replace(const BlockEdit& block, const QString& actionName)
{
    const std::span<const TextEdit> edits =
        block.whole ? std::span(&*block.whole, 1) : std::span(block.edits);
    m_editor.replaceCharacters(edits, selectionsAfter(block, m_editor.selections()),
                               primaryOf(m_editor), actionName);
}

void BlockCommands::replaceDirectly(const BlockEdit& block)
{
    m_editor.replaceCharactersDirectly(block.edits, selectionsAfter(block, m_editor.selections()),
                                       primaryOf(m_editor), block.whole);
}

} // namespace quillory
