#include "view/WheelReader.h"

#include <QApplication>
#include <QPointingDevice>
#include <QWheelEvent>
#include <cmath>

namespace quillory {

namespace {

constexpr int anglePerNotch = 120;       // eighths of a degree, QWheelEvent::angleDelta
constexpr int gesturePause = 200;        // milliseconds that end a gesture whose end is not told
constexpr double straightness = 2;       // so much more along one axis holds the other
constexpr double gestureMemory = 0.9;    // so that a change of direction is followed soon
constexpr double pixelsPerZoomStep = 40; // of a touchpad

/// \a value without its fraction; one that lacks a rounding error to the next number is that.
int wholePart(double value)
{
    return int(value + std::copysign(1e-6, value));
}

bool isTouchpad(const QWheelEvent& event)
{
    return !event.pixelDelta().isNull() ||
           (event.pointingDevice() &&
            event.pointingDevice()->type() == QInputDevice::DeviceType::TouchPad);
}

} // namespace

QPointF WheelReader::straightened(QPointF pixels)
{
    m_gesture = m_gesture * gestureMemory + QPointF(std::abs(pixels.x()), std::abs(pixels.y()));
    if (m_gesture.y() > m_gesture.x() * straightness)
        pixels.setX(0);
    else if (m_gesture.x() > m_gesture.y() * straightness)
        pixels.setY(0);
    return pixels;
}

WheelMove WheelReader::read(const QWheelEvent& event, int rowHeight)
{
    const bool begins = event.phase() == Qt::ScrollBegin || !m_sinceLast.isValid() ||
                        m_sinceLast.hasExpired(gesturePause);
    m_sinceLast.start();
    m_rolling = event.phase() == Qt::ScrollMomentum;
    if (begins) {
        m_gesture = {};
        m_zoomRest = 0;
    }
    if (!m_rolling)
        m_interrupted = false;
    if (m_interrupted)
        return {};

    const bool touchpad = isTouchpad(event);
    QPointF pixels = event.pixelDelta();
    if (pixels.isNull()) {
        const double perUnit = double(rowHeight) * QApplication::wheelScrollLines() / anglePerNotch;
        pixels = QPointF(event.angleDelta()) * perUnit;
    }
    if (event.modifiers() & Qt::ControlModifier) {
        m_rest = {};
        if (m_rolling)
            return {};
        m_zoomRest += event.angleDelta().y() != 0
                          ? event.angleDelta().y()
                          : int(pixels.y() * anglePerNotch / pixelsPerZoomStep);
        const int steps = m_zoomRest / anglePerNotch;
        m_zoomRest -= steps * anglePerNotch;
        return {{}, steps};
    }
    if (touchpad)
        pixels = straightened(pixels);
    if (event.modifiers() & Qt::ShiftModifier && pixels.x() == 0)
        pixels = pixels.transposed();
    m_rest += pixels;
    const QPoint whole(wholePart(m_rest.x()), wholePart(m_rest.y()));
    m_rest -= whole;
    return {-whole, 0};
}

void WheelReader::interrupt()
{
    m_interrupted = m_rolling;
    m_rest = {};
}

} // namespace quillory
