#include "editing/QPTextView.h"

#include "editing/DoubleClick.h"
#include "editing/NewlineRule.h"
#include "editing/SelectionMerging.h"
#include "editing/SmartInsertDelete.h"
#include "editing/TabRule.h"
#include "editing/TypingRules.h"
#include "foundation/UserDefaults.h"
#include "text/TextBoundary.h"

#include <QMetaMethod>
#include <QScopedValueRollback>

namespace quillory {

namespace {

QString typingName()
{
    return QPTextView::tr("Typing");
}

/// \a edits of one text as they are made one after the other.
std::vector<TextChange> changesOf(std::span<const TextEdit> edits)
{
    std::vector<TextChange> changes;
    changes.reserve(edits.size());
    TextOffset shift = 0;
    for (const TextEdit& edit : edits) {
        const TextOffset inserted = edit.replacement.length();
        changes.push_back({{edit.range.location + shift, edit.range.length}, inserted});
        shift += inserted - edit.range.length;
    }
    return changes;
}

} // namespace

QPTextView::QPTextView(TextStorage& storage, UndoManager& undoManager, const UserDefaults* defaults,
                       QObject* parent)
    : QObject(parent), m_storage(storage), m_undo(undoManager), m_defaults(defaults)
{
    connect(&storage, &TextStorage::edited, this, &QPTextView::followEdit);
    connect(&undoManager, &UndoManager::stepTaken, this, &QPTextView::restoreSelections);
}

std::vector<TextRange> QPTextView::selectedRanges() const
{
    std::vector<TextRange> ranges;
    ranges.reserve(m_selections.size());
    for (const Selection& selection : m_selections)
        ranges.push_back(selection.range());
    return ranges;
}

void QPTextView::setSelectedRange(TextRange range)
{
    setSelection(Selection::over(range));
}

void QPTextView::setSelectedRanges(const std::vector<TextRange>& ranges)
{
    std::vector<Selection> selections;
    selections.reserve(ranges.size());
    for (const TextRange range : ranges)
        selections.push_back(Selection::over(range));
    setSelections(std::move(selections), ranges.empty() ? 0 : ranges.size() - 1);
}

void QPTextView::setSelections(std::vector<Selection> selections, size_t primary)
{
    if (selections.empty())
        return;
    MergedSelections merged = mergedSelections(std::move(selections), primary, m_storage.length());
    if (merged.selections == m_selections && merged.primary == m_primary)
        return;
    announceSelections(std::move(merged.selections), merged.primary);
}

void QPTextView::announceSelections(std::vector<Selection> selections, size_t primary)
{
    m_selections = std::move(selections);
    m_primary = primary;
    m_granularity = SelectionGranularity::Character;
    if (!m_editing)
        m_undo.breakCoalescing();
    Q_EMIT selectionDidChange();
}

void QPTextView::selectAll()
{
    setSelectedRange(string().range());
}

void QPTextView::keepPrimarySelection(bool collapse)
{
    const Selection& primary = primarySelection();
    setSelection(collapse ? Selection::caret(primary.head) : primary);
}

TextRange QPTextView::selectionRangeForProposedRange(TextRange proposed,
                                                     SelectionGranularity granularity) const
{
    const TextSnapshot& text = string();
    proposed = proposed.clampedTo(text.length());
    switch (granularity) {
    case SelectionGranularity::Character:
        break;
    case SelectionGranularity::Word: {
        const TextRange first = wordAt(text, proposed.location);
        const TextRange last = proposed.isEmpty() ? first : wordAt(text, proposed.end() - 1);
        return TextRange::between(first.location, std::max(first.end(), last.end()));
    }
    case SelectionGranularity::Paragraph:
        return text.lineRangeForRange(proposed);
    }
    const TextOffset start = characterStart(text, proposed.location);
    if (proposed.isEmpty())
        return {start, 0};
    const TextOffset end = characterStart(text, proposed.end());
    return TextRange::between(start, end < proposed.end() ? characterAfter(text, end) : end);
}

TextRange QPTextView::selectionRangeForProposedRange(TextRange proposed,
                                                     SelectionGranularity granularity,
                                                     int clickCount)
{
    const TextSnapshot& text = string();
    const TextRange word = selectionRangeForProposedRange(proposed, granularity);
    if (granularity != SelectionGranularity::Word || clickCount != 2 ||
        proposed.location >= text.length())
        return word;
    const TextOffset clicked =
        selectionRangeForProposedRange(proposed, SelectionGranularity::Character).location;
    if (!isBracket(text, clicked))
        return wordSegment(text, word, clicked);
    if (const auto span = bracketSpan(text, clicked))
        return *span;
    Q_EMIT beep();
    return selectionRangeForProposedRange({proposed.location, 1}, SelectionGranularity::Character);
}

void QPTextView::moveEach(const std::function<TextOffset(const Selection&)>& target, bool extending)
{
    std::vector<Selection> moved;
    moved.reserve(m_selections.size());
    for (const Selection& selection : m_selections) {
        const TextOffset head = target(selection);
        moved.push_back({extending ? selection.anchor : head, head});
    }
    setSelections(std::move(moved), m_primary);
}

void QPTextView::moveParagraphBackward(bool extending)
{
    moveEach(
        [&](const Selection& selection) {
            const LineIndex line = string().lineAt(selection.head);
            const TextOffset start = string().lineStart(line);
            return selection.head > start || line.value() == 0 ? start
                                                               : string().lineStart(line - 1);
        },
        extending);
}

void QPTextView::moveParagraphForward(bool extending)
{
    moveEach(
        [&](const Selection& selection) {
            return string().lineStart(string().lineAt(selection.head) + 1);
        },
        extending);
}

void QPTextView::moveToBeginningOfDocument(bool extending)
{
    moveEach([](const Selection&) { return TextOffset(0); }, extending);
}

void QPTextView::moveToEndOfDocument(bool extending)
{
    moveEach([&](const Selection&) { return string().length(); }, extending);
}

void QPTextView::insertText(const QString& text)
{
    make(typingEdits(string(), m_selections, text, m_defaults), UndoKind::Typing, typingName());
    announceTyping(text);
}

void QPTextView::announceTyping(const QString& text)
{
    if (m_editable)
        Q_EMIT typed(text);
}

void QPTextView::insertNewline()
{
    make(newlineEdits(string(), m_selections, indentsNewLines(m_defaults)), UndoKind::Typing,
         typingName());
    announceTyping(QStringLiteral("\n"));
}

void QPTextView::insertTab()
{
    const bool types = std::ranges::all_of(m_selections, &Selection::isCaret);
    TextOffset selected = 0;
    for (const Selection& selection : m_selections)
        selected += selection.range().length;
    static const auto request = QMetaMethod::fromSignal(&QPTextView::longIndentRequested);
    if (selected > longSelection && isSignalConnected(request)) {
        Q_EMIT longIndentRequested();
        return;
    }
    make(tabEdits(string(), m_selections), types ? UndoKind::Typing : UndoKind::Other,
         types ? typingName() : tr("Indent"));
    if (types)
        announceTyping(QStringLiteral("\t"));
}

void QPTextView::deleteBackward()
{
    deleteEach([&](TextOffset head) { return deletionStartBefore(string(), head); },
               UndoKind::Deleting);
}

void QPTextView::deleteForward()
{
    deleteEach([&](TextOffset head) { return characterAfter(string(), head); }, UndoKind::Deleting);
}

void QPTextView::deleteWordBackward()
{
    deleteEach([&](TextOffset head) { return wordStartBefore(string(), head); }, UndoKind::Other);
}

void QPTextView::deleteWordForward()
{
    deleteEach([&](TextOffset head) { return wordEndAfter(string(), head); }, UndoKind::Other);
}

void QPTextView::deleteToBeginningOfParagraph()
{
    deleteEach([&](TextOffset head) { return string().lineStart(string().lineAt(head)); },
               UndoKind::Other);
}

void QPTextView::deleteToEndOfParagraph()
{
    deleteEach(
        [&](TextOffset head) {
            const TextOffset end = string().lineContent(string().lineAt(head)).end();
            return end > head ? end : characterAfter(string(), head); // the line break itself
        },
        UndoKind::Other);
}

bool QPTextView::deletesSmartly() const
{
    return m_granularity == SelectionGranularity::Word && m_defaults &&
           m_defaults->value(keys::smartCopy);
}

void QPTextView::deleteSelection()
{
    if (deletesSmartly())
        smartDelete(*this, tr("Delete"));
    else
        replaceEach(&Selection::range, TextSnapshot(), UndoKind::Other, tr("Delete"));
}

void QPTextView::replaceSelections(const TextSnapshot& text, const QString& actionName)
{
    replaceEach(&Selection::range, text, UndoKind::Other, actionName);
}

TextSnapshot QPTextView::selectedText() const
{
    return joinedSelections(string(), m_selections).text;
}

bool QPTextView::shouldChangeTextInRange(TextRange, const QString&)
{
    m_permitted = m_editable;
    return m_permitted;
}

void QPTextView::replaceCharactersInRange(TextRange range, const TextSnapshot& replacement)
{
    if (m_permitted)
        m_undo.replaceCharactersInRange(range, replacement);
    else
        m_storage.replaceCharactersInRange(range, replacement);
}

void QPTextView::replaceCharactersInRange(TextRange range, const QString& replacement)
{
    replaceCharactersInRange(range, TextSnapshot(replacement));
}

void QPTextView::didChangeText()
{
    m_permitted = false;
    Q_EMIT textDidChange();
}

void QPTextView::undo()
{
    if (!m_editable || !m_undo.canUndo())
        return;
    takeStep(&UndoManager::undo);
}

void QPTextView::redo()
{
    if (!m_editable || !m_undo.canRedo())
        return;
    takeStep(&UndoManager::redo);
}

/// Where the step tells what was selected, nothing need follow its edits one by one.
void QPTextView::takeStep(void (UndoManager::*step)())
{
    {
        const QScopedValueRollback editing(m_editing, true);
        const QScopedValueRollback taking(m_takingStep, true);
        (m_undo.*step)();
    }
    for (const TextChange& change : std::exchange(m_unfollowed, {}))
        followEdit(change);
    Q_EMIT textDidChange();
}

void QPTextView::followEdit(const TextChange& change)
{
    if (m_takingStep)
        m_unfollowed.push_back(change);
    if (m_editing)
        return;
    std::vector<Selection> selections = m_selections;
    for (Selection& selection : selections)
        selection = {mapped(selection.anchor, change), mapped(selection.head, change)};
    const QScopedValueRollback editing(m_editing, true);
    setSelections(std::move(selections), m_primary);
}

void QPTextView::restoreSelections(const std::vector<Selection>& selections)
{
    if (selections.empty())
        return;
    m_unfollowed.clear();
    setSelections(selections, selections.size() - 1);
}

/// Replaces what \a range answers for each selection by \a text, and leaves a caret after each.
void QPTextView::replaceEach(const Edit& range, const TextSnapshot& text, UndoKind kind,
                             const QString& actionName)
{
    TextOffset done = 0; // where the previous target ended
    SelectionEdits edits;
    for (const Selection& selection : m_selections) {
        // Two carets may delete towards each other.
        const TextRange target = range(selection);
        const TextOffset start = std::max(target.location, done);
        done = std::max(start, target.end());
        edits.type(TextRange::between(start, done), text);
    }
    make(std::move(edits), kind, actionName);
}

/// As one step. Where no edit changes anything, only the selections are set.
void QPTextView::make(SelectionEdits made, UndoKind kind, const QString& actionName)
{
    const bool nothing = std::ranges::all_of(made.edits, [](const TextEdit& edit) {
        return edit.range.isEmpty() && edit.replacement.isEmpty();
    });
    if (nothing) {
        setSelections(std::move(made.selections), m_primary);
        return;
    }
    m_storage.beginEditing();
    if (made.unregistered && m_editable)
        m_storage.replaceCharactersInRange(*made.unregistered, TextSnapshot());
    replaceCharacters(made.edits, std::move(made.selections), m_primary, actionName, kind);
    m_storage.endEditing();
}

bool QPTextView::replaceCharacters(std::span<const TextEdit> edits,
                                   std::vector<Selection> selections, size_t primary,
                                   const QString& actionName, UndoKind kind)
{
    if (!m_editable) {
        Q_EMIT beep();
        return false;
    }
    const QScopedValueRollback editing(m_editing, true);
    m_storage.beginEditing();
    m_undo.beginUndoGrouping(m_selections, kind);
    m_undo.replaceCharacters(edits);
    m_undo.setActionName(actionName);
    // Announced in any case: where nothing moved, the text around did.
    MergedSelections merged = mergedSelections(std::move(selections), primary, m_storage.length());
    announceSelections(std::move(merged.selections), merged.primary);
    m_undo.endUndoGrouping(m_selections);
    m_storage.endEditing();
    didChangeText();
    return true;
}

bool QPTextView::replaceCharactersDirectly(std::span<const TextEdit> edits,
                                           std::vector<Selection> selections, size_t primary,
                                           const std::optional<TextEdit>& whole)
{
    if (!m_editable) {
        Q_EMIT beep();
        return false;
    }
    const QScopedValueRollback editing(m_editing, true);
    m_storage.beginEditing();
    if (whole)
        m_undo.replaceUnrecorded(*whole, changesOf(edits));
    else
        m_storage.replaceCharacters(edits);
    MergedSelections merged = mergedSelections(std::move(selections), primary, m_storage.length());
    announceSelections(std::move(merged.selections), merged.primary);
    m_storage.endEditing();
    return true;
}

void QPTextView::deleteEach(const std::function<TextOffset(TextOffset)>& target, UndoKind kind)
{
    const bool isText = std::none_of(m_selections.begin(), m_selections.end(),
                                     [](const Selection& s) { return s.isCaret(); });
    if (isText && deletesSmartly()) {
        smartDelete(*this, tr("Delete"));
        return;
    }
    replaceEach(
        [&](const Selection& selection) {
            return selection.isCaret() ? TextRange::between(selection.head, target(selection.head))
                                       : selection.range();
        },
        TextSnapshot(), kind, tr("Delete"));
}

} // namespace quillory
