#pragma once

#include <QElapsedTimer>
#include <QPointF>

class QWheelEvent;

namespace quillory {

/// What a wheel or a touchpad asks a text view for.
struct WheelMove
{
    QPoint pixels;     ///< by how much to scroll, right and down positive
    int zoomSteps = 0; ///< by how many points to enlarge the text
    bool operator==(const WheelMove&) const = default;
};

/// Makes whole pixels and whole steps of wheel events, however finely a device divides them.
///
/// Touchpads send pixels, which are taken as they are; wheels send eighths of a degree, of which
/// 120 scroll as many rows as the desktop says. Shift scrolls sideways, Ctrl zooms. A finger on a
/// touchpad never moves quite straight, so while it moves mostly along one axis the other rests.
/// After interrupt(), the rest of a kinetic scroll is left out, as is a zoom by it altogether: who
/// presses Ctrl while the text still rolls wants no other size.
class WheelReader
{
public:
    /// \a rowHeight: in logical pixels.
    WheelMove read(const QWheelEvent& event, int rowHeight);
    /// A key or a button was pressed.
    void interrupt();

private:
    QPointF straightened(QPointF pixels);

    QPointF m_rest; ///< fractions of pixels not yet scrolled
    int m_zoomRest = 0;
    QPointF m_gesture; ///< how far the fingers moved along each axis, without the signs
    QElapsedTimer m_sinceLast;
    bool m_rolling = false;
    bool m_interrupted = false;
};

} // namespace quillory
