#pragma once

#include "view/TextClipboard.h"

namespace quillory {

class TextViewWidget;

/// The commands of a text view that menus have too. Those that change something show the caret.
class TextViewCommands
{
public:
    explicit TextViewCommands(TextViewWidget& view);

    void copy() const;
    /// Copies the selected text, and \a html as what it looks like.
    void copyRichText(const QString& html) const { m_clipboard.copyRichText(html); }
    void cut();
    void paste() { pasteFrom(QClipboard::Clipboard); }
    void pastePrimarySelection() { pasteFrom(QClipboard::Selection); }
    void publishPrimarySelection() const;
    void selectAll();
    void undo();
    void redo();
    void addCaretAbove() { addCaret(-1); }
    void addCaretBelow() { addCaret(1); }

private:
    void pasteFrom(QClipboard::Mode mode);
    void addCaret(int rows);

    TextViewWidget& m_view;
    TextClipboard m_clipboard;
};

} // namespace quillory
