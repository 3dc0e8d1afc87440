#pragma once

#include "editing/BracketNoting.h"
#include "text/Selection.h"
#include "text/TextStorage.h"
#include "text/UndoManager.h"

#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class QMenu;

namespace quillory {

class UserDefaults;
struct SelectionEdits;

/// How far a proposed selection is widened.
enum class SelectionGranularity
{
    Character = 0,
    Word = 1,
    Paragraph = 2
};

/// The editing view without its looks: the selections over a text, and what keys and commands do
/// to both. A widget shows it, and forwards events to it.
///
/// There is always at least one selection; they are in the order of the text, do not overlap, and
/// no caret stands at the edge of another one. Every operation acts on all of them and is one undo
/// step. All offsets are UTF-16 code units. While TextStorage::edited is heard, the selections may
/// still be those of the text before; selectionDidChange and textDidChange come when all is done.
class QPTextView : public QObject
{
    Q_OBJECT

public:
    /// All arguments must outlive this. The switches of \a defaults are read when a key is handled;
    /// without defaults all of them are off.
    QPTextView(TextStorage& storage, UndoManager& undoManager,
               const UserDefaults* defaults = nullptr, QObject* parent = nullptr);

    const TextSnapshot& string() const { return m_storage.snapshot(); }
    TextStorage& textStorage() const { return m_storage; }
    UndoManager& undoManager() const { return m_undo; }
    const UserDefaults* defaults() const { return m_defaults; } ///< may be null

    /// While off, every change that asks for permission is refused.
    bool isEditable() const { return m_editable; }
    void setEditable(bool editable) { m_editable = editable; }

    // Selection. Ranges outside the text are pulled into it; overlapping ones are merged.

    const std::vector<Selection>& selections() const { return m_selections; }
    /// The selection that the view keeps in sight: the one set or added last.
    const Selection& primarySelection() const { return m_selections[m_primary]; }
    TextRange selectedRange() const { return primarySelection().range(); }
    std::vector<TextRange> selectedRanges() const;
    void setSelectedRange(TextRange range);
    void setSelectedRanges(const std::vector<TextRange>& ranges);
    /// \a primary is the index of the selection to keep in sight.
    void setSelections(std::vector<Selection> selections, size_t primary);
    void setSelection(Selection selection) { setSelections({selection}, 0); }
    /// How the selections were made; after any other change of them by character.
    SelectionGranularity selectionGranularity() const { return m_granularity; }
    void setSelectionGranularity(SelectionGranularity granularity) { m_granularity = granularity; }
    void selectAll();
    /// Keeps the primary selection alone, as a caret at its head when \a collapse is set.
    void keepPrimarySelection(bool collapse = false);

    /// The range that a click or a drag over \a proposed selects.
    TextRange selectionRangeForProposedRange(TextRange proposed,
                                             SelectionGranularity granularity) const;
    /// The same, but the second click of two, by words, selects a bracket with its partner and what
    /// lies between them, and of a word with "." or ":" in it the part between two of them. A
    /// bracket without a partner is selected alone, with a beep.
    TextRange selectionRangeForProposedRange(TextRange proposed, SelectionGranularity granularity,
                                             int clickCount);

    // Movement. \a target answers where a selection's head goes; \a extending keeps the anchors.

    void moveEach(const std::function<TextOffset(const Selection&)>& target, bool extending);
    void moveParagraphBackward(bool extending); ///< to this line's start, then to the one before
    void moveParagraphForward(bool extending);
    void moveToBeginningOfDocument(bool extending);
    void moveToEndOfDocument(bool extending);

    // Typing and deleting.

