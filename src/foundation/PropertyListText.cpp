#include "foundation/PropertyListText.h"

#include "text/EncodingNames.h"
#include "text/TextDecoder.h"

#include <QRegularExpression>
#include <QStringConverter>

namespace quillory {
namespace {

/// By a byte-order mark, or by how "<" is stored; none when neither tells.
StringEncoding evidentEncoding(const QByteArray& bytes)
{
    const auto found = QStringConverter::encodingForData(bytes, u'<');
    const bool marked = QStringConverter::encodingForData(bytes).has_value();
    switch (found.value_or(QStringConverter::System)) {
    case QStringConverter::Utf8:
        return StringEncoding::utf8;
    case QStringConverter::Utf16LE:
        return marked ? StringEncoding::utf16 : StringEncoding::utf16LittleEndian;
    case QStringConverter::Utf16BE:
        return marked ? StringEncoding::utf16 : StringEncoding::utf16BigEndian;
    case QStringConverter::Utf32LE:
        return marked ? StringEncoding::utf32 : StringEncoding::utf32LittleEndian;
    case QStringConverter::Utf32BE:
        return marked ? StringEncoding::utf32 : StringEncoding::utf32BigEndian;
    default:
        return StringEncoding::none;
    }
}

/// The name in an XML declaration that is stored in ASCII; empty without one.
QString declaredName(const QByteArray& bytes)
{
    static const QRegularExpression declaration(
        QStringLiteral(R"(\A<\?xml\s[^>]*?encoding\s*=\s*["']([^"'>]+)["'])"));
    return declaration.match(QString::fromLatin1(bytes.left(512))).captured(1);
}

} // namespace

Result<QString> propertyListText(const QByteArray& bytes)
{
    StringEncoding encoding = evidentEncoding(bytes);
    QString name = QStringLiteral("UTF-8");
    if (encoding == StringEncoding::none) {
        encoding = StringEncoding::utf8;
        if (const QString declared = declaredName(bytes); !declared.isEmpty()) {
            name = declared;
            encoding = encodingForIanaName(declared);
            if (encoding == StringEncoding::none)
                return Failure{QStringLiteral("The list declares the encoding “%1”, which is not "
                                              "known. Convert it to UTF-8.")
                                   .arg(declared)};
        }
    } else if (encoding != StringEncoding::utf8) {
        name = QStringLiteral("Unicode text");
    }
    const auto decoded = decode(ByteBuffer(bytes), encoding);
    if (!decoded)
        return Failure{QStringLiteral("The list holds bytes that are not %1.").arg(name)};
    QString text = decoded->string();
    if (text.startsWith(QChar(QChar::ByteOrderMark)))
        text.remove(0, 1);
    return text;
}

bool isXmlPropertyList(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    if (!trimmed.startsWith(u'<'))
        return false;
    // No element's name is spelled with hexadecimal digits alone.
    for (const QChar unit : trimmed.sliced(1)) {
        if (unit == u'>' || unit == u'*' || unit == u'[')
            return false;
        if (!unit.isSpace() && !QStringView(u"0123456789abcdefABCDEF").contains(unit))
            return true;
    }
    return false;
}

Failure failureAt(QStringView text, qsizetype offset, const QString& message)
{
    Failure failure{message, 1, 1};
    for (qsizetype i = 0; i < std::min(offset, text.size()); ++i) {
        const bool ends =
            text[i] == u'\n' || (text[i] == u'\r' && !text.sliced(i + 1).startsWith(u'\n'));
        failure.line += ends;
        failure.column = ends ? 1 : failure.column + 1;
    }
    return failure;
}

QString codePointName(char32_t codePoint)
{
    return QStringLiteral("U+%1").arg(uint(codePoint), 4, 16, QLatin1Char('0')).toUpper();
}

} // namespace quillory
