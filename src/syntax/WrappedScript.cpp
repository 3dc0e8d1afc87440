#include "syntax/WrappedScript.h"

namespace quillory {

bool isElementEndTag(std::u16string_view units, TextOffset letter)
{
    if (letter < 2)
        return false;
    const QStringView rest(units.data() + letter - 2, qsizetype(units.size()) - letter + 2);
    return rest.startsWith(QLatin1StringView("</script>"), Qt::CaseInsensitive) ||
           rest.startsWith(QLatin1StringView("</style>"), Qt::CaseInsensitive);
}

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
    constexpr TextOffset longestTag = 9;
    const TextOffset letter = letterFrom(offset);
    if (letter < 2 || letter >= m_reader.length())
        return -1;
    const TextOffset end = std::min(letter - 2 + longestTag, m_reader.length());
    const QString around = m_reader.text().string(TextRange::between(letter - 2, end));
    return isElementEndTag(around.toStdU16String(), 2) ? letter : -1;
}

} // namespace quillory
