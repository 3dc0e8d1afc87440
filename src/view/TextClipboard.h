#pragma once

#include "view/PastedText.h"

#include <QClipboard>
#include <functional>

class QFont;

namespace quillory {

class QPTextView;

/// The clipboard and, where the platform has one, the primary selection (QClipboard::Selection).
/// What is copied within the program is pasted as it was, at no cost however long it is. The text
/// of other programs gets line feeds for its line breaks; long text is made ready aside.
class TextClipboard
{
public:
    explicit TextClipboard(QPTextView& editor) : m_editor(editor) {}

    /// Several selections come with line breaks between them. Without selected text nothing is
    /// copied, and the clipboard keeps what it has. \a font is what rich text names.
    void copy(const QFont& font, QClipboard::Mode mode = QClipboard::Clipboard) const;
    /// The same, with \a html, a fragment of a page, as its rich form.
    void copyRichText(const QString& html) const;
    void cut(const QFont& font);
    /// Calls \a done when the text was inserted, unless the editor is gone by then. Another program
    /// that does not answer at once is waited for on another thread, on an X server.
    void paste(QClipboard::Mode mode, const std::function<void()>& done);

private:
    void pasteData(const QMimeData& data, const std::function<void()>& done);
    void pasteForeign(PastedText text, const std::function<void()>& done);
    void pasteLater(std::function<PastedText()> text, const std::function<void()>& done);

    QPTextView& m_editor;
};

} // namespace quillory
