#include "view/TextDrop.h"

#include "editing/QPTextView.h"
#include "editing/SelectionCommands.h"
#include "view/PastedText.h"
#include "view/TextViewWidget.h"

#include <QCoreApplication>
#include <QDropEvent>

namespace quillory {

TextDrop::TextDrop(TextViewWidget& view)
    : m_view(view), m_autoscroll(view, [this](QPoint point) {
          if (m_caret)
              showCaret(m_view.offsetAtPoint(point));
      })
{}

/// Accepts what is dragged if it can be dropped where it is; true when it is text.
bool TextDrop::accept(QDropEvent& event)
{
    const QMimeData& data = *event.mimeData();
    if (!localFiles(data).isEmpty()) {
        event.setDropAction(Qt::CopyAction);
        event.accept();
        return false;
    }
    const TextOffset offset = m_view.offsetAtPoint(event.position().toPoint());
    const bool isOwn = event.source() == m_view.viewport();
    if (!offersText(data) || !m_view.editor().isEditable() ||
        (isOwn && isInSelectedText(m_view.editor(), offset))) {
        event.ignore();
        return false;
    }
    // Moving is for text of this program; others may offer it, but mean it for files.
    const bool moving = event.source() && event.possibleActions() & Qt::MoveAction &&
                        !(event.modifiers() & Qt::ControlModifier);
    event.setDropAction(moving ? Qt::MoveAction : Qt::CopyAction);
    event.accept();
    return true;
}

void TextDrop::move(QDragMoveEvent& event)
{
    const QPoint position = event.position().toPoint();
    const bool isText = accept(event);
    showCaret(isText ? std::optional(m_view.offsetAtPoint(position)) : std::nullopt);
    if (!offersText(*event.mimeData()) || !m_view.editor().isEditable())
        return;
    m_autoscroll.setBorder(m_view.fontMetrics().height());
    m_autoscroll.follow(position);
}

void TextDrop::leave()
{
    m_autoscroll.stop();
    showCaret({});
}

void TextDrop::drop(QDropEvent& event)
{
    leave();
    const QMimeData& data = *event.mimeData();
    const bool isText = accept(event);
    if (!isText && !event.isAccepted())
        return;
    if (!isText) {
        if (const QStringList files = localFiles(data); !files.isEmpty())
            Q_EMIT m_view.filesDropped(files);
        return;
    }
    const bool isMove = event.dropAction() == Qt::MoveAction;
    const bool isOwn = event.source() == m_view.viewport();
    const TextOffset offset = m_view.offsetAtPoint(event.position().toPoint());
    const QString name = isOwn && isMove ? QCoreApplication::translate("TextDrop", "Move")
                                         : QCoreApplication::translate("TextDrop", "Drop");
    if (!dropText(m_view.editor(), textOf(data), offset, isOwn && isMove, name)) {
        event.ignore();
        return;
    }
    m_view.setFocus(Qt::MouseFocusReason);
    m_view.activateWindow();
    m_view.showCaret();
}

QRect TextDrop::caretRect() const
{
    if (!m_caret)
        return {};
    const QRect caret = m_view.caretRectAt(*m_caret);
    return caret.isEmpty() ? QRect() : caret.adjusted(0, 0, 1, 0);
}

void TextDrop::showCaret(std::optional<TextOffset> offset)
{
    if (m_caret == offset)
        return;
    m_view.viewport()->update(caretRect().adjusted(-1, 0, 1, 0));
    m_caret = offset;
    m_view.viewport()->update(caretRect().adjusted(-1, 0, 1, 0));
}

} // namespace quillory
