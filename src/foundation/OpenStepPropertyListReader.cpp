#include "foundation/OpenStepPropertyListReader.h"

#include "foundation/PropertyListText.h"
#include "foundation/TextPool.h"
#include "text/ByteTable.h"

namespace quillory {
namespace {

constexpr char16_t lineSeparator = 0x2028;
constexpr char16_t paragraphSeparator = 0x2029;

bool isBlank(QChar unit)
{
    return (unit >= u'\t' && unit <= u'\r') || unit == u' ' || unit == lineSeparator ||
           unit == paragraphSeparator;
}

bool isUnquoted(QChar unit)
{
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
           (unit >= u'0' && unit <= u'9') || QStringView(u"_$/:.-").contains(unit);
}

int hexadecimalValue(QChar unit)
{
    const qsizetype at = QStringView(u"0123456789abcdef").indexOf(unit.toLower());
    return int(at);
}

/// Recursive descent; throws a Failure.
class Parser
{
public:
    explicit Parser(QStringView text) : m_text(text) {}

    PropertyList parse()
    {
        if (m_text.isEmpty())
            fail(QStringLiteral("The file is empty."));
        skipBlanks();
        if (atEnd())
            return PropertyList::Dictionary();
        const qsizetype begin = m_at;
        PropertyList list = value();
        skipBlanks();
        if (atEnd())
            return list;
        if (!list.as<QString>())
            fail(QStringLiteral("There is something after the end of the list."));
        m_at = begin;
        PropertyList::Dictionary dictionary;
        for (skipBlanks(); !atEnd(); skipBlanks())
            addEntry(dictionary);
        return dictionary;
    }

private:
    [[noreturn]] void fail(const QString& message) const { throw failureAt(m_text, m_at, message); }

    bool atEnd() const { return m_at == m_text.size(); }

    bool skip(QStringView expected)
    {
        if (!m_text.sliced(m_at).startsWith(expected))
            return false;
        m_at += expected.size();
        return true;
    }

    /// Goes past blanks and comments; a comment that is not closed ends with the text.
    void skipBlanks()
    {
        for (;;) {
            if (!atEnd() && isBlank(m_text[m_at])) {
                ++m_at;
            } else if (skip(u"//")) {
                while (!atEnd() && !isLineEnd(m_text[m_at]))
                    ++m_at;
            } else if (skip(u"/*")) {
                const qsizetype end = m_text.indexOf(u"*/", m_at);
                m_at = end < 0 ? m_text.size() : end + 2;
            } else {
                return;
            }
        }
    }

    static bool isLineEnd(QChar unit)
    {
        return unit == u'\n' || unit == u'\r' || unit == lineSeparator ||
               unit == paragraphSeparator;
    }

    PropertyList value()
    {
        skipBlanks();
        if (skip(u"("))
            return nested(&Parser::array);
        if (skip(u"{"))
            return nested(&Parser::dictionary);
        if (skip(u"<"))
            return data();
        return m_texts.list(text());
    }

    PropertyList nested(PropertyList (Parser::*read)())
    {
        if (m_depth == PropertyList::maximumDepth)
            fail(QStringLiteral("The list is nested deeper than %1 levels.").arg(m_depth));
        ++m_depth;
        PropertyList list = (this->*read)();
        --m_depth;
        return list;
    }

    PropertyList array()
    {
        PropertyList::Array array;
        for (skipBlanks(); !skip(u")"); skipBlanks()) {
            array.append(value());
            skipBlanks();
            if (!skip(u",") && !m_text.sliced(m_at).startsWith(u')'))
                fail(QStringLiteral("A comma or the array's “)” is missing here."));
        }
        return array;
    }

    PropertyList dictionary()
    {
        PropertyList::Dictionary dictionary;
        for (skipBlanks(); !skip(u"}"); skipBlanks())
            addEntry(dictionary);
        return dictionary;
    }

    void addEntry(PropertyList::Dictionary& dictionary)
    {
        const QString key = text();
        skipBlanks();
        dictionary.insert(key, skip(u"=") ? value() : m_texts.list(key));
        skipBlanks();
        if (!skip(u";"))
            fail(QStringLiteral("The “;” after the value of “%1” is missing here.")
                     .arg(key.left(100)));
    }

    PropertyList data()
    {
        QByteArray data;
        for (;;) {
            while (!atEnd() && isBlank(m_text[m_at]))
                ++m_at;
            if (skip(u">"))
                return data;
            const int upper = digit();
            const int lower = digit();
            data.append(char(uchar(upper << 4 | lower)));
        }
    }

    int digit()
    {
        const int value = atEnd() ? -1 : hexadecimalValue(m_text[m_at]);
        if (value < 0)
            fail(QStringLiteral("Data consist of pairs of hexadecimal digits up to a “>”."));
        ++m_at;
        return value;
    }

    QString text()
    {
        if (skip(u"\""))
            return quoted(u'"');
        if (skip(u"'"))
            return quoted(u'\'');
        const qsizetype begin = m_at;
        while (!atEnd() && isUnquoted(m_text[m_at]))
            ++m_at;
        if (m_at > begin)
            return m_text.sliced(begin, m_at - begin).toString();
        if (atEnd())
            fail(QStringLiteral("The list ends where a value should be."));
        fail(QStringLiteral("The character “%1” must stand in quotes.").arg(m_text[m_at]));
    }

    QString quoted(QChar quote)
    {
        const qsizetype begin = m_at;
        QString text;
        while (!atEnd() && m_text[m_at] != quote) {
            const QChar unit = m_text[m_at++];
            if (unit != u'\\')
                text += unit;
            else if (!atEnd())
                text += escaped();
        }
        if (atEnd()) {
            m_at = begin - 1;
            fail(QStringLiteral("The quote that begins here is not closed."));
        }
        ++m_at;
        return text;
    }

    /// What stands after a backslash.
    QChar escaped()
    {
        constexpr QStringView names = u"abfnrtv";
        constexpr QStringView meanings = u"\a\b\f\n\r\t\v";
        const QChar unit = m_text[m_at];
        if (unit >= u'0' && unit <= u'7')
            return nextStepCharacter(uchar(number(8, 3)));
        ++m_at;
        if (unit == u'U' && !atEnd() && hexadecimalValue(m_text[m_at]) >= 0)
            return char16_t(number(16, 4));
        const qsizetype at = names.indexOf(unit);
        return at < 0 ? unit : meanings[at];
    }

    /// At most \a length digits.
    int number(int base, int length)
    {
        int number = 0;
        for (; length > 0 && !atEnd(); --length, ++m_at) {
            const int value = hexadecimalValue(m_text[m_at]);
            if (value < 0 || value >= base)
                break;
            number = number * base + value;
        }
        return number;
    }

    QChar nextStepCharacter(uchar byte) const
    {
        const ByteTable& table = ByteTable::of(*encodingInfo(StringEncoding::nextStep));
        const char16_t unit = table.unitFor(byte);
        if (unit == ByteTable::undefined)
            fail(QStringLiteral("No character has the octal number %1.").arg(byte, 3, 8));
        return unit;
    }

    QStringView m_text;
    qsizetype m_at = 0;
    int m_depth = 0;
    TextPool m_texts;
};

} // namespace

Result<PropertyList> readOpenStepPropertyList(const QString& text)
{
    try {
        return Parser(text).parse();
    } catch (const Failure& failure) {
        return failure;
    }
}

} // namespace quillory
