#include "view/PendingPaste.h"

#include "editing/SelectionCommands.h"
#include "foundation/Background.h"

namespace quillory {

PendingPaste::PendingPaste(QPTextView& editor, QString actionName)
    : QObject(&editor), m_editor(editor), m_actionName(std::move(actionName)),
      m_targets(editor.selections())
{
    connect(&editor.textStorage(), &TextStorage::edited, this, &PendingPaste::followEdit);
}

void PendingPaste::start(std::function<PastedText()> text)
{
    runInBackground(
        this, [text = std::move(text)] { return text().decoded(); },
        [this](const TextSnapshot& decoded) { insert(decoded); });
}

void PendingPaste::followEdit(const TextChange& change)
{
    const TextRange replaced = change.replaced;
    for (Selection& target : m_targets) {
        const TextRange range = target.range();
        if (replaced.location < range.end() && range.location < replaced.end())
            m_lost = true;
        target = {mapped(target.anchor, change), mapped(target.head, change)};
    }
}

void PendingPaste::insert(const TextSnapshot& text)
{
    disconnect(&m_editor.textStorage(), nullptr, this, nullptr);
    if (text.isEmpty()) {
        Q_EMIT m_editor.beep();
    } else if (!m_lost && m_editor.isEditable()) {
        m_editor.setSelections(m_targets, m_targets.size() - 1);
        pasteText(m_editor, text, {}, m_actionName);
        Q_EMIT finished();
    }
    deleteLater();
}

} // namespace quillory
