#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "app/MenuConditions.h"
#include "app/MenuTable.h"
#include "app/ReplacementsFile.h"
#include "app/SpellingAids.h"
#include "app/SpellingLanguageMenu.h"
#include "document/Document.h"
#include "editing/SelectionCommands.h"
#include "view/TextViewWidget.h"

namespace quillory {

namespace {

using W = DocumentWindow;

/// "Undo Typing": a command with the name of the step that it takes.
QString withStep(const char* command, const QString& step)
{
    return step.isEmpty() ? menuText(command) : menuText(command) + u' ' + step;
}

constexpr MenuItem separator{};

constexpr MenuItem items[]{
    {.text = ENTRY("&Undo"),
     .inContextMenu = true,
     .standardKey = QKeySequence::Undo,
     .run = [](W& w) { w.view().commands().undo(); },
     .isEnabled = [](const W& w) { return w.document().undoManager().canUndo(); },
     .label =
         [](const W& w) { return withStep("&Undo", w.document().undoManager().undoActionName()); }},
    {.text = ENTRY("&Redo"),
     .inContextMenu = true,
     .standardKey = QKeySequence::Redo,
     .ownKeys = "Ctrl+Shift+Z; Ctrl+Y",
     .run = [](W& w) { w.view().commands().redo(); },
     .isEnabled = [](const W& w) { return w.document().undoManager().canRedo(); },
     .label =
         [](const W& w) { return withStep("&Redo", w.document().undoManager().redoActionName()); }},
    {.inContextMenu = true},
    {.text = ENTRY("Cu&t"),
     .inContextMenu = true,
     .standardKey = QKeySequence::Cut,
     .run = [](W& w) { w.view().commands().cut(); },
     .isEnabled = canDelete},
    {.text = ENTRY("&Copy"),
     .inContextMenu = true,
     .standardKey = QKeySequence::Copy,
     .run = [](W& w) { w.view().commands().copy(); },
     .isEnabled = hasSelection},
    {.text = ENTRY("Copy with C&olours"),
     .ownKeys = "Ctrl+Shift+C",
     .run = [](W& w) { w.copyWithColours(); },
     .isEnabled = hasSelection},
    // Whether the clipboard holds text is for its owner to say, who may take long.
    {.text = ENTRY("&Paste"),
     .inContextMenu = true,
     .standardKey = QKeySequence::Paste,
     .run = [](W& w) { w.view().commands().paste(); },
     .isEnabled = [](const W& w) { return w.document().textView().isEditable(); }},
    {.text = ENTRY("&Delete"),
     .inContextMenu = true,
     .run = [](W& w) { w.document().textView().deleteSelection(); },
     .isEnabled = canDelete},
    {.inContextMenu = true},
    {.text = ENTRY("Select &All"),
     .inContextMenu = true,
     .standardKey = QKeySequence::SelectAll,
     .run = [](W& w) { w.view().commands().selectAll(); }},
    separator,
    // Desktops take most arrows with Ctrl and Alt for themselves.
    {.text = ENTRY("Add Caret A&bove"),
     .ownKeys = "Alt+PgUp; Ctrl+Alt+Up",
     .run = [](W& w) { w.view().commands().addCaretAbove(); }},
    {.text = ENTRY("Add Caret Belo&w"),
     .ownKeys = "Alt+PgDown; Ctrl+Alt+Down",
     .run = [](W& w) { w.view().commands().addCaretBelow(); }},
    {.text = ENTRY("Split Selection into &Lines"),
     .ownKeys = "Ctrl+Shift+L",
     .run = [](W& w) { splitSelectionsIntoLines(w.document().textView()); },
     .isEnabled = hasSelection},
    separator,
    {.text = ENTRY("&Indent New Lines"), .preference = &keys::indentNewLinesBraces},
    {.text = ENTRY("Close Brac&kets"), .preference = &keys::insertClosingParenthesisandBrace},
    {.text = ENTRY("Smart Insert and Delet&e"), .preference = &keys::smartCopy},
    {.text = ENTRY("Te&xt Replacement"), .preference = &keys::textReplacement},
    {.text = ENTRY("Edit Text Replace&ments…"), .run = editTextReplacements},
    separator,
    {.text = ENTRY("Check &Spelling While Typing"), .preference = &keys::checkSpelling},
    {.text = ENTRY("&Next Misspelling"),
     .ownKeys = "F7",
     .run = [](W& w) { w.spelling().selectNextMisspelling(); }},
    {.text = ENTRY("Spellin&g Language"), .fill = fillSpellingLanguageMenu},
    separator,
    {.text = ENTRY("Pre&ferences…"),
     .standardKey = QKeySequence::Preferences,
     .ownKeys = "Ctrl+,",
     .run = [](W& w) { w.controller().preferences().showWindow(w); }},
};

} // namespace

std::span<const MenuItem> editMenu()
{
    return items;
}

} // namespace quillory
