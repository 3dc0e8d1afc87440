#include "foundation/XmlPropertyListReader.h"

#include "foundation/PropertyListScalars.h"
#include "foundation/PropertyListText.h"
#include "foundation/TextPool.h"
#include "foundation/XmlCharacters.h"

#include <QXmlStreamReader>
#include <limits>

namespace quillory {
namespace {

using Token = QXmlStreamReader::TokenType;

/// Where \a text declares an entity in its document type; -1 where it does not. Has to be known
/// before the parser sees the declarations, as it expands what they define.
qsizetype entityDeclaration(QStringView text)
{
    qsizetype at = 0;
    const auto skip = [&](QStringView open, QStringView close) {
        while (at < text.size() && text[at].isSpace())
            ++at;
        if (!text.sliced(at).startsWith(open))
            return false;
        const qsizetype end = text.indexOf(close, at + open.size());
        at = end < 0 ? text.size() : end + close.size();
        return true;
    };
    while (skip(u"<?", u"?>") || skip(u"<!--", u"-->")) {
    }
    if (!text.sliced(at).startsWith(u"<!DOCTYPE"))
        return -1;
    QChar quote;
    for (; at < text.size(); ++at) {
        const QChar unit = text[at];
        if (!quote.isNull()) {
            if (unit == quote)
                quote = QChar();
        } else if (unit == u'"' || unit == u'\'') {
            quote = unit;
        } else if (unit == u'[') {
            return text.indexOf(u"<!ENTITY", at);
        } else if (unit == u'>') {
            return -1;
        }
    }
    return -1;
}

/// Recursive descent over the parser's tokens; throws a Failure.
class Parser
{
public:
    explicit Parser(const QString& text) : m_xml(text) { m_xml.setNamespaceProcessing(false); }

    PropertyList parse()
    {
        if (nextTag() != Token::StartElement)
            fail(QStringLiteral("The list is empty."));
        if (m_xml.qualifiedName() != u"plist")
            return value();
        if (nextTag() != Token::StartElement)
            fail(QStringLiteral("There is no value in <plist>."));
        PropertyList list = value();
        if (nextTag() != Token::EndElement)
            fail(QStringLiteral("There is more than one value in <plist>."));
        return list;
    }

private:
    [[noreturn]] void fail(const QString& message) const
    {
        throw Failure{message, m_xml.lineNumber(), std::max<qint64>(m_xml.columnNumber(), 1)};
    }

    Token next()
    {
        const Token token = m_xml.readNext();
        if (token == Token::Invalid)
            fail(m_xml.errorString());
        if (token == Token::EntityReference)
            fail(QStringLiteral("The entity “%1” is not declared.").arg(m_xml.name()));
        return token;
    }

    /// The next start or end of an element; only blanks and comments may stand before it.
    Token nextTag()
    {
        for (;;) {
            const Token token = next();
            if (token == Token::StartElement || token == Token::EndElement ||
                token == Token::EndDocument)
                return token;
            if (token == Token::Characters && !m_xml.isWhitespace())
                fail(QStringLiteral("There is text between two elements."));
        }
    }

    /// The text up to the end of the current element, which holds no others.
    QString text()
    {
        const QString name = m_xml.qualifiedName().toString();
        QString text;
        for (Token token = next(); token != Token::EndElement; token = next()) {
            if (token == Token::StartElement)
                fail(QStringLiteral("There is an element <%1> inside <%2>.")
                         .arg(m_xml.qualifiedName(), name));
            if (token == Token::Characters)
                text += m_xml.text();
        }
        return text;
    }

    /// The value of the element that has just begun; reads to its end.
    PropertyList value()
    {
        const QStringView name = m_xml.qualifiedName();
        if (name == u"dict")
            return nested(&Parser::dictionary);
        if (name == u"array")
            return nested(&Parser::array);
        if (name == u"string")
            return m_texts.list(text());
        if (name == u"data")
            return QByteArray::fromBase64(text().toLatin1());
        if (name == u"integer")
            return scalar(integerFromText, QStringLiteral("an integer from -2^63 to 2^64-1"));
        if (name == u"real")
            return scalar(realFromText, QStringLiteral("a real number"));
        if (name == u"date")
            return scalar(dateFromText, QStringLiteral("a date of the form YYYY-MM-DDThh:mm:ssZ"));
        if (name == u"true" || name == u"false") {
            const bool value = name == u"true";
            if (!text().isEmpty())
                fail(QStringLiteral("There is text inside a truth value."));
            return value;
        }
        fail(QStringLiteral("A property list has no element <%1>.").arg(name));
    }

    template<class Read>
    PropertyList scalar(Read read, const QString& what)
    {
        const QString spelling = text();
        const auto value = read(spelling);
        if (!value)
            fail(QStringLiteral("“%1” is not %2.").arg(spelling.left(100), what));
        return *value;
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
        while (nextTag() == Token::StartElement)
            array.append(value());
        return array;
    }

    PropertyList dictionary()
    {
        PropertyList::Dictionary dictionary;
        while (nextTag() == Token::StartElement) {
            if (m_xml.qualifiedName() != u"key")
                fail(QStringLiteral("There is an element <%1> where a <key> should be.")
                         .arg(m_xml.qualifiedName()));
            const QString key = text();
            if (nextTag() != Token::StartElement)
                fail(QStringLiteral("The key “%1” has no value.").arg(key.left(100)));
            dictionary.insert(key, value());
        }
        if (dictionary.size() == 1 && dictionary.firstKey() == u"CF$UID") {
            const auto* index = dictionary.first().as<qint64>();
            if (index && *index >= 0 && *index <= std::numeric_limits<quint32>::max())
                return PropertyList::Uid{quint32(*index)};
        }
        return dictionary;
    }

    QXmlStreamReader m_xml;
    int m_depth = 0;
    TextPool m_texts;
};

} // namespace

Result<PropertyList> readXmlPropertyList(const QString& text)
{
    if (const qsizetype at = forbiddenInXml(text); at >= 0)
        return failureAt(text, at,
                         QStringLiteral("The character %1 cannot stand in XML. Remove it.")
                             .arg(codePointName(text[at].unicode())));
    if (const qsizetype at = entityDeclaration(text); at >= 0)
        return failureAt(
            text, at,
            QStringLiteral("The list declares an entity, which is not supported. Write "
                           "what it stands for in its place."));
    try {
        return Parser(text).parse();
    } catch (const Failure& failure) {
        return failure;
    }
}

} // namespace quillory
