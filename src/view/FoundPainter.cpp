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
    // As with a highlighter: the paper takes the colour, and the letters keep theirs.
    painter.setCompositionMode(isDark ? QPainter::CompositionMode_Screen
                                      : QPainter::CompositionMode_Multiply);
    painter.setPen(isDark ? QColor(170, 130, 40) : QColor(225, 170, 60));
    const QColor plain = isDark ? QColor(62, 48, 8) : QColor(255, 236, 160);
    const QColor strong = isDark ? QColor(130, 82, 10) : QColor(255, 190, 95);
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
