#pragma once

#include "editing/MarkedRanges.h"
#include "view/TextViewport.h"

class QColor;
class QPainter;

namespace quillory {

/// Marks what of \a places lies in \a area, so that the text on \a background can still be read;
/// the one that is \a selected stands out.
void paintFound(QPainter& painter, TextGeometry& geometry, TextViewport& viewport,
                const MarkedRanges& places, TextRange selected, const QRect& area,
                const QColor& background);

} // namespace quillory
