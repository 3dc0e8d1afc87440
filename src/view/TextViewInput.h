#pragma once

#include "text/TextSnapshot.h"
#include "view/PreeditStyle.h"

#include <QVariant>
#include <optional>

class QInputMethodEvent;
class QMouseEvent;

namespace quillory {

class QPTextView;
class TextViewWidget;

/// What an input method does to a text view, and what it is told of it.
///
/// Composed text stands at the primary caret, wherever that goes, and is no part of the text; what
/// is committed goes to every caret. Composing over selected text deletes it at once. When the
/// composition ends, it comes back first: a commit then replaces it in one undo step, and a
/// composition that is given up leaves it as it was.
class TextViewInput
{
public:
    explicit TextViewInput(TextViewWidget& view) : m_view(view) {}

    void handle(const QInputMethodEvent& event);
    QVariant query(Qt::InputMethodQuery query) const;
    const PreeditStyle& preeditStyle() const { return m_style; }
    bool isComposing() const;
    /// The caret in the viewport, which stands in the composed text where there is some.
    QRect caretRect() const;

    /// To be called after every edit and change of the selections.
    void followCaret();
    /// Clicks on composed text are the input method's, which this answers; others end composing.
    bool takesMouse(const QMouseEvent& event);
    /// Has the input method commit what is composed; what it keeps back is given up.
    void finish();

private:
    QPTextView& editor() const;
    void commit(const QInputMethodEvent& event);
    void clearSelection();
    void restoreSelection();
    void setStyle(const QInputMethodEvent& event);
    void setSelection(const QInputMethodEvent& event);
    void showPreeditCaret();
    QRect rectFor(TextOffset offset) const;

    TextViewWidget& m_view;
    PreeditStyle m_style;
    std::optional<TextSnapshot> m_cleared; ///< the text without what was selected
};

} // namespace quillory
