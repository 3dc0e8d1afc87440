#pragma once

#include "editing/SelectionEdits.h"

#include <span>

namespace quillory {

/// A typed "}". Where only blanks stand before it on its line, the line takes the indentation of
/// the line with the "{" that it closes; the selected text then stays behind the brace. Everywhere
/// else it is typed in the place of the selection. A selection sees what those before it made of
/// the text.
///
/// On a last line of blanks, closing a "{" on a line without indentation, the blanks go as an edit
/// that undo knows nothing of.
SelectionEdits closingBraceEdits(const TextSnapshot& text, std::span<const Selection> selections);

} // namespace quillory
