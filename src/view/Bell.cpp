#include "view/Bell.h"

#include <QApplication>
#include <QPainter>

namespace quillory {

namespace {

constexpr int frame = 3; ///< logical pixels
constexpr float frameOpacity = 0.55F;
constexpr float washOpacity = 0.08F;

QColor withOpacity(QColor colour, float opacity)
{
    colour.setAlphaF(opacity);
    return colour;
}

} // namespace

Bell::Bell(QWidget* parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    m_end.setSingleShot(true);
    m_end.setInterval(duration);
    connect(&m_end, &QTimer::timeout, this, &QWidget::hide);
}

void Bell::ring()
{
    if (m_lastRing.isValid() && m_lastRing.elapsed() < leastPause)
        return;
    m_lastRing.start();
    QApplication::beep();
    setGeometry(parentWidget()->rect());
    show();
    raise();
    m_end.start();
}

/// The accent of the desktop stands out from light and dark texts alike.
void Bell::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor colour = palette().color(QPalette::Active, QPalette::Highlight);
    painter.fillRect(rect(), withOpacity(colour, washOpacity));
    painter.setPen(QPen(withOpacity(colour, frameOpacity), 2 * frame));
    painter.drawRect(rect());
}

} // namespace quillory
