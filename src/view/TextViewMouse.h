#pragma once

#include "editing/QPTextView.h"

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QPoint>

class QMouseEvent;

namespace quillory {

class TextViewWidget;

/// Selecting with the mouse: clicks set the caret, double clicks select words, triple clicks lines,
/// drags extend by what was clicked, and scroll when they leave the view. Shift extends, Ctrl adds
/// a caret, the middle button inserts the primary selection.
class TextViewMouse : public QObject
{
    Q_OBJECT

public:
    explicit TextViewMouse(TextViewWidget& view) : m_view(view) {}

    void press(const QMouseEvent& event);
    void doubleClick(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release(const QMouseEvent& event);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void start(TextOffset offset, SelectionGranularity granularity, bool adding);
    void extendTo(TextOffset offset);
    void scrollWhileOutside();

    TextViewWidget& m_view;
    SelectionGranularity m_granularity = SelectionGranularity::Character;
    TextRange m_origin;              ///< what the press selected
    std::vector<Selection> m_others; ///< that stay beside the one being dragged
    bool m_dragging = false;
    QPoint m_position;
    QElapsedTimer m_sinceDoubleClick;
    QPoint m_doubleClickPosition;
    QBasicTimer m_autoscroll; ///< runs while a drag is held outside
};

} // namespace quillory
