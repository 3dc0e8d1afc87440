#pragma once

#include "text/TextEncoder.h"

#include <functional>

namespace quillory {

/// Gives bytes to a sink, piece by piece, the same ones at each call: so they can be counted,
/// written, and compared with what the disk then holds, without standing in memory as a whole.
/// False when the sink refused, or when there are no bytes after all.
using ByteSource = std::function<bool(const ByteSink& sink)>;

} // namespace quillory
