#pragma once

#include "text/TextSnapshot.h"

namespace quillory {

/// The first place from \a from on, or, \a backwards, the last one that begins before it, that
/// holds \a needle in letters of either case; then the other way around the text's end. An empty
/// range at \a from where there is none.
TextRange findInLog(const TextSnapshot& text, const QString& needle, TextOffset from,
                    bool backwards);

} // namespace quillory
