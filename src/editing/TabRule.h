#pragma once

#include "editing/SelectionEdits.h"

#include <span>

namespace quillory {

/// Tab. A caret types one. A selection that begins in its line's indentation moves all of its lines
/// to the right by a tab each, and stays; the line that it only reaches the start of does not
/// count. One that begins behind the indentation changes nothing, and becomes a caret at its end.
SelectionEdits tabEdits(const TextSnapshot& text, std::span<const Selection> selections);

} // namespace quillory
