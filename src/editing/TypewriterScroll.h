#pragma once

#include "text/TextSnapshot.h"

#include <optional>

namespace quillory {

// Typewriter scrolling keeps the row that is typed on at one height of the window. These are its
// rules; where rows stand is for a view to know.

/// The key being pressed while the text changes.
enum class TypedKey
{
    Space,
    Return, ///< or Enter
    Other   ///< or none
};

/// The edge of a row that is to stand at the anchor.
struct AnchoredRow
{
    TextOffset character = 0; ///< the row shows this one
    bool bottomEdge = false;  ///< else its top edge
    bool operator==(const AnchoredRow&) const = default;
};

/// How far below the top of what is in sight the edge stands: 0.3 of \a visibleHeight, a whole
/// number of logical pixels. Near the start of the text there is less above it.
int anchorHeight(int visibleHeight);

/// What to anchor after a change of \a text that left \a selection: for Return the bottom of the
/// row before the new line, else the top of the row with the character before the selection's end;
/// for the space bar nothing.
std::optional<AnchoredRow> constrainScrollRow(const TextSnapshot& text, TextRange selection,
                                              TypedKey key);

/// What to anchor when the view is set up.
AnchoredRow simpleScrollRow(TextRange selection);

} // namespace quillory
