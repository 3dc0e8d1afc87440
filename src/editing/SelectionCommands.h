#pragma once

#include "text/TextSnapshot.h"

#include <QString>
#include <span>

namespace quillory {

class QPTextView;

// What is done with several selections at once, beside typing and moving.

/// Takes away the caret at \a offset, or the selection that holds the characters on both of its
/// sides; false where there is none, or no other would be left.
bool removeSelectionAt(QPTextView& editor, TextOffset offset);

/// Whether \a offset lies in selected text: strictly inside, or, being the place before or after
/// the character under a mouse, at the edge of it.
bool isInSelectedText(const QPTextView& editor, TextOffset offset);

/// Makes of each selection over several lines one for each of them, without the line breaks. The
/// line that a selection only reaches the start of gets none.
void splitSelectionsIntoLines(QPTextView& editor);

/// Replaces the selections by \a text as one step. Where there are several, and as many \a parts
/// of the text, or else as many lines in it, each gets its own, first to last; otherwise each gets
/// all of it. A line break at the end does not count as the start of another line. With \a smart,
/// what goes in is set apart from the words around it, see smartlyInserted().
void pasteText(QPTextView& editor, const TextSnapshot& text, std::span<const TextRange> parts,
               const QString& actionName, bool smart = false);

/// Puts \a text at \a offset as one step, and selects it; when \a moving, the selected text goes.
/// False, and nothing is done, where that is inside the selected text that goes, or nothing may be
/// edited.
bool dropText(QPTextView& editor, const TextSnapshot& text, TextOffset offset, bool moving,
              const QString& actionName);

} // namespace quillory
