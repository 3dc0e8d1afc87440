#include "view/TextClipboard.h"

#include "editing/QPTextView.h"
#include "editing/SelectionCommands.h"
#include "view/PendingPaste.h"
#include "view/SnapshotMimeData.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace quillory {

namespace {

constexpr qsizetype longText = 500'000; // bytes or units, made ready in a few milliseconds

} // namespace

void TextClipboard::copy(const QFont& font, QClipboard::Mode mode) const
{
    QClipboard& clipboard = *QGuiApplication::clipboard();
    if (mode == QClipboard::Selection && !clipboard.supportsSelection())
        return;
    JoinedText text = joinedSelections(m_editor.string(), m_editor.selections());
    if (!text.text.isEmpty())
        clipboard.setMimeData(new SnapshotMimeData(std::move(text), font), mode);
}

void TextClipboard::copyRichText(const QString& html) const
{
    JoinedText text = joinedSelections(m_editor.string(), m_editor.selections());
    if (!text.text.isEmpty())
        QGuiApplication::clipboard()->setMimeData(new SnapshotMimeData(std::move(text), html));
}

void TextClipboard::cut(const QFont& font)
{
    if (!m_editor.isEditable() || m_editor.selectedText().isEmpty())
        return;
    copy(font);
    m_editor.deleteSelection();
    m_editor.undoManager().setActionName(QCoreApplication::translate("TextClipboard", "Cut"));
}

void TextClipboard::paste(QClipboard::Mode mode, const std::function<void()>& done)
{
    const QClipboard& clipboard = *QGuiApplication::clipboard();
    if (!m_editor.isEditable() || (mode == QClipboard::Selection && !clipboard.supportsSelection()))
        return;
    const QMimeData* data = clipboard.mimeData(mode);
    if (!data || !offersText(*data))
        return;
    const QString name = QCoreApplication::translate("TextClipboard", "Paste");
    if (const auto* own = qobject_cast<const SnapshotMimeData*>(data)) {
        // A copy: what is pasted over may be what owns the clipboard's parts.
        const TextSnapshot text = own->text();
        const std::vector<TextRange> parts = own->parts();
        pasteText(m_editor, text, parts, name);
        done();
        return;
    }
    PastedText text = pastedText(*data);
    if (text.size() < longText) {
        pasteText(m_editor, text.decoded(), {}, name);
        done();
        return;
    }
    auto* pending = new PendingPaste(m_editor, name);
    QObject::connect(pending, &PendingPaste::finished, &m_editor, done);
    pending->start(std::move(text));
}

} // namespace quillory
