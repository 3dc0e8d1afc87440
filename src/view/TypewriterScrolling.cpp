#include "view/TypewriterScrolling.h"

#include "view/TextViewWidget.h"

namespace quillory {

namespace {

TypedKey typedKey(int key)
{
    switch (key) {
    case Qt::Key_Space:
        return TypedKey::Space;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return TypedKey::Return;
    default:
        return TypedKey::Other;
    }
}

} // namespace

void TypewriterScrolling::setOn(bool on)
{
    m_view.textViewport().setScrollsPastEnd(on);
    m_view.scrollBy(0, 0); // has it notice
}

void TypewriterScrolling::constrainScroll()
{
    const QPTextView& editor = m_view.editor();
    const auto row =
        constrainScrollRow(editor.string(), editor.selectedRange(), typedKey(m_view.pressedKey()));
    if (row)
        anchor(*row);
}

void TypewriterScrolling::simpleScroll()
{
    const QPTextView& editor = m_view.editor();
    m_view.ensureVisible(editor.primarySelection().head);
    anchor(simpleScrollRow(editor.selectedRange()));
}

void TypewriterScrolling::anchor(const AnchoredRow& row)
{
    TextViewport& viewport = m_view.textViewport();
    const int edge = row.bottomEdge ? viewport.rowHeight() : 0;
    viewport.showAt(row.character, anchorHeight(viewport.size().height()) - edge);
    viewport.returnSideways(
        m_view.caretAffinity().placeOf(m_view.editor().primarySelection().head));
    m_view.scrollBy(0, 0); // has it notice
}

} // namespace quillory
