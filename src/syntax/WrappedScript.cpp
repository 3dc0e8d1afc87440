#include "syntax/WrappedScript.h"

namespace quillory {

TextOffset WrappedScript::letterFrom(TextOffset offset)
{
    if (m_asked >= 0 && offset >= m_asked && offset <= m_letter)
        return m_letter;
    m_asked = offset;
    while (offset < m_reader.length()) {
        const char32_t character = m_reader.codePointAt(offset);
        if (m_letters.contains(character))
            break;
        offset += character > 0xFFFF ? 2 : 1;
    }
    m_letter = offset;
    return offset;
}

TextOffset WrappedScript::endTagAfter(TextOffset offset)
{
    const TextOffset letter = letterFrom(offset);
    if (letter < 2 || letter >= m_reader.length())
        return -1;
    for (const QLatin1StringView tag :
         {QLatin1StringView("</script>"), QLatin1StringView("</style>")}) {
        const TextRange range{letter - 2, tag.size()};
        if (range.end() <= m_reader.length() &&
            m_reader.text().string(range).compare(tag, Qt::CaseInsensitive) == 0)
            return letter;
    }
    return -1;
}

} // namespace quillory
