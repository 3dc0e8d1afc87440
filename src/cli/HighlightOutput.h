#pragma once

#include "syntax/ColouredHtml.h"

namespace quillory {

/// \a lines of \a coloured for a terminal of 24-bit colours, each line with colours of its own, so
/// that pagers can begin anywhere. Control characters that a terminal would obey are shown as
/// their pictures. See-through colours are laid over the background.
void writeAnsi(QTextStream& out, const ColouredText& coloured, TextRange lines);

/// An array of [location, length, role], roles named by their keys in themes, one a line.
void writeJson(QTextStream& out, const std::vector<RoleRun>& runs);

} // namespace quillory
