#pragma once

#include "text/TextSnapshot.h"
#include "view/TextFont.h"
#include "view/WorkCounters.h"

#include <QString>

namespace quillory {

/// The characters that stand for \a range of \a text on the screen, one unit for each of its units,
/// so that offsets are the same in both. Control characters become their control pictures
/// (U+2400…) where \a font has them, tabs stay, and what has no look at all, such as an unpaired
/// surrogate, becomes U+FFFD.
QString displayText(const TextSnapshot& text, TextRange range, const TextFont& font,
                    WorkCounters& counters);

} // namespace quillory
