#pragma once

#include <QClipboard>

namespace quillory {

class QPTextView;

/// The clipboard and, where the platform has one, the primary selection (QClipboard::Selection).
/// Both hold plain text, with its line breaks as they are.
class TextClipboard
{
public:
    explicit TextClipboard(QPTextView& editor) : m_editor(editor) {}

    /// Without selected text nothing is copied, and the clipboard keeps what it has.
    void copy(QClipboard::Mode mode = QClipboard::Clipboard) const;
    void cut();
    void paste(QClipboard::Mode mode = QClipboard::Clipboard);
    static bool canPaste(QClipboard::Mode mode = QClipboard::Clipboard);

private:
    QPTextView& m_editor;
};

} // namespace quillory
