#include "text/EncodingNames.h"
#include "text/ByteLayout.h"
#include "text/EncodingTable.h"

#include <QSet>
#include <gtest/gtest.h>

namespace quillory {
namespace {

TEST(EncodingNames, RegisteredNamesGiveTheirNumbers)
{
    struct Case
    {
        const char16_t* name;
        quint32 number;
    };
    const Case cases[] = {
        {u"utf-8", 4},
        {u"UTF8", 4},
        {u"utf-8 ", 4},
        {u"iso 8859-1", 5},
        {u"ISO_8859-1", 5},
        {u"latin1", 5},
        {u"us-ascii", 1},
        {u"utf-16", 10},
        {u"utf-16le", 0x94000100},
        {u"macintosh", 30},
        {u"windows-1251", 11},
        {u"cp1252", 12},
        {u"x-nextstep", 2},
        {u"koi8-r", 0x80000a02},
        {u"shift_jis", 0x80000a01},
        {u"Shift-JIS", 0x80000a01},
        {u"cp932", 8},
        {u"sjis", 8},
        {u"x-sjis", 8},
        {u"windows-31j", 8},
        {u"euc-jp", 3},
        {u"gbk", 0x80000421},
        {u"gb18030", 0x80000632},
        {u"big5", 0x80000a03},
        {u"iso-2022-jp", 21},
        {u"ks_c_5601-1987", 0x80000422},
        {u"x-cp1252", 0},
        {u"x-gbk", 0},
        {u"", 0},
        {u"-_ ", 0},
        {u"no such set", 0},
        {u"ISO-2022-JP,version=2", 0},
        {u"utf\u20118", 0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(quint32(encodingForIanaName(c.name)), c.number)
            << QString::fromUtf16(c.name).toStdString();
}

TEST(EncodingNames, EveryNumberIsOneRowAndItsNameLeadsBack)
{
    QSet<quint32> numbers;
    for (const EncodingInfo& info : knownEncodings()) {
        const auto number = quint32(info.encoding);
        EXPECT_FALSE(numbers.contains(number)) << number;
        numbers.insert(number);
        EXPECT_EQ(encodingInfo(info.encoding), &info);
        EXPECT_TRUE(number < 0x100 || info.attributeCode == (number & 0x7FFFFFFF)) << number;
        EXPECT_EQ(encodingForAttribute(attributeForEncoding(info.encoding)), info.encoding);
        // Two names belong to two numbers each, and lead to the first of them.
        const bool isAmbiguous = number == 8 || number == 0x80000631;
        if (*info.ianaName && !isAmbiguous) {
            EXPECT_EQ(encodingForIanaName(QString::fromLatin1(info.ianaName)), info.encoding);
        }
    }
    EXPECT_EQ(encodingInfo(StringEncoding::none), nullptr);
    EXPECT_EQ(displayName(StringEncoding(99)), QString());
    EXPECT_EQ(displayName(StringEncoding::utf8), QStringLiteral("Unicode (UTF-8)"));
}

TEST(EncodingNames, AttributeIsReadByNumberThenByName)
{
    struct Case
    {
        const char* attribute;
        quint32 number;
    };
    const Case cases[] = {
        {"utf-8;134217984", 4},
        {"macintosh;0", 30},
        {";3071", 7},
        {"utf-8;", 4},
        {"utf-8", 4},
        {"utf-8;2561", 0x80000a01},
        {"utf-8;999999", 4},
        {"utf-8;x", 4},
        {"utf-8;-1", 4},
        {";", 0},
        {"", 0},
        {"nonsense;nonsense", 0},
        {"x;513\n", 5},
    };
    for (const Case& c : cases)
        EXPECT_EQ(quint32(encodingForAttribute(c.attribute)), c.number) << c.attribute;
    EXPECT_EQ(attributeForEncoding(StringEncoding::utf8), "utf-8;134217984");
    EXPECT_EQ(attributeForEncoding(StringEncoding::none), "");
}

TEST(ByteLayout, MarksAreFoundForTheEncodingsThatHaveOne)
{
    using enum StringEncoding;
    struct Case
    {
        QByteArray bytes;
        StringEncoding encoding;
        ByteLayout layout;
    };
    const Case cases[] = {
        {"abc", utf8, {false, false}},
        {"\xEF\xBB\xBF", utf8, {true, false}},
        {"\xEF\xBB", utf8, {false, false}},
        {"\xFF\xFE", utf16, {true, false}},
        {"\xFE\xFF", utf16, {true, true}},
        {"ab", utf16, {false, true}},
        {"", utf16, {false, true}},
        {QByteArray("\xFF\xFE\0\0", 4), utf32, {true, false}},
        {QByteArray("\0\0\xFE\xFF", 4), utf32, {true, true}},
        {QByteArray("\xFF\xFE\0\0", 4), utf16, {true, false}},
        {"\xFF\xFE", utf16LittleEndian, {false, false}},
        {"\xFE\xFF", utf16BigEndian, {false, true}},
        {"\xEF\xBB\xBF", isoLatin1, {false, false}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(layoutOf(c.bytes, c.encoding), c.layout)
            << c.bytes.toHex().constData() << " as " << quint32(c.encoding);
    }
}

} // namespace
} // namespace quillory
