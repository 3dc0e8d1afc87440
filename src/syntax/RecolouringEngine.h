#pragma once

#include "syntax/ColourRole.h"
#include "syntax/ColouringState.h"
#include "text/TextSnapshot.h"

#include <vector>

namespace quillory {

/// What colouring one range came to.
struct Recolouring
{
    TextRange range;           ///< the whole lines of the range that was asked for
    std::vector<RoleRun> runs; ///< maximal, in order, apart, within \a range
    QString limitedKey;        ///< of the definition: whose pattern ran into a limit; else empty
};

/// The runs of \a range of \a text, extended to whole lines. O(length of those lines), besides
/// finding what was left open before them. Any thread; changes nothing.
Recolouring recoloured(const TextSnapshot& text, TextRange range, const ColouringState& state,
                       const ColourRoles& roles);

} // namespace quillory
