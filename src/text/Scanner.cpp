#include "text/Scanner.h"

#include "text/TextSearch.h"

namespace quillory {

void Scanner::setScanLocation(TextOffset location)
{
    m_location = std::clamp<TextOffset>(location, 0, m_reader.length());
}

bool Scanner::isAtEnd()
{
    return afterSkipped() == m_reader.length();
}

bool Scanner::scanString(QStringView string)
{
    const TextOffset begin = afterSkipped();
    if (string.size() > m_reader.length() - begin)
        return false;
    for (TextOffset i = 0; i < string.size(); ++i) {
        if (m_reader.at(begin + i) != string[i].unicode())
            return false;
    }
    return take(begin, begin + string.size());
}

bool Scanner::scanUpToString(QStringView string)
{
    const TextOffset begin = afterSkipped();
    const TextOffset found = find(text(), string, TextRange::between(begin, m_reader.length()));
    return take(begin, found < 0 ? m_reader.length() : found);
}

bool Scanner::scanCharactersFromSet(const CharacterSet& set)
{
    const TextOffset begin = afterSkipped();
    return take(begin, endOfRun(begin, set, true));
}

bool Scanner::scanUpToCharactersFromSet(const CharacterSet& set)
{
    const TextOffset begin = afterSkipped();
    return take(begin, endOfRun(begin, set, false));
}

TextOffset Scanner::endOfRun(TextOffset from, const CharacterSet& set, bool inSet)
{
    while (from < m_reader.length()) {
        const char32_t character = m_reader.codePointAt(from);
        if (set.contains(character) != inSet)
            break;
        from += character > 0xFFFF ? 2 : 1;
    }
    return from;
}

bool Scanner::take(TextOffset begin, TextOffset end)
{
    if (begin == end)
        return false;
    m_scanned = TextRange::between(begin, end);
    m_location = end;
    return true;
}

} // namespace quillory
