#pragma once

#include "editing/TypewriterScroll.h"

#include <QObject>

namespace quillory {

class TextViewWidget;

/// Scrolls a text view by the rules of typewriter scrolling, without laying out more than comes
/// into sight. Sideways it goes back to the start of the lines, unless the caret would not be seen
/// there.
class TypewriterScrolling : public QObject
{
    Q_OBJECT

public:
    /// \a view outlives this.
    explicit TypewriterScrolling(TextViewWidget& view, QObject* parent = nullptr)
        : QObject(parent), m_view(view)
    {}

    /// While on, the text's last row can be scrolled up to the anchor, too.
    void setOn(bool on);
    /// After a change of the text.
    void constrainScroll();
    /// When the view is set up.
    void simpleScroll();

private:
    void anchor(const AnchoredRow& row);

    TextViewWidget& m_view;
};

} // namespace quillory
