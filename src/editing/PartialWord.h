#pragma once

#include "text/TextSnapshot.h"

#include <QStringList>

namespace quillory {

/// Whether \a character may stand in a name: a letter, mark or number, or "_".
bool isNameCharacter(char32_t character);

/// What is being typed before \a caret and can be completed; empty where there is nothing such.
///
/// By itself that is the run of name characters that ends at the caret. But words of languages hold
/// other signs too: "@media", "#import", "border-top", "List.of()". So where the signs and names
/// before that run, back to the last blank, make the beginning of one of \a words together with it,
/// in any case, they belong to it; the longest such stretch counts. Reads a bounded stretch before
/// the caret. O(number of words).
TextRange partialWordBefore(const TextSnapshot& text, TextOffset caret, const QStringList& words);

} // namespace quillory
