#pragma once

#include "text/Selection.h"
#include "text/TextSnapshot.h"

#include <span>
#include <vector>

namespace quillory {

class QPTextView;

// Words that were selected as words keep the spaces between them right when they go and come.
//
// Deleting such a range takes one space (U+0020) beside it along:
//   1. the one after it, where before it there is a space, a line's start, or an opening bracket or
//      a quotation mark;
//   2. else the one before it, where after it there is a line's end, a closing bracket, a quotation
//      mark or a mark that hugs the word before (. , ; : ! ?), unless that space is indentation or
//      one of several.
// Ranges with one space between them go as one range.
//
// Putting a word somewhere adds a space on each side where a letter, a digit or an underscore of it
// would touch another one. Scripts that are written without spaces, as Han and Thai, get none.

/// The stretches of \a text that deleting \a selections removes, in order and apart; carets remove
/// nothing. Looks at a few characters beside each selection.
std::vector<TextRange> smartDeleteRanges(const TextSnapshot& text,
                                         std::span<const Selection> selections);

/// \a word with the spaces that it needs in the place of \a range.
TextSnapshot smartlyInserted(const TextSnapshot& text, TextRange range, const TextSnapshot& word);

/// Deletes the selections so, as one step.
void smartDelete(QPTextView& editor, const QString& actionName);

} // namespace quillory
