#pragma once

#include "editing/spelling/SpellingScope.h"

namespace quillory {

/// A word to look up.
struct SpellingWord
{
    TextRange range;
    QString word;
    bool operator==(const SpellingWord&) const = default;
};

/// No longer word is looked up, in UTF-16 code units.
inline constexpr qsizetype longestSpellingWord = 64;

/// The words that overlap \a range, whole, in the prose of \a text. Left out is what no dictionary
/// lists: single letters, words with digits, underscores or capitals inside, short ones of capitals
/// alone, addresses, paths, options, tags, names and bits of code in comments, what stands between
/// backticks, and the words of the definition. Any thread, with a scope of its own.
std::vector<SpellingWord> spellingWords(const TextSnapshot& text, TextRange range,
                                        const SpellingScope& scope);

} // namespace quillory
