#include "view/FoundPainter.h"

#include "view/RangeRects.h"

#include <QPainter>

namespace quillory {

namespace {

constexpr double radius = 2; // logical pixels

} // namespace

void paintFound(QPainter& painter, TextGeometry& geometry, TextViewport& viewport,
                const MarkedRanges& places, TextRange selected, const QRect& area,
                const QColor& background)
{
    if (places.isEmpty())
        return;
    const bool isDark = background.lightnessF() < 0.5F;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isDark ? QColor(255, 205, 70, 190) : QColor(200, 130, 0, 200));
    const QColor plain = isDark ? QColor(255, 205, 70, 50) : QColor(255, 200, 0, 75);
    const QColor strong = isDark ? QColor(255, 160, 40, 120) : QColor(255, 140, 0, 130);
    const auto& rows = viewport.rows();
    const TextRange shown =
        TextRange::between(rows.front().row.range.location, rows.back().row.range.end());
    for (const TextRange place : places.touching(shown)) {
        painter.setBrush(place == selected ? strong : plain);
        for (const QRect& rect : visibleRects(geometry, viewport, place)) {
            if (rect.intersects(area))
                painter.drawRoundedRect(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), radius,
                                        radius);
        }
    }
    painter.restore();
}

} // namespace quillory
