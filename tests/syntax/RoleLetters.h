#pragma once

#include "syntax/RecolouringEngine.h"

#include <string>

namespace quillory::test {

/// The role of each unit of \a range.
std::vector<ColourRole> painted(const Recolouring& result, TextRange range);

/// One character a unit; "." where there is no colour.
std::string letters(const std::vector<ColourRole>& roles);

/// Where pages may begin without cutting a string literal in two.
std::vector<TextOffset> pageStarts(const TextSnapshot& text, const ColouringState& state);

} // namespace quillory::test
