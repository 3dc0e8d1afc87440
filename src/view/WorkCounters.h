#pragma once

#include <QtGlobal>

namespace quillory {

/// How much work showing a text took so far. Tests compare these counts, which do not waver as
/// times do.
struct WorkCounters
{
    qint64 linesLaidOut = 0;    ///< lines shaped in one go
    qint64 chunksLaidOut = 0;   ///< pieces of long lines shaped
    qint64 unitsShaped = 0;     ///< UTF-16 code units of both
    qint64 layoutsColoured = 0; ///< lines and pieces whose glyphs were divided by colour
    qint64 piecesVisited = 0;   ///< leaves of the text read
};

} // namespace quillory
