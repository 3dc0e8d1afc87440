#include "app/DecorativeViews.h"

#include <QLinearGradient>
#include <QPainter>

namespace quillory {

GradientView::GradientView(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void GradientView::setColours(const QColor& from, const QColor& to)
{
    m_from = from;
    m_to = to;
    update();
}

void GradientView::paintEvent(QPaintEvent*)
{
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    QLinearGradient gradient(0, 0, width(), 0);
    gradient.setColorAt(isMirrored ? 1 : 0, m_from);
    gradient.setColorAt(isMirrored ? 0 : 1, m_to);
    QPainter(this).fillRect(rect(), gradient);
}

LineView::LineView(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent), m_orientation(orientation)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    orientation == Qt::Horizontal ? setFixedHeight(1) : setFixedWidth(1);
}

void LineView::setColour(const QColor& colour)
{
    m_colour = colour;
    update();
}

void LineView::paintEvent(QPaintEvent*)
{
    const qreal thickness = 1 / devicePixelRatioF();
    QPainter(this).fillRect(m_orientation == Qt::Horizontal ? QRectF(0, 0, width(), thickness)
                                                            : QRectF(0, 0, thickness, height()),
                            m_colour);
}

} // namespace quillory
