#pragma once

#include "text/TextSnapshot.h"

#include <vector>

namespace quillory {

// What stands between tags or after commands and yet is nothing to read.

/// What of \a range lies within elements of HTML that hold code: script, style, pre, code and
/// their like. Where they begin is looked for in a bounded stretch before it.
std::vector<TextRange> codeElements(const TextSnapshot& text, TextRange range);

/// The arguments of the LaTeX command that ends \a command, where they are names, lengths or
/// definitions, as those of \label and \usepackage are; else an empty range at its end.
TextRange nameArguments(const TextSnapshot& text, TextRange command);

} // namespace quillory
