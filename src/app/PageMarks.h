#pragma once

#include <QRectF>
#include <vector>

namespace quillory {

/// Places of a page to be marked, in points from its left upper corner.
struct PageMarks
{
    int page = 0; ///< from 0
    std::vector<QRectF> rects;
};

} // namespace quillory
