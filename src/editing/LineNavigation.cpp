#include "editing/LineNavigation.h"

#include "editing/QPTextView.h"

namespace quillory {

std::optional<TextRange> lineWithNumber(const TextSnapshot& text, qint64 number)
{
    const qint64 last = text.lineCount();
    const bool isOpen = !text.line(LineIndex(last - 1)).isEmpty(); // has no break
    if (number < 1 || number > last + (isOpen ? 1 : 0))
        return std::nullopt;
    return text.line(LineIndex(std::min(number, last) - 1));
}

void LineNavigation::goToLineVoid(qint64 number)
{
    const std::optional<TextRange> line = lineWithNumber(m_textView.string(), number);
    if (!line)
        return;
    m_textView.setSelection({line->end(), line->location});
    Q_EMIT lineSelected(*line);
}

} // namespace quillory
