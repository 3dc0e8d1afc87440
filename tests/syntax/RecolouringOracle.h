#pragma once

#include "syntax/ColourRole.h"
#include "syntax/ColouringState.h"

#include <QString>
#include <vector>

namespace quillory::test {

/// The role of every code unit of \a text when all of it is coloured: one pass after the other, as
/// slow and as plain as can be, for the engine to be compared with. Throws where a string pattern
/// hits a limit.
std::vector<ColourRole> coloursOf(const QString& text, const ColouringState& state,
                                  const ColourRoles& roles);

} // namespace quillory::test
