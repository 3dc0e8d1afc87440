#pragma once

#include "foundation/PropertyList.h"
#include "text/TextRange.h"

#include <QPixmap>
#include <QPointF>

namespace quillory {

/// What marks a line in the ruler.
struct LineNumberMarker
{
    LineIndex lineNumber;
    QPixmap image = {}; ///< without one, the ruler's own is shown
    /// The place in the image, in logical pixels, that lies at the middle of the line's row.
    QPointF imageOrigin = {0, 6.5};

    /// Of what is archived, {"line": counted from 0}. What means no line is the first one.
    PropertyList::Dictionary encode() const;
    /// Takes a dictionary, or the same values in an array.
    static LineNumberMarker decode(const PropertyList& archive);
};

} // namespace quillory
