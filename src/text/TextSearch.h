#pragma once

#include "text/TextSnapshot.h"

namespace quillory {

/// Where the first occurrence of \a needle that lies in \a within begins; -1 where there is none,
/// or \a needle is empty. Code units are compared as they are.
TextOffset find(const TextSnapshot& text, QStringView needle, TextRange within);

/// The same for the last occurrence.
TextOffset findBackwards(const TextSnapshot& text, QStringView needle, TextRange within);

} // namespace quillory
