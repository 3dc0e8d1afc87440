#include "text/TextStorage.h"

namespace quillory {

void TextStorage::replaceCharactersInRange(TextRange range, const TextSnapshot& replacement)
{
    range = range.clampedTo(length());
    if (range.isEmpty() && replacement.isEmpty())
        return;
    m_text = m_text.replacing(range, replacement);
    m_changedInBatch = true;
    ++m_batchDepth; // so that an edit made by a receiver does not end the batch before this one
    Q_EMIT edited({range, replacement.length()});
    endEditing();
}

void TextStorage::replaceCharactersInRange(TextRange range, QStringView replacement)
{
    replaceCharactersInRange(range, TextSnapshot(replacement));
}

void TextStorage::replaceCharacters(std::span<const TextEdit> edits)
{
    m_text = m_text.replacing(edits);
    ++m_batchDepth;
    TextOffset shift = 0;
    for (const TextEdit& edit : edits) {
        const TextOffset inserted = edit.replacement.length();
        if (edit.range.isEmpty() && inserted == 0)
            continue;
        m_changedInBatch = true;
        Q_EMIT edited({{edit.range.location + shift, edit.range.length}, inserted});
        shift += inserted - edit.range.length;
    }
    endEditing();
}

void TextStorage::beginEditing()
{
    ++m_batchDepth;
}

void TextStorage::endEditing()
{
    Q_ASSERT(m_batchDepth > 0);
    if (--m_batchDepth == 0 && std::exchange(m_changedInBatch, false))
        Q_EMIT editingEnded();
}

} // namespace quillory
