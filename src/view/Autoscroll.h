#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QPointF>
#include <functional>

namespace quillory {

class TextViewWidget;

/// Scrolls a text view while the mouse is held outside of it, the further outside the faster up to
/// a limit, at a speed that does not depend on how often it gets to run. Where the mouse cannot get
/// outside, at the screen's edge, the outermost few pixels count as outside.
class Autoscroll : public QObject
{
    Q_OBJECT

public:
    /// \a scrolled hears of each step, with the place in the viewport nearest to the mouse.
    Autoscroll(TextViewWidget& view, std::function<void(QPoint)> scrolled)
        : m_view(view), m_scrolled(std::move(scrolled))
    {}

    /// Pixels inside the edges that count as outside.
    void setBorder(int border) { m_border = border; }
    /// The mouse is at \a position, of the viewport.
    void follow(QPoint position);
    void stop() { m_timer.stop(); }
    bool isActive() const { return m_timer.isActive(); }

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    QPointF speed() const;

    TextViewWidget& m_view;
    std::function<void(QPoint)> m_scrolled;
    int m_border = 0;
    QPoint m_position;
    QPointF m_rest; ///< fractions of pixels not yet scrolled
    QBasicTimer m_timer;
    QElapsedTimer m_sinceStep;
};

} // namespace quillory
