#pragma once

#include "text/Selection.h"
#include "text/TextSnapshot.h"

#include <vector>

namespace quillory {

// Edits to one text that know nothing of each other are brought into an order: "delta, change" and
// "change', delta'" lead to the same text.

/// Both are made for the same text; makes \a delta fit the text after \a change, and \a change the
/// text after the old \a delta. Where the change lies inside what the delta replaces, the new delta
/// takes it along. Where it has rewritten more than all of the delta's range, the new one does
/// nothing.
void rebase(TextEdit& delta, TextChange& change);

/// The same for several of each, which are made one after the other from that text on. Where both
/// go through the text in one direction, it costs little more than looking at each of them.
void rebase(std::vector<TextEdit>& deltas, std::vector<TextChange>& changes);

/// \a selections of a text where they lie after \a changes, made one after the other.
std::vector<Selection> mapped(std::vector<Selection> selections,
                              const std::vector<TextChange>& changes);

} // namespace quillory
