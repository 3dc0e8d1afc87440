#include "view/TextClipboard.h"

#include "editing/QPTextView.h"
#include "view/SnapshotMimeData.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace quillory {

namespace {

const QMimeData* contents(QClipboard::Mode mode)
{
    const QClipboard& clipboard = *QGuiApplication::clipboard();
    if (mode == QClipboard::Selection && !clipboard.supportsSelection())
        return nullptr;
    return clipboard.mimeData(mode);
}

} // namespace

void TextClipboard::copy(QClipboard::Mode mode) const
{
    QClipboard& clipboard = *QGuiApplication::clipboard();
    if (mode == QClipboard::Selection && !clipboard.supportsSelection())
        return;
    TextSnapshot text = m_editor.selectedText();
    if (!text.isEmpty())
        clipboard.setMimeData(new SnapshotMimeData(std::move(text)), mode);
}

void TextClipboard::cut()
{
    copy();
    m_editor.deleteSelection();
    m_editor.undoManager().setActionName(QCoreApplication::translate("TextClipboard", "Cut"));
}

void TextClipboard::paste(QClipboard::Mode mode)
{
    const QMimeData* data = contents(mode);
    if (data && data->hasText())
        m_editor.replaceSelections(SnapshotMimeData::textOf(*data),
                                   QCoreApplication::translate("TextClipboard", "Paste"));
}

bool TextClipboard::canPaste(QClipboard::Mode mode)
{
    const QMimeData* data = contents(mode);
    return data && data->hasText();
}

} // namespace quillory
