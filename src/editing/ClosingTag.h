#pragma once

#include "editing/BlockEdit.h"

#include <span>

namespace quillory {

enum class TagSearch
{
    Found,
    NothingOpen,
    GaveUp ///< more were met than asked for
};

struct ClosingTag
{
    TagSearch outcome = TagSearch::NothingOpen;
    TextSnapshot text; ///< what closes the element
};

/// The tag that closes the innermost element still open before the last ">" before \a caret. It
/// works on the characters alone: comments and strings are not parsed, but tags that never need
/// closing (breaks, rules, images, comments, processing instructions and the like) and those that
/// close themselves are passed by. Gives up when it meets more of "<" than \a most, from which it
/// takes what it met.
ClosingTag closingTagBefore(const TextSnapshot& text, TextOffset caret, qsizetype& most);

struct ClosedTags
{
    TagSearch outcome = TagSearch::Found; ///< NothingOpen where that holds for any caret
    BlockEdit block;
};

/// Puts the closing tag at each of \a carets, which are in order; the later ones find the tags of
/// those before them. Each caret goes behind its tag.
ClosedTags tagsClosed(const TextSnapshot& text, std::span<const TextRange> carets, qsizetype most);

} // namespace quillory
