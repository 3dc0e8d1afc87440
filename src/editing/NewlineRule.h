#pragma once

#include "editing/SelectionEdits.h"

#include <span>

namespace quillory {

/// Return: a line break in the place of each selection. When \a indenting, each new line begins
/// with the horizontal white space that the line before it begins with, and with one tab more where
/// that ends in "{", blanks behind it aside. A selection sees what those before it made of its
/// line.
SelectionEdits newlineEdits(const TextSnapshot& text, std::span<const Selection> selections,
                            bool indenting);

} // namespace quillory
