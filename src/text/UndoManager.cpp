#include "text/UndoManager.h"

#include "text/LineMetrics.h"
#include "text/Rebasing.h"

#include <QScopedValueRollback>

namespace quillory {

UndoManager::UndoManager(TextStorage& storage, QObject* parent)
    : QObject(parent), m_storage(storage)
{
    connect(&storage, &TextStorage::edited, this, [this](const TextChange& change) {
        if (!m_applying)
            noteUnrecorded({&change, 1});
    });
}

void UndoManager::replaceCharactersInRange(TextRange range, const TextSnapshot& replacement)
{
    range = range.clampedTo(m_storage.length());
    if (range.isEmpty() && replacement.isEmpty())
        return;
    beginUndoGrouping();
    std::vector<Delta> deltas{{range, replacement}};
    apply(deltas);
    m_group.deltas.push_back(std::move(deltas.front()));
    endUndoGrouping();
}

void UndoManager::replaceCharacters(std::span<const TextEdit> edits)
{
    std::vector<Delta> deltas;
    deltas.reserve(edits.size());
    TextOffset shift = 0;
    for (const TextEdit& edit : edits) {
        const TextOffset growth = edit.replacement.length() - edit.range.length;
        if (edit.range.isEmpty() && growth == 0)
            continue;
        deltas.push_back({{edit.range.location + shift, edit.range.length}, edit.replacement});
        shift += growth;
    }
    if (deltas.empty())
        return;
    beginUndoGrouping();
    apply(deltas);
    m_group.deltas.insert(m_group.deltas.end(), std::make_move_iterator(deltas.begin()),
                          std::make_move_iterator(deltas.end()));
    endUndoGrouping();
}

void UndoManager::replaceUnrecorded(const TextEdit& edit, std::span<const TextChange> changes)
{
    {
        const QScopedValueRollback applying(m_applying, true);
        m_storage.replaceCharactersInRange(edit.range, edit.replacement);
    }
    noteUnrecorded(changes);
}

void UndoManager::beginUndoGrouping(const Selections& selections, UndoKind kind)
{
    if (m_depth++ > 0)
        return;
    m_group = Entry();
    m_group.kind = kind;
    m_group.selectionsBefore = selections;
    m_group.serialBefore = m_state.serial;
}

void UndoManager::endUndoGrouping(const Selections& selections)
{
    Q_ASSERT(m_depth > 0);
    if (--m_depth > 0)
        return;
    Entry group = std::exchange(m_group, {});
    if (group.deltas.empty())
        return;
    std::reverse(group.deltas.begin(), group.deltas.end());
    group.selectionsAfter = selections;
    closeGroup(std::move(group));
}

void UndoManager::setActionName(const QString& name)
{
    if (m_depth > 0)
        m_group.name = name;
    else if (!m_undo.empty() && m_undo.back().isStep())
        m_undo.back().name = name;
    Q_EMIT stepsChanged();
}

bool UndoManager::canUndo() const
{
    return m_depth == 0 && lastStep(m_undo) != nullptr;
}

bool UndoManager::canRedo() const
{
    return m_depth == 0 && lastStep(m_redo) != nullptr;
}

QString UndoManager::undoActionName() const
{
    const Entry* step = lastStep(m_undo);
    return step ? step->name : QString();
}

QString UndoManager::redoActionName() const
{
    const Entry* step = lastStep(m_redo);
    return step ? step->name : QString();
}

void UndoManager::undo()
{
    if (canUndo())
        take(m_undo, m_redo);
}

void UndoManager::redo()
{
    if (canRedo())
        take(m_redo, m_undo);
}

void UndoManager::removeAllActions()
{
    m_undo.clear();
    m_redo.clear();
    m_mayCoalesce = false;
    Q_EMIT stepsChanged();
}

void UndoManager::markClean()
{
    const bool was = isClean();
    m_cleanState = m_state;
    m_mayCoalesce = false; // or the marked text would lie inside a step
    if (!was)
        Q_EMIT cleanChanged(true);
}

void UndoManager::markDirty()
{
    setState({m_state.epoch + 1, ++m_lastSerial});
}

void UndoManager::noteUnrecorded(std::span<const TextChange> changes)
{
    pushUnrecorded(m_redo, changes);
    if (m_group.deltas.empty()) {
        pushUnrecorded(m_undo, changes);
    } else {
        // As they would have been before the open group's edits.
        std::vector<TextChange> before(changes.begin(), changes.end());
        std::vector<Delta> undoing(m_group.deltas.rbegin(), m_group.deltas.rend());
        rebase(undoing, before);
        m_group.deltas.assign(undoing.rbegin(), undoing.rend());
        pushUnrecorded(m_undo, before);
    }
    m_mayCoalesce = false;
    markDirty();
}

void UndoManager::closeGroup(Entry group)
{
    m_redo.clear();
    const bool joins = m_mayCoalesce && !m_undo.empty() && coalesces(m_undo.back(), group);
    m_mayCoalesce = group.kind != UndoKind::Other;
    if (joins)
        merge(m_undo.back(), std::move(group));
    else
        m_undo.push_back(std::move(group));
    setState({m_state.epoch, ++m_lastSerial});
    Q_EMIT stepsChanged();
}

/// Typing goes on in a step as long as the caret stays where typing left it and no word begins
/// after a blank; a line break begins a step and ends it.
bool UndoManager::coalesces(const Entry& step, const Entry& next) const
{
    if (!step.isStep() || step.kind != next.kind || step.selectionsAfter != next.selectionsBefore ||
        step.selectionsAfter.empty())
        return false;
    if (next.kind == UndoKind::Deleting)
        return true;
    const TextRange typed = next.deltas.front().range;
    const TextSnapshot& text = m_storage.snapshot();
    if (typed.isEmpty() || typed.location == 0)
        return false;
    const QChar first = text.at(typed.location);
    const QChar before = text.at(typed.location - 1);
    if (isLineBreak(first.unicode()) || isLineBreak(before.unicode()))
        return false;
    return first.isSpace() || !before.isSpace();
}

/// Makes \a step undo \a next as well. Deltas at the same places grow into one each.
void UndoManager::merge(Entry& step, Entry next)
{
    step.selectionsAfter = std::move(next.selectionsAfter);
    if (!joinPlaces(step.deltas, next.deltas))
        step.deltas.insert(step.deltas.begin(), std::make_move_iterator(next.deltas.begin()),
                           std::make_move_iterator(next.deltas.end()));
}

/// Where \a next, undone first, goes on at the very places of \a step, all of it becomes part of
/// \a step. Both go through the text from its end to its beginning, as undoing does what was done
/// from the beginning on.
bool UndoManager::joinPlaces(std::vector<Delta>& step, const std::vector<Delta>& next)
{
    if (step.size() != next.size())
        return false;
    std::vector<Delta> joined(step.size());
    TextOffset shift = 0; // by what next did before the place
    for (size_t i = step.size(); i-- > 0;) {
        const Delta& earlier = step[i];
        const Delta& later = next[i];
        if (i > 0 && (step[i - 1].range.location < earlier.range.end() ||
                      next[i - 1].range.location < later.range.end()))
            return false;
        const TextOffset location = later.range.location - shift;
        const TextOffset inside = earlier.range.location - location;
        if (later.replacement.isEmpty() && location == earlier.range.end())
            joined[i] = {
                {earlier.range.location + shift, earlier.range.length + later.range.length},
                earlier.replacement};
        else if (later.range.isEmpty() && earlier.range.isEmpty() && inside >= 0 &&
                 inside <= later.replacement.length())
            joined[i] = {later.range,
                         later.replacement.replacing({inside, 0}, earlier.replacement)};
        else
            return false;
        shift += later.range.length - later.replacement.length();
    }
    step = std::move(joined);
    return true;
}

void UndoManager::take(Stack& from, Stack& to)
{
    std::vector<TextChange> changes; // above the step
    if (!from.back().isStep()) {
        changes = std::move(from.back().changes);
        from.pop_back();
    }
    Entry step = std::move(from.back());
    from.pop_back();
    if (!changes.empty()) {
        step.selectionsAfter = mapped(std::move(step.selectionsAfter), changes);
        rebase(step.deltas, changes);
        step.selectionsBefore = mapped(std::move(step.selectionsBefore), changes);
        pushUnrecorded(from, changes);
    }

    m_storage.beginEditing();
    apply(step.deltas);
    std::reverse(step.deltas.begin(), step.deltas.end());
    m_storage.endEditing();

    const State reached{m_state.epoch, step.serialBefore};
    step.serialBefore = m_state.serial;
    std::swap(step.selectionsBefore, step.selectionsAfter);
    const Selections selections = step.selectionsAfter;
    to.push_back(std::move(step));
    m_mayCoalesce = false;
    setState(reached);
    Q_EMIT stepsChanged();
    Q_EMIT stepTaken(selections);
}

/// Applies \a deltas one after the other, and turns each into its inverse. Those that go through
/// the text in one direction are applied together.
void UndoManager::apply(std::vector<Delta>& deltas)
{
    const QScopedValueRollback applying(m_applying, true);
    const auto below = [](const Delta& a, const Delta& b) {
        return b.range.location >= a.range.location + a.replacement.length();
    };
    const auto above = [](const Delta& a, const Delta& b) {
        return b.range.end() <= a.range.location;
    };
    const std::span<Delta> all = deltas;
    for (size_t first = 0; first < all.size();) {
        size_t end = first + 1;
        const bool upwards = end < all.size() && above(all[first], all[end]);
        while (end < all.size() &&
               (upwards ? above(all[end - 1], all[end]) : below(all[end - 1], all[end])))
            ++end;
        applyTogether(all.subspan(first, end - first), upwards);
        first = end;
    }
}

void UndoManager::applyTogether(std::span<Delta> deltas, bool upwards)
{
    std::vector<TextEdit> edits(deltas.begin(), deltas.end());
    if (upwards) {
        std::reverse(edits.begin(), edits.end());
    } else {
        TextOffset shift = 0; // by the deltas before
        for (TextEdit& edit : edits) {
            edit.range.location -= shift;
            shift += edit.replacement.length() - edit.range.length;
        }
    }
    const TextSnapshot before = m_storage.snapshot();
    for (size_t i = 0; i < deltas.size(); ++i) {
        const TextRange old = edits[upwards ? deltas.size() - 1 - i : i].range;
        deltas[i] = {{deltas[i].range.location, deltas[i].replacement.length()}, before.slice(old)};
    }
    m_storage.replaceCharacters(edits);
}

void UndoManager::setState(State state)
{
    const bool was = isClean();
    m_state = state;
    if (isClean() != was)
        Q_EMIT cleanChanged(isClean());
}

/// Nothing needs to go past changes that no step lies below.
void UndoManager::pushUnrecorded(Stack& stack, std::span<const TextChange> changes)
{
    if (stack.empty() || changes.empty())
        return;
    if (stack.back().isStep())
        stack.emplace_back();
    std::vector<TextChange>& all = stack.back().changes;
    all.insert(all.end(), changes.begin(), changes.end());
}

const UndoManager::Entry* UndoManager::lastStep(const Stack& stack)
{
    const auto step = std::find_if(stack.rbegin(), stack.rend(),
                                   [](const Entry& entry) { return entry.isStep(); });
    return step == stack.rend() ? nullptr : &*step;
}

} // namespace quillory
