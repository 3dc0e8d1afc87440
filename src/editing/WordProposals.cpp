#include "editing/WordProposals.h"

#include "editing/PartialWord.h"
#include "text/CharacterSet.h"
#include "text/TextReader.h"
#include "text/TextUnits.h"

#include <QSet>

namespace quillory {

namespace {

/// Longer runs of name characters are data rather than names, in UTF-16 code units.
constexpr TextOffset longestName = 128;

/// Goes through the names of a text from one place in one direction.
class NameWalk
{
public:
    NameWalk(const TextSnapshot& text, TextOffset start, TextOffset limit)
        : m_reader(text), m_at(start), m_limit(limit)
    {}

    /// The next name, whole; an empty range where there is none within the limit.
    TextRange next() { return m_limit < m_at ? backward() : forward(); }

private:
    TextRange backward()
    {
        while (m_at > m_limit && !isNameCharacter(m_reader.codePointBefore(m_at)))
            m_at -= unitsBefore();
        const TextOffset end = m_at;
        while (m_at > m_limit && isNameCharacter(m_reader.codePointBefore(m_at)))
            m_at -= unitsBefore();
        return TextRange::between(m_at, end);
    }

    TextRange forward()
    {
        while (m_at < m_limit && !isNameCharacter(m_reader.codePointAt(m_at)))
            m_at += unitsAfter();
        const TextOffset start = m_at;
        while (m_at < m_limit && isNameCharacter(m_reader.codePointAt(m_at)))
            m_at += unitsAfter();
        return TextRange::between(start, m_at);
    }

    TextOffset unitsBefore() { return unitsOf(m_reader.codePointBefore(m_at)); }
    TextOffset unitsAfter() { return unitsOf(m_reader.codePointAt(m_at)); }

    TextReader m_reader;
    TextOffset m_at;
    TextOffset m_limit;
};

} // namespace

QStringList wordProposals(const TextSnapshot& text, TextRange partialWord, TextOffset reach,
                          qsizetype most)
{
    TextReader reader(text);
    // The name that is being typed may begin before the part that counts, and end behind it.
    TextOffset start = partialWord.location;
    while (start > 0 && partialWord.location - start < longestName &&
           isNameCharacter(reader.codePointBefore(start)))
        start -= unitsOf(reader.codePointBefore(start));
    TextOffset end = partialWord.end();
    while (end < text.length() && end - partialWord.end() < longestName &&
           isNameCharacter(reader.codePointAt(end)))
        end += unitsOf(reader.codePointAt(end));

    const QString typed = text.string(partialWord);
    QStringList names;
    QSet<QString> known{typed};
    const auto take = [&](TextRange range) {
        if (range.length <= typed.size() || range.length > longestName ||
            CharacterSet::decimalDigit().contains(reader.codePointAt(range.location)))
            return;
        const QString name = text.string(range);
        if (!name.startsWith(typed, Qt::CaseInsensitive) || known.contains(name))
            return;
        known.insert(name);
        names.append(name);
    };

    NameWalk before(text, start, std::max<TextOffset>(0, start - reach));
    NameWalk after(text, end, std::min(text.length(), end + reach));
    TextRange previous = before.next();
    TextRange following = after.next();
    while (names.size() < most && (!previous.isEmpty() || !following.isEmpty())) {
        const bool isBefore =
            !previous.isEmpty() &&
            (following.isEmpty() || start - previous.end() <= following.location - end);
        take(isBefore ? previous : following);
        (isBefore ? previous : following) = (isBefore ? before : after).next();
    }
    return names;
}

} // namespace quillory
