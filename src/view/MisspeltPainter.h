#pragma once

#include "editing/MarkedRanges.h"
#include "view/TextViewport.h"

class QColor;
class QPainter;

namespace quillory {

/// Draws waves below what of \a words lies in \a area, in a red that stands out from \a background.
/// They stay within the rows of the words.
void paintMisspelt(QPainter& painter, TextGeometry& geometry, TextViewport& viewport,
                   const MarkedRanges& words, const QRect& area, const QColor& background);

} // namespace quillory
