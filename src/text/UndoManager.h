#pragma once

#include "text/Selection.h"
#include "text/TextStorage.h"

#include <QObject>
#include <QString>
#include <deque>
#include <vector>

namespace quillory {

/// What kind of user action an undo group is; groups of one kind that follow each other can become
/// one step.
enum class UndoKind
{
    Other,   ///< always a step of its own
    Typing,  ///< joins the typing before it, a word with the blanks that follow it making one step
    Deleting ///< joins the deleting before it
};

/// Undo and redo of the edits to one TextStorage.
///
/// Edits made through replaceCharactersInRange() are recorded; edits made directly to the storage
/// are not, but move the recorded ones, so that a later undo never touches the wrong characters.
///
/// A recorded step is a list of deltas, each "put this text in the place of that range", which lead
/// back from the text as it was after the step. Applying a delta yields its inverse, so undo and
/// redo are one operation. Unrecorded changes lie on the stacks between the steps; a step goes past
/// them by rebase(), and the selections that it brings back go along.
class UndoManager : public QObject
{
    Q_OBJECT

public:
    using Selections = std::vector<Selection>;

    explicit UndoManager(TextStorage& storage, QObject* parent = nullptr);

    /// Edits the storage and records the edit, in the open group or in one of its own.
    void replaceCharactersInRange(TextRange range, const TextSnapshot& replacement);

    /// The same for several at once: ranges of the text as it is, in order and apart.
    void replaceCharacters(std::span<const TextEdit> edits);

    /// Makes an edit that is not undoable, as one made directly to the storage; \a changes, made
    /// one after the other, tell in detail what it does.
    void replaceUnrecorded(const TextEdit& edit, std::span<const TextChange> changes);

    /// Groups nest; what lies between the outermost pair is one step. \a selections are those that
    /// undo brings back. A group in which nothing was edited leaves no step.
    void beginUndoGrouping(const Selections& selections = {}, UndoKind kind = UndoKind::Other);
    void endUndoGrouping(const Selections& selections = {});

    /// Names the open group, or the last step when none is open.
    void setActionName(const QString& name);

    /// The next typing or deleting starts a step of its own.
    void breakCoalescing() { m_mayCoalesce = false; }

    bool canUndo() const;
    bool canRedo() const;
    QString undoActionName() const;
    QString redoActionName() const;

    /// Takes one step back or forward; nothing happens where there is none or a group is open.
    void undo();
    void redo();

    /// Forgets every step. The clean mark stays where it is.
    void removeAllActions();

    /// Marks the text as it stands as unmodified.
    void markClean();
    /// Marks every text that can be reached as modified, until the next markClean().
    void markDirty();
    bool isClean() const { return m_state == m_cleanState; }

Q_SIGNALS:
    void cleanChanged(bool clean);
    /// The steps that undo and redo would take, or their names, are others now.
    void stepsChanged();
    /// A step was taken; \a selections are the ones to bring back, empty where none were recorded.
    void stepTaken(const std::vector<quillory::Selection>& selections);

private:
    using Delta = TextEdit;

    /// Names a text; unrecorded changes start a new epoch, in which no older text can be reached.
    struct State
    {
        int epoch = 0;
        qint64 serial = 0;
        bool operator==(const State&) const = default;
    };

    /// Either a step, or, when it has \a changes, unrecorded ones between two steps.
    struct Entry
    {
        std::vector<Delta> deltas; ///< in the order in which they are to be applied
        QString name;
        UndoKind kind = UndoKind::Other;
        Selections selectionsBefore; ///< of the text that applying leads to
        Selections selectionsAfter;  ///< of the text that it starts from
        qint64 serialBefore = 0;
        std::vector<TextChange> changes; ///< in the order in which they were made

        bool isStep() const { return changes.empty(); }
    };
    using Stack = std::deque<Entry>;

    void noteUnrecorded(std::span<const TextChange> changes);
    void closeGroup(Entry group);
    bool coalesces(const Entry& step, const Entry& next) const;
    static void merge(Entry& step, Entry next);
    static void pushUnrecorded(Stack& stack, std::span<const TextChange> changes);
    void take(Stack& from, Stack& to);
    static bool joinPlaces(std::vector<Delta>& step, const std::vector<Delta>& next);
    void apply(std::vector<Delta>& deltas);
    void applyTogether(std::span<Delta> deltas, bool upwards);
    void setState(State state);
    static const Entry* lastStep(const Stack& stack);

    TextStorage& m_storage;
    Stack m_undo;
    Stack m_redo;
    Entry m_group;
    int m_depth = 0;
    bool m_applying = false;
    bool m_mayCoalesce = false;
    State m_state;
    State m_cleanState;
    qint64 m_lastSerial = 0;
};

} // namespace quillory
