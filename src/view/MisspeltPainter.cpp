#include "view/MisspeltPainter.h"

#include "view/RangeRects.h"

#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace quillory {

namespace {

// In logical pixels.
constexpr double halfPeriod = 2;
constexpr double height = 2;
constexpr double penWidth = 1.1;
constexpr double belowBaseline = 2;

QPainterPath wave(double left, double right, double top)
{
    QPainterPath path({left, top + height});
    const int turns = int(std::ceil((right - left) / halfPeriod));
    for (int turn = 1; turn <= turns; ++turn)
        path.lineTo(std::min(left + turn * halfPeriod, right), turn % 2 == 1 ? top : top + height);
    return path;
}

} // namespace

void paintMisspelt(QPainter& painter, TextGeometry& geometry, TextViewport& viewport,
                   const MarkedRanges& words, const QRect& area, const QColor& background)
{
    if (words.isEmpty())
        return;
    const TextFont& font = geometry.font();
    const double top =
        std::min<double>(font.baseline() + belowBaseline, font.rowHeight() - height - penWidth / 2);
    const QColor colour =
        background.lightnessF() < 0.5F ? QColor(255, 112, 112) : QColor(210, 24, 24);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, penWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const auto& rows = viewport.rows();
    const TextRange shown =
        TextRange::between(rows.front().row.range.location, rows.back().row.range.end());
    for (const TextRange word : words.touching(shown)) {
        for (const QRect& rect : visibleRects(geometry, viewport, word)) {
            if (rect.intersects(area))
                painter.drawPath(wave(rect.left(), rect.right() + 1, rect.top() + top));
        }
    }
    painter.restore();
}

} // namespace quillory
