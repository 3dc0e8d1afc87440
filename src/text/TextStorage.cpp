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
