#include "view/TextViewCommands.h"

#include "view/TextViewWidget.h"

#include <QPointer>

namespace quillory {

TextViewCommands::TextViewCommands(TextViewWidget& view) : m_view(view), m_clipboard(view.editor())
{}

void TextViewCommands::copy() const
{
    m_clipboard.copy(m_view.textFont());
}

void TextViewCommands::publishPrimarySelection() const
{
    m_clipboard.copy(m_view.textFont(), QClipboard::Selection);
}

void TextViewCommands::cut()
{
    m_clipboard.cut(m_view.textFont());
    m_view.showCaret();
}

void TextViewCommands::pasteFrom(QClipboard::Mode mode)
{
    m_clipboard.paste(mode, [view = QPointer(&m_view)] {
        if (view)
            view->showCaret();
    });
}

void TextViewCommands::selectAll()
{
    m_view.editor().selectAll();
    publishPrimarySelection();
}

void TextViewCommands::undo()
{
    m_view.editor().undo();
    m_view.showCaret();
}

void TextViewCommands::redo()
{
    m_view.editor().redo();
    m_view.showCaret();
}

void TextViewCommands::addCaret(int rows)
{
    m_view.columnSelection().addCaret(rows);
    m_view.showCaret();
}

} // namespace quillory
