#pragma once

#include "syntax/ColouredHtml.h"
#include "syntax/ColouringState.h"

namespace quillory {

/// All that it takes to colour a text on another thread.
struct ColouringJob
{
    TextSnapshot text;
    ColouringState state;
    ColourRoles roles;
    PlainColours plain;
    bool isPlainText = false; ///< which is never coloured

    ColouredText coloured() const { return coloured(text.range()); }
    /// Coloured in the lines of \a range only. O(their length).
    ColouredText coloured(TextRange range) const;
};

} // namespace quillory
