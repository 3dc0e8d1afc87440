#include "document/TECConverter.h"

#include "text/TextDecoder.h"
#include "text/TextEncoder.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

using enum StringEncoding;

TEST(TECConverter, ConvertsWhatBothEncodingsHave)
{
    // Longer than a few pieces, with characters of one to four bytes across their ends.
    const QString west = QStringLiteral("Größe – naïve café, 5 × 3. ").repeated(60);
    const QString east = QStringLiteral("川のそばの小さな図書館 library 漢字。\n").repeated(60);
    const QString wide = QStringLiteral("a😀é漢").repeated(200);
    struct Case
    {
        StringEncoding from;
        StringEncoding to;
        QString text;
    };
    std::vector<Case> cases{
        {windowsLatin1, utf8, west},
        {utf8, windowsLatin1, west},
        {nextStep, utf32, QStringLiteral("Größe").repeated(100)},
        {utf8, nonLossyAscii, west},
        {shiftJis, iso2022Jp, east},
        {iso2022Jp, utf8, east},
        {hz, utf16, QStringLiteral("a 汉字 b\n").repeated(100)},
        {utf8, hz, QStringLiteral("a 汉字 b").repeated(100)},
        {utf8, iso2022Kr, QStringLiteral("가나다 a\n").repeated(100)},
        {utf32, StringEncoding(0x80000632), wide},
        {utf7, utf8, wide},
        {utf8, utf8, QString()},
        {utf8, utf16, QString()},
    };
    for (const StringEncoding from :
         {utf8, utf16, utf16BigEndian, utf16LittleEndian, utf32, utf32BigEndian, utf32LittleEndian})
        for (const StringEncoding to : {utf8, utf16, utf16BigEndian, utf16LittleEndian, utf32,
                                        utf32BigEndian, utf32LittleEndian})
            cases.push_back({from, to, wide});
    for (const Case& c : cases) {
        const auto label = [&] {
            return displayName(c.from).toStdString() + " to " + displayName(c.to).toStdString();
        };
        auto converter = TECConverter::initWithEncoding(c.from, c.to);
        ASSERT_TRUE(converter) << label();
        const QByteArray before = encoded(TextSnapshot(c.text), c.from).value_or("(lacks)");
        // A converter may be used again and again.
        for (int round = 0; round < 2; ++round)
            EXPECT_EQ(converter->convert(before), encoded(TextSnapshot(c.text), c.to)) << label();
        EXPECT_EQ(converter->convertToString(before), c.text) << label();
    }
}

TEST(TECConverter, EndsWhereSomethingDoesNotFit)
{
    struct Case
    {
        StringEncoding from;
        StringEncoding to;
        QByteArray before;
        QByteArray after;
    };
    const Case cases[] = {
        {utf8, utf8,
         "good\xFF"
         "bad",
         "good"},
        {utf8, windowsLatin1, "good \xE6\xBC\xA2 bad", "good "},
        {utf8, isoLatin1, "cut\xC3", "cut"},
        {StringEncoding::ascii, utf8,
         "a\xE9"
         "b",
         "a"},
        {utf8, iso2022Jp, "\xE6\xBC\xA2 \xEA\xB0\x80", "\x1B$B4A\x1B(B "},
    };
    for (const Case& c : cases)
        EXPECT_EQ(TECConverter::initWithEncoding(c.from, c.to)->convert(c.before), c.after)
            << c.before.toPercentEncoding().data();
}

TEST(TECConverter, UnknownEncodingsGiveNone)
{
    EXPECT_FALSE(TECConverter::initWithEncoding(none, utf8));
    EXPECT_FALSE(TECConverter::initWithEncoding(utf8, StringEncoding(0x8000ffff)));
    const QByteArray bytes = TECConverter::initWithEncoding(utf8)->convert("a");
    EXPECT_EQ(bytes, QByteArray("\xFF\xFE"
                                "a\0",
                                4));
}

} // namespace
} // namespace quillory
