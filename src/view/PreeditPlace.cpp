#include "view/PreeditPlace.h"

#include "view/TextViewport.h"

#include <algorithm>
#include <cmath>

namespace quillory {

namespace {

/// Calls \a visit with each row in sight that some of the composed text may be on, and its segment.
template<class Visit>
void forEachRow(TextViewport& viewport, Visit&& visit)
{
    TextGeometry& geometry = viewport.geometry();
    const TextOffset offset = geometry.preedit().offset;
    for (const TextViewport::VisibleRow& visible : viewport.rows()) {
        const TextRange range = visible.row.range;
        if (offset < range.location || offset > range.end())
            continue;
        const double x = geometry.wraps() ? 0 : geometry.xOf(visible.row, offset);
        geometry.forEachSegment(visible.row, x, x, [&](const TextGeometry::Segment& segment) {
            if (segment.preeditLength > 0)
                visit(visible, segment);
        });
    }
}

} // namespace

std::optional<QPointF> preeditPoint(TextViewport& viewport, int index)
{
    std::optional<QPointF> result;
    forEachRow(viewport, [&](const auto& visible, const TextGeometry::Segment& segment) {
        const int place = segment.preeditStart + std::clamp(index, 0, segment.preeditLength);
        if (segment.layout->rowOf(place) == segment.row) {
            const double x = segment.x + segment.layout->xAt(segment.row, place);
            result = QPointF(viewport.left() + x, visible.y);
        }
    });
    return result;
}

QRect preeditCaretRect(TextViewport& viewport, int index)
{
    const auto point = preeditPoint(viewport, index);
    return point ? viewport.caretAt(point->x(), int(point->y())) : QRect();
}

std::optional<int> preeditIndexAt(TextViewport& viewport, QPoint point)
{
    std::optional<int> result;
    forEachRow(viewport, [&](const auto& visible, const TextGeometry::Segment& segment) {
        if (point.y() < visible.y || point.y() >= visible.y + viewport.rowHeight())
            return;
        const LineLayout& layout = *segment.layout;
        const int end = segment.preeditStart + segment.preeditLength;
        const int first = std::max(segment.preeditStart, layout.rowStart(segment.row));
        const int last = std::min(end, layout.rowEnd(segment.row));
        if (first >= last)
            return;
        const double x = point.x() - viewport.left() - segment.x;
        layout.forEachStretch(segment.row, first, last, [&](double left, double right) {
            if (x >= left && x < right)
                result =
                    std::clamp(layout.indexAt(segment.row, x), first, last) - segment.preeditStart;
        });
    });
    return result;
}

} // namespace quillory
