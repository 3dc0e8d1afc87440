#pragma once

#include "text/TextSnapshot.h"

#include <optional>

namespace quillory {

// Which bracket belongs to which. Only brackets of one kind are counted: the other kinds, strings
// and comments mean nothing, so "(]" leaves "(" open, and a bracket in a comment counts.
//
// How many brackets a branch of the text's tree leaves without a partner is noted at the branch, so
// a look-up costs O(log n) where the text was looked at before. The first one reads the text, at
// some gigabytes a second; noteBrackets() does that on another thread.

/// A kind of bracket: an opener and its closer.
struct BracketKind
{
    char16_t opener;
    char16_t closer;

    constexpr bool operator==(const BracketKind&) const = default;
};

inline constexpr BracketKind roundBrackets{u'(', u')'};
inline constexpr BracketKind curlyBrackets{u'{', u'}'};
inline constexpr BracketKind squareBrackets{u'[', u']'};
inline constexpr BracketKind angleBrackets{u'<', u'>'};

/// The kind that has \a unit for its opener or its closer; nothing for what is no bracket.
std::optional<BracketKind> kindOpenedBy(char16_t unit);
std::optional<BracketKind> kindClosedBy(char16_t unit);

/// The opener of \a kind nearest before \a offset that no closer before \a offset belongs to;
/// nothing where it stands before \a from.
std::optional<TextOffset> openerBefore(const TextSnapshot& text, TextOffset offset,
                                       BracketKind kind, TextOffset from = 0);

/// The closer of \a kind nearest from \a offset on that no opener from \a offset on belongs to.
std::optional<TextOffset> closerFrom(const TextSnapshot& text, TextOffset offset, BracketKind kind);

/// The partner of the closer at \a closerAt; nothing where it has none, or is no closer.
std::optional<TextOffset> matchingOpener(const TextSnapshot& text, TextOffset closerAt);

/// The partner of the opener at \a openerAt; nothing where it has none, or is no opener.
std::optional<TextOffset> matchingCloser(const TextSnapshot& text, TextOffset openerAt);

/// Notes what the look-ups want to know of \a text, for all kinds. On any thread.
void noteBrackets(const TextSnapshot& text);

} // namespace quillory
