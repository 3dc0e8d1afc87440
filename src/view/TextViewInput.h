#pragma once

#include <QVariant>

class QInputMethodEvent;

namespace quillory {

class TextViewWidget;

/// What an input method does to a text view, and what it is told of it.
class TextViewInput
{
public:
    explicit TextViewInput(TextViewWidget& view) : m_view(view) {}

    void handle(const QInputMethodEvent& event);
    QVariant query(Qt::InputMethodQuery query) const;
    /// The caret's place in the text being composed.
    int preeditCaret() const { return m_preeditCaret; }

private:
    TextViewWidget& m_view;
    int m_preeditCaret = 0;
};

} // namespace quillory
