#pragma once

#include "text/TextSnapshot.h"

#include <optional>

namespace quillory {

/// What a double click on the bracket at \a offset selects: all from one bracket to its partner.
/// Nothing where the bracket has none.
std::optional<TextRange> bracketSpan(const TextSnapshot& text, TextOffset offset);

/// Whether there is a bracket at \a offset, a place in the text.
bool isBracket(const TextSnapshot& text, TextOffset offset);

/// The part of \a word around the unit at \a offset that the nearest "." or ":" on either side set
/// off; all of \a word where it holds none. One at \a offset itself sets off nothing.
TextRange wordSegment(const TextSnapshot& text, TextRange word, TextOffset offset);

} // namespace quillory
