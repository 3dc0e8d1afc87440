#include "text/EncodingNames.h"

#include "text/EncodingTable.h"

#include <unicode/ucnv.h>

namespace quillory {

namespace {

/// Names for which a look-up by converter would give another number of the table, or none.
struct Alias
{
    const char* name; ///< as normalised() leaves it
    StringEncoding encoding;
};

constexpr Alias aliases[] = {
    {"shiftjis", StringEncoding(0x80000a01)}, {"gbk", StringEncoding(0x80000421)},
    {"cp932", StringEncoding::shiftJis},      {"cp936", StringEncoding(0x80000421)},
    {"cp949", StringEncoding(0x80000422)},    {"uhc", StringEncoding(0x80000422)},
    {"tis620", StringEncoding(0x8000041d)},
};

/// \a name in lower case without spaces, hyphens and underscores; empty when it is not ASCII.
QByteArray normalised(QStringView name)
{
    QByteArray result;
    for (const QChar character : name) {
        if (character.unicode() > 0x7E)
            return {};
        if (character != u' ' && character != u'-' && character != u'_')
            result.append(character.toLower().toLatin1());
    }
    return result;
}

/// ICU's own name of the converter that \a name opens; empty where there is none.
QByteArrayView canonicalConverter(const char* name)
{
    UErrorCode status = U_ZERO_ERROR;
    const char* canonical = *name ? ucnv_getAlias(name, 0, &status) : nullptr;
    return U_SUCCESS(status) ? QByteArrayView(canonical) : QByteArrayView();
}

StringEncoding encodingForAttributeCode(quint32 code)
{
    for (const EncodingInfo& info : knownEncodings()) {
        if (info.attributeCode == code)
            return info.encoding;
    }
    return StringEncoding::none;
}

} // namespace

StringEncoding encodingForIanaName(QStringView name)
{
    const QByteArray wanted = normalised(name);
    if (wanted.isEmpty())
        return StringEncoding::none;
    for (const Alias& alias : aliases) {
        if (wanted == alias.name)
            return alias.encoding;
    }
    for (const EncodingInfo& info : knownEncodings()) {
        if (wanted == normalised(QString::fromLatin1(info.ianaName)))
            return info.encoding;
    }
    // A comma or an equals sign would be read as an option of the converter.
    const QByteArray asGiven = name.toLatin1();
    const QByteArrayView converter = canonicalConverter(asGiven.constData());
    if (converter.isEmpty() || asGiven.contains(','))
        return StringEncoding::none;
    for (const EncodingInfo& info : knownEncodings()) {
        const char* own = *info.converter ? info.converter : info.ianaName;
        if (canonicalConverter(own) == converter)
            return info.encoding;
    }
    return StringEncoding::none;
}

StringEncoding encodingForAttribute(QByteArrayView attribute)
{
    const qsizetype semicolon = attribute.indexOf(';');
    const QByteArrayView name = attribute.first(semicolon < 0 ? attribute.size() : semicolon);
    const QByteArray code =
        semicolon < 0 ? QByteArray() : attribute.sliced(semicolon + 1).toByteArray();
    bool isNumber = false;
    const quint32 number = code.trimmed().toUInt(&isNumber);
    const StringEncoding byCode =
        isNumber ? encodingForAttributeCode(number) : StringEncoding::none;
    return byCode != StringEncoding::none
               ? byCode
               : encodingForIanaName(QString::fromLatin1(name).trimmed());
}

QByteArray attributeForEncoding(StringEncoding encoding)
{
    const EncodingInfo* info = encodingInfo(encoding);
    return info ? QByteArray(info->ianaName) + ';' + QByteArray::number(info->attributeCode)
                : QByteArray();
}

} // namespace quillory
