#pragma once

#include "view/ScrollScale.h"
#include "view/TextViewport.h"
#include "view/WheelReader.h"

#include <QObject>

class QAbstractScrollArea;

namespace quillory {

/// Scrolls a text view by its bars, by wheel and by pixels, and keeps the bars true. A click beside
/// the handle of a bar jumps there.
class TextViewScrolling : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this.
    TextViewScrolling(QAbstractScrollArea& area, TextViewport& viewport);

    /// Brings the bars up to date with what is in sight.
    void updateBars();
    /// The area's scrollContentsBy(): the user has moved a bar.
    void followBars(int dx, int dy);
    /// Exactly by so many logical pixels, right and down when positive, as far as there is text.
    void by(QPoint pixels);
    void wheel(const QWheelEvent& event);
    /// A key or a button ends what rolls on by itself.
    void stopRolling() { m_wheel.interrupt(); }

Q_SIGNALS:
    void scrolled();
    /// The wheel was turned with Ctrl held; positive \a steps are to enlarge the text.
    void zoomRequested(int steps);

private:
    void followBarAction(int action);

    QAbstractScrollArea& m_area;
    TextViewport& m_viewport;
    WheelReader m_wheel;
    ScrollScale m_vertical;
    ScrollScale m_horizontal;
    bool m_movingBars = false;
};

} // namespace quillory
