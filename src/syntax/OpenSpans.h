#pragma once

#include "syntax/ColouringState.h"
#include "text/TextSnapshot.h"

namespace quillory {

/// Which spans that began before an offset are still open there.
struct OpenSpans
{
    bool instruction = false;
    bool firstComment = false;
    bool secondComment = false;
};

OpenSpans openSpansBefore(const TextSnapshot& text, TextOffset offset, const ColouringState& state);

} // namespace quillory
