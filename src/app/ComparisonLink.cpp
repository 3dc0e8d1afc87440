#include "app/ComparisonLink.h"

#include <QPainter>
#include <QPainterPath>

namespace quillory {

namespace {

constexpr int breadth = 40; ///< pixels
constexpr int thinnest = 2; ///< pixels, of the end of a band where there are no lines

} // namespace

ComparisonLink::ComparisonLink(QWidget* parent) : QWidget(parent)
{
    setFixedWidth(breadth);
}

void ComparisonLink::setBands(const std::vector<Band>& bands, int top, const QColor& background)
{
    if (bands == m_bands && top == m_top && background == m_background)
        return;
    m_bands = bands;
    m_top = top;
    m_background = background;
    update();
}

void ComparisonLink::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setClipRect(rect().adjusted(0, m_top, 0, 0));
    painter.fillRect(rect(), m_background);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double middle = width() / 2.0;
    for (const Band& band : m_bands) {
        const int leftEnd = std::max(band.leftEnd, band.left + thinnest);
        const int rightEnd = std::max(band.rightEnd, band.right + thinnest);
        QPainterPath path(QPointF(0, band.left));
        path.cubicTo(middle, band.left, middle, band.right, width(), band.right);
        path.lineTo(width(), rightEnd);
        path.cubicTo(middle, rightEnd, middle, leftEnd, 0, leftEnd);
        painter.fillPath(path, band.colour);
    }
}

} // namespace quillory
