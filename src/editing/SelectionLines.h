#pragma once

#include "text/Selection.h"
#include "text/TextSnapshot.h"

#include <vector>

namespace quillory {

/// \a selections of \a before on the same lines and columns of \a after, whose lines may end
/// otherwise; columns past a line's end go to its end.
std::vector<Selection> onSameLines(const std::vector<Selection>& selections,
                                   const TextSnapshot& before, const TextSnapshot& after);

} // namespace quillory
