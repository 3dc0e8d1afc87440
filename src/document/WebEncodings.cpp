#include "document/WebEncodings.h"

#include "text/EncodingNames.h"

#include <algorithm>
#include <iterator>

namespace quillory {

namespace {

struct Row
{
    const char* languages; ///< BCP 47, divided by blanks
    const char* names;     ///< registered ones, divided by blanks
};

constexpr Row rows[] = {
    {"ar ckb", "windows-1256 iso-8859-6"},
    {"fa ur ug", "windows-1256"},
    {"be bg mk sr ru kk ky tg tt mn ba", "windows-1251 koi8-r iso-8859-5 ibm866 x-mac-cyrillic"},
    {"uk", "windows-1251 koi8-u koi8-r iso-8859-5"},
    {"bs cs hr hu pl ro sk sl sq", "windows-1250 iso-8859-2"},
    {"el", "windows-1253 iso-8859-7"},
    {"et lt lv", "windows-1257 iso-8859-13 iso-8859-4"},
    {"he yi", "windows-1255 iso-8859-8"},
    {"ja", "windows-31j euc-jp iso-2022-jp"},
    {"ko", "euc-kr ks_c_5601-1987 iso-2022-kr"},
    {"tr az ku", "windows-1254 iso-8859-9"},
    {"th", "windows-874 iso-8859-11"},
    {"vi", "windows-1258"},
    {"zh-Hans", "gb18030 gbk gb2312 hz-gb-2312"},
    {"zh-Hant", "big5 big5-hkscs"},
    {"cy ga gd", "iso-8859-14"},
    {"mt eo", "iso-8859-3"},
};

/// As rows name it: its language, with the script where that decides.
QString nameOf(const QLocale& locale)
{
    QString language = QLocale::languageToCode(locale.language());
    if (locale.language() == QLocale::Chinese)
        return language + (locale.script() == QLocale::TraditionalHanScript ? u"-Hant" : u"-Hans");
    return language;
}

} // namespace

std::vector<StringEncoding> webTextEncodings(const QLocale& locale)
{
    const QString wanted = nameOf(locale);
    const auto* row = std::find_if(std::begin(rows), std::end(rows), [&](const Row& each) {
        return QString::fromLatin1(each.languages).split(u' ').contains(wanted);
    });
    QStringList names{QStringLiteral("utf-8")};
    if (row != std::end(rows))
        names += QString::fromLatin1(row->names).split(u' ');
    names += {QStringLiteral("windows-1252"), QStringLiteral("iso-8859-1"),
              QStringLiteral("iso-8859-15"), QStringLiteral("utf-16"), QStringLiteral("us-ascii")};
    std::vector<StringEncoding> encodings;
    for (const QString& name : names)
        encodings.push_back(encodingForIanaName(name));
    return encodings;
}

} // namespace quillory
