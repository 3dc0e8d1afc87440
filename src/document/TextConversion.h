#pragma once

#include "text/StringEncoding.h"
#include "text/TextSnapshot.h"

#include <optional>

namespace quillory {

/// \a text encoded in \a encoding and decoded again; nothing when a character does not fit.
std::optional<TextSnapshot> thereAndBack(const TextSnapshot& text, StringEncoding encoding);

} // namespace quillory
