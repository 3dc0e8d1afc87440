#include "view/RangeRects.h"

#include <cmath>

namespace quillory {

std::vector<QRect> visibleRects(TextGeometry& geometry, TextViewport& viewport, TextRange range)
{
    std::vector<QRect> result;
    const double origin = viewport.left();
    const int width = viewport.size().width();
    for (const TextViewport::VisibleRow& visible : viewport.rows()) {
        if (range.intersection(visible.row.range).isEmpty())
            continue;
        geometry.forEachSegment(
            visible.row, -origin, width - origin, [&](const TextGeometry::Segment& segment) {
                const TextRange shown = range.intersection(segment.range);
                if (shown.isEmpty())
                    return;
                segment.layout->forEachStretch(
                    segment.row, segment.indexOf(shown.location), segment.indexOf(shown.end()),
                    [&](double left, double right) {
                        const double shift = origin + segment.x;
                        const int from = int(std::floor(std::max(shift + left, -1.0)));
                        const int to = int(std::ceil(std::min(shift + right, width + 1.0)));
                        if (to > from)
                            result.emplace_back(from, visible.y, to - from, viewport.rowHeight());
                    });
            });
    }
    return result;
}

} // namespace quillory
