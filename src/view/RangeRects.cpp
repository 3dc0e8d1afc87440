#include "view/RangeRects.h"

#include <algorithm>
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

std::vector<TextRange> rangesInSight(TextGeometry& geometry, TextViewport& viewport)
{
    constexpr TextOffset longestBreak = 2;
    std::vector<TextRange> ranges;
    const double origin = viewport.left();
    for (const TextViewport::VisibleRow& visible : viewport.rows()) {
        geometry.forEachSegment(
            visible.row, -origin, viewport.size().width() - origin,
            [&](const TextGeometry::Segment& segment) {
                // Segments stand in the order in which they are seen, rows in that of the text.
                const TextRange next = segment.range;
                TextRange* const last = ranges.empty() ? nullptr : &ranges.back();
                if (last && next.location <= last->end() + longestBreak &&
                    next.end() >= last->location)
                    *last = TextRange::between(std::min(last->location, next.location),
                                               std::max(last->end(), next.end()));
                else
                    ranges.push_back(next);
            });
    }
    std::sort(ranges.begin(), ranges.end(),
              [](TextRange a, TextRange b) { return a.location < b.location; });
    return ranges;
}

} // namespace quillory
