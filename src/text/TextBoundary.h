#pragma once

#include "text/TextSnapshot.h"

#include <vector>

namespace quillory {

// Boundaries of characters and words by the rules of UAX #29, as ICU's break iterators know them.
// Each look-up reads a bounded stretch around the offset, whatever the text's or the line's length;
// a single cluster or word is never taken for longer than a few thousand code units.

/// The nearest boundary of a user-perceived character after or before \a offset; the text's end or
/// start where there is none. CR LF is one character.
TextOffset characterAfter(const TextSnapshot& text, TextOffset offset);
TextOffset characterBefore(const TextSnapshot& text, TextOffset offset);

/// Where the deletion of what was typed last before \a offset begins. Marks, vowel signs and other
/// parts of a character that are typed one by one go one by one; what is typed in one go, an emoji
/// sequence, a flag, a character with its variation selector, CR LF, goes whole.
TextOffset deletionStartBefore(const TextSnapshot& text, TextOffset offset);

/// The nearest boundary of a user-perceived character at or before \a offset.
TextOffset characterStart(const TextSnapshot& text, TextOffset offset);

/// Where the caret goes by word: to the end of this or the next word, and to the start of this or
/// the word before. Blanks and signs are passed over; a line break is stopped at, then passed.
TextOffset wordEndAfter(const TextSnapshot& text, TextOffset offset);
TextOffset wordStartBefore(const TextSnapshot& text, TextOffset offset);

/// The word, or the run of blanks, or the single sign, that holds the unit at \a offset; at the
/// text's end the one before it.
TextRange wordAt(const TextSnapshot& text, TextOffset offset);

/// The words of letters in \a units, in order; not numbers, nor what is written without blanks
/// between the words. O(length).
std::vector<TextRange> letterWords(const QString& units);

} // namespace quillory