    void insertText(const QString& text); ///< by typingEdits()
    void insertNewline();                 ///< by newlineEdits()
    void insertTab();                     ///< by tabEdits()
    /// Units of lines that a command works through within a frame or so.
    static constexpr TextOffset longSelection = 1 << 18;
    void deleteBackward(); ///< see deletionStartBefore()
    void deleteForward();
    void deleteWordBackward();
    void deleteWordForward();
    void deleteToBeginningOfParagraph();
    void deleteToEndOfParagraph();
    /// Deletes the selected text; carets delete nothing. Words that were selected as such go by
    /// smartDelete() while the user default "smartCopy" is on, here as by the keys that delete.
    void deleteSelection();
    /// Replaces each selection by \a text as one step named \a actionName.
    void replaceSelections(const TextSnapshot& text, const QString& actionName);
    /// Makes \a edits, ranges of the text as it is, in order and apart, as one step, and leaves
    /// \a selections. False when nothing may be edited.
    bool replaceCharacters(std::span<const TextEdit> edits, std::vector<Selection> selections,
                           size_t primary, const QString& actionName,
                           UndoKind kind = UndoKind::Other);
    /// The same past undo, which only shifts its steps, and without textDidChange(). \a whole,
    /// where given, is all of the edits in one, which spares telling of each.
    bool replaceCharactersDirectly(std::span<const TextEdit> edits,
                                   std::vector<Selection> selections, size_t primary,
                                   const std::optional<TextEdit>& whole = {});

    /// The selected text, one selection after the other with a line break between them.
    TextSnapshot selectedText() const;

    // The triple that every undoable edit by a program passes through.

    /// Asks permission to put \a replacement in the place of \a range; when it is given, the edit
    /// that follows is undoable.
    bool shouldChangeTextInRange(TextRange range, const QString& replacement);
    /// Performs the edit. Without permission asked before, it is not undoable.
    void replaceCharactersInRange(TextRange range, const TextSnapshot& replacement);
    void replaceCharactersInRange(TextRange range, const QString& replacement);
    /// Says that the edit is done; observers hear textDidChange().
    void didChangeText();

    void undo();
    void redo();

    /// A menu kept for its owner; nothing is done with it here. It lives as long as anybody holds
    /// it.
    const std::shared_ptr<QMenu>& contextMenu() const { return m_contextMenu; }
    void setContextMenu(std::shared_ptr<QMenu> menu) { m_contextMenu = std::move(menu); }

Q_SIGNALS:
    void selectionDidChange();
    /// The characters changed by the user or by a command that announced it.
    void textDidChange();
    void beep();
    /// Tab is to move more than \a longSelection units of lines, which is left to whoever hears
    /// this; where nobody does, it is done at once.
    void longIndentRequested();
    /// \a text was typed at every selection, and the text has changed.
    void typed(const QString& text);

private:
    using Edit = std::function<TextRange(const Selection&)>;

    void announceSelections(std::vector<Selection> selections, size_t primary);
    void followEdit(const TextChange& change);
    void takeStep(void (UndoManager::*step)());
    void restoreSelections(const std::vector<Selection>& selections);
    void replaceEach(const Edit& range, const TextSnapshot& text, UndoKind kind,
                     const QString& actionName);
    void make(SelectionEdits made, UndoKind kind, const QString& actionName);
    void deleteEach(const std::function<TextOffset(TextOffset)>& target, UndoKind kind);
    bool deletesSmartly() const;
    void announceTyping(const QString& text);

    TextStorage& m_storage;
    UndoManager& m_undo;
    const UserDefaults* m_defaults;
    BracketNoting m_bracketNoting{m_storage, this};
    std::vector<Selection> m_selections{Selection{}};
    size_t m_primary = 0;
    SelectionGranularity m_granularity = SelectionGranularity::Character;
    bool m_editable = true;
    bool m_permitted = false;
    std::shared_ptr<QMenu> m_contextMenu;
    bool m_editing = false; ///< selections are set by the operation at work, not by followEdit
    bool m_takingStep = false;
    std::vector<TextChange> m_unfollowed; ///< the changes of the step being taken
};

} // namespace quillory
