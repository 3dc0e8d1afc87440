#pragma once

#include "view/TextViewport.h"

#include <QRect>
#include <vector>

namespace quillory {

/// Where the characters of \a range that are in sight stand, from top to bottom: a rectangle for
/// each row, and with both directions in a row for each stretch of it. In logical pixels of the
/// viewport, and as high as a row; cut to about the viewport's width.
std::vector<QRect> visibleRects(TextGeometry& geometry, TextViewport& viewport, TextRange range);

/// The characters of which something is in sight, also from left to right, in order and apart;
/// of long lines to a few hundred code units more.
std::vector<TextRange> rangesInSight(TextGeometry& geometry, TextViewport& viewport);

} // namespace quillory
