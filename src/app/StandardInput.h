#pragma once

#include "document/DocumentReader.h"

#include <atomic>

namespace quillory {

/// Reads standard input to its end, as a text of any encoding; the result has no path. Meant for a
/// thread of its own: waits for as long as whoever writes takes, but at most a moment after
/// \a cancelled was set.
ReadResult readStandardInput(const std::atomic_bool& cancelled);

} // namespace quillory
