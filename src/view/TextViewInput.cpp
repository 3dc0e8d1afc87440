#include "view/TextViewInput.h"

#include "editing/QPTextView.h"
#include "view/TextViewWidget.h"

#include <QInputMethodEvent>

namespace quillory {

namespace {

// An input method is shown the caret's line, of a long one at most so much on either side.
constexpr TextOffset surroundingReach = 1000;

TextRange surrounding(const QPTextView& editor)
{
    const TextSnapshot& text = editor.string();
    const TextOffset head = editor.primarySelection().head;
    const TextRange line = text.lineContent(text.lineAt(head));
    return TextRange::between(std::max(line.location, head - surroundingReach),
                              std::max(head, std::min(line.end(), head + surroundingReach)));
}

} // namespace

void TextViewInput::handle(const QInputMethodEvent& event)
{
    QPTextView& editor = m_view.editor();
    m_preeditCaret = int(event.preeditString().size());
    for (const QInputMethodEvent::Attribute& attribute : event.attributes()) {
        if (attribute.type == QInputMethodEvent::Cursor)
            m_preeditCaret = attribute.start;
    }
    m_view.setPreedit({});
    if (!editor.isEditable())
        return;
    if (event.replacementLength() > 0) {
        const TextOffset start = editor.primarySelection().head + event.replacementStart();
        editor.setSelectedRange({start, event.replacementLength()});
    }
    if (!event.commitString().isEmpty() || event.replacementLength() > 0)
        editor.insertText(event.commitString());
    else if (!event.preeditString().isEmpty() && !editor.primarySelection().isCaret())
        editor.deleteSelection();
    m_view.setPreedit({editor.primarySelection().head, event.preeditString()});
    m_view.showCaret();
}

QVariant TextViewInput::query(Qt::InputMethodQuery query) const
{
    const QPTextView& editor = m_view.editor();
    const Selection selection = editor.primarySelection();
    const auto inSurroundings = [&](TextOffset offset) {
        const TextRange range = surrounding(editor);
        return int(std::clamp(offset, range.location, range.end()) - range.location);
    };
    switch (query) {
    case Qt::ImEnabled:
        return editor.isEditable();
    case Qt::ImCursorRectangle:
        return m_view.caretRect();
    case Qt::ImFont:
        return m_view.textFont();
    case Qt::ImHints:
        return int(Qt::ImhMultiLine | Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText);
    case Qt::ImCursorPosition:
        return inSurroundings(selection.head);
    case Qt::ImAnchorPosition:
        return inSurroundings(selection.anchor);
    case Qt::ImSurroundingText:
        return editor.string().string(surrounding(editor));
    case Qt::ImCurrentSelection: {
        TextRange range = selection.range();
        range.length = std::min(range.length, surroundingReach);
        return editor.string().string(range);
    }
    case Qt::ImAbsolutePosition:
        return selection.head;
    default:
        return {};
    }
}

} // namespace quillory
