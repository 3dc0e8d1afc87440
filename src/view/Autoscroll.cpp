#include "view/Autoscroll.h"

#include "view/TextViewWidget.h"

#include <QScreen>
#include <QTimerEvent>
#include <algorithm>

namespace quillory {

namespace {

constexpr int interval = 16;        // milliseconds, about a frame
constexpr int screenBorder = 4;     // pixels
constexpr double perPixel = 25;     // pixels a second for each pixel outside
constexpr double slowest = 100;     // pixels a second
constexpr double borderSpeed = 800; // pixels a second, at the very edge
constexpr double fastest = 6000;    // pixels a second
constexpr double longestStep = 0.1; // seconds, after which a pause is not made up for

/// The speed along one axis for a mouse at \a value, where the view reaches from \a low to
/// \a high, and so many pixels inside of each end count as outside.
double speedOf(int value, int low, int high, int lowBorder, int highBorder)
{
    const auto inBorder = [](int depth, int border) { return borderSpeed * depth / border; };
    const auto outside = [](int distance) {
        return std::clamp(perPixel * distance, slowest, fastest);
    };
    if (value < low)
        return -outside(low - value);
    if (value > high)
        return outside(value - high);
    if (value < low + lowBorder)
        return -inBorder(low + lowBorder - value, lowBorder);
    if (value > high - highBorder)
        return inBorder(value - high + highBorder, highBorder);
    return 0;
}

} // namespace

QPointF Autoscroll::speed() const
{
    const QWidget& viewport = *m_view.viewport();
    const QRect inside = viewport.rect();
    const QRect onScreen(viewport.mapToGlobal(inside.topLeft()), inside.size());
    const QRect screen = viewport.screen()->geometry();
    const auto border = [&](bool reachesScreenEdge) {
        return std::max(m_border, reachesScreenEdge ? screenBorder : 0);
    };
    return {speedOf(m_position.x(), inside.left(), inside.right(),
                    border(onScreen.left() <= screen.left()),
                    border(onScreen.right() >= screen.right())),
            speedOf(m_position.y(), inside.top(), inside.bottom(),
                    border(onScreen.top() <= screen.top()),
                    border(onScreen.bottom() >= screen.bottom()))};
}

void Autoscroll::follow(QPoint position)
{
    m_position = position;
    if (speed().isNull()) {
        stop();
    } else if (!isActive()) {
        m_rest = {};
        m_sinceStep.start();
        m_timer.start(interval, Qt::PreciseTimer, this);
    }
}

void Autoscroll::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    const double seconds = std::min(longestStep, double(m_sinceStep.restart()) / 1000);
    m_rest += speed() * seconds;
    const QPoint whole(int(m_rest.x()), int(m_rest.y()));
    m_rest -= whole;
    if (whole.isNull())
        return;
    m_view.scrollBy(whole.x(), whole.y());
    const QRect inside = m_view.viewport()->rect();
    m_scrolled({std::clamp(m_position.x(), inside.left(), inside.right()),
                std::clamp(m_position.y(), inside.top(), inside.bottom())});
}

} // namespace quillory
