#include "view/MarkerLineNumberView.h"

#include "editing/RulerMeasures.h"

#include <QPainter>
#include <QPainterPath>

namespace quillory {

namespace {

constexpr double radius = 5;
constexpr double lineWidth = 2;
constexpr double tip = 4; ///< from the shoulders to the point, right of the label
constexpr QColor fillColour(51, 112, 194);
constexpr QColor strokeColour(31, 77, 143);

} // namespace

void MarkerLineNumberView::setRuleThickness(int thickness)
{
    m_markerImage = {};
    LineNumberView::setRuleThickness(thickness);
}

const QPixmap& MarkerLineNumberView::markerImage()
{
    if (m_markerImage.isNull() || m_markerImage.devicePixelRatio() != devicePixelRatioF())
        m_markerImage = markerImageWithSize({ruleThickness(), int(markerHeight)});
    return m_markerImage;
}

QPixmap MarkerLineNumberView::markerImageWithSize(QSize size) const
{
    QPixmap image(size * devicePixelRatioF());
    image.setDevicePixelRatio(devicePixelRatioF());
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawMarkerImageIntoRep(painter, size);
    return image;
}

void MarkerLineNumberView::drawMarkerImageIntoRep(QPainter& painter, QSizeF size) const
{
    // The stroke lies inside the image.
    const QRectF inside =
        QRectF({}, size).adjusted(lineWidth / 2, lineWidth / 2, -lineWidth / 2, -lineWidth / 2);
    const double diameter = 2 * radius;
    QPainterPath path(QPointF(inside.right(), inside.center().y()));
    path.lineTo(inside.right() - tip, inside.top());
    path.arcTo(inside.left(), inside.top(), diameter, diameter, 90, 90);
    path.arcTo(inside.left(), inside.bottom() - diameter, diameter, diameter, 180, 90);
    path.lineTo(inside.right() - tip, inside.bottom());
    path.closeSubpath();
    painter.fillPath(path, fillColour);
    painter.strokePath(path, QPen(strokeColour, lineWidth));
}

QPixmap MarkerLineNumberView::imageFor(const LineNumberMarker& marker)
{
    return marker.image.isNull() ? markerImage() : marker.image;
}

} // namespace quillory
