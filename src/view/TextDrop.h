#pragma once

#include "text/TextRange.h"
#include "view/Autoscroll.h"

#include <QRect>
#include <optional>

class QDragMoveEvent;
class QDropEvent;

namespace quillory {

class TextViewWidget;

/// Takes what is dragged over a text view: shows where text would go, scrolls near the edges, and
/// inserts and selects what is dropped. Text that was dragged from the view itself moves, with Ctrl
/// it is copied. Local files are for the window to open; other addresses are text.
class TextDrop
{
public:
    explicit TextDrop(TextViewWidget& view);

    /// The drag came in or moved.
    void move(QDragMoveEvent& event);
    void leave();
    void drop(QDropEvent& event);

    /// Where the caret of the drop is to be painted; empty when there is none in sight.
    QRect caretRect() const;

private:
    bool accept(QDropEvent& event);
    void showCaret(std::optional<TextOffset> offset);

    TextViewWidget& m_view;
    std::optional<TextOffset> m_caret;
    Autoscroll m_autoscroll;
};

} // namespace quillory
