#pragma once

#include "editing/QPTextView.h"
#include "view/Autoscroll.h"

#include <QElapsedTimer>
#include <QPoint>

class QMouseEvent;

namespace quillory {

class TextViewWidget;

/// Selecting with the mouse: clicks set the caret, double clicks select words, or a bracket with
/// its partner and all between, triple clicks lines, drags extend by characters, words or lines,
/// and scroll when they leave the view. Shift extends, Ctrl adds a selection or takes the clicked
/// one away, Alt selects a rectangle, the middle button inserts the primary selection. A press on
/// selected text is the beginning of its drag, or, when it does not move, sets the caret at the
/// release.
class TextViewMouse
{
public:
    explicit TextViewMouse(TextViewWidget& view);

    void press(const QMouseEvent& event);
    /// Beside the text: selects the line there. With Shift it selects the lines from those of the
    /// primary selection on, with Ctrl it adds the line. Drags extend by lines.
    void pressLine(const QMouseEvent& event);
    void doubleClick(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release(const QMouseEvent& event);

private:
    enum class Action
    {
        None,
        Select,
        SelectColumn,
        Grab ///< of selected text, not yet a drag
    };

    TextOffset characterAt(QPoint point) const;
    bool isOnSelectedText(QPoint point) const;
    void start(TextOffset offset, SelectionGranularity granularity, bool adding);
    void extendTo(QPoint point);
    void extendColumnTo(QPoint point);
    /// \a offset is where the mouse, at \a point, is.
    void extendToOffset(TextOffset offset, QPoint point);

    TextViewWidget& m_view;
    Action m_action = Action::None;
    SelectionGranularity m_granularity = SelectionGranularity::Character;
    TextRange m_origin;              ///< what the press selected
    std::vector<Selection> m_others; ///< that stay beside the one being dragged
    bool m_othersByWords = false;    ///< as far as they are no carets
    QPoint m_pressed;
    QElapsedTimer m_sinceDoubleClick;
    QPoint m_doubleClickPosition;
    Autoscroll m_autoscroll;
};

} // namespace quillory
