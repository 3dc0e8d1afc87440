#include "text/EncodingDetector.h"
#include "text/TextEncoder.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

using enum StringEncoding;

constexpr auto big5 = StringEncoding(0x80000a03);
constexpr auto eucJp = StringEncoding(3);
constexpr auto eucKr = StringEncoding(0x80000940);
constexpr auto gb18030 = StringEncoding(0x80000632);
constexpr auto koi8R = StringEncoding(0x80000a02);
constexpr auto windowsCyrillic = StringEncoding(11);
constexpr auto isoCyrillic = StringEncoding(0x80000205);
constexpr auto macRoman = StringEncoding(30);

QByteArray in(StringEncoding encoding, QStringView text)
{
    const auto result = encoded(TextSnapshot(text), encoding);
    EXPECT_TRUE(result) << "the sample does not fit its encoding";
    return result.value_or(QByteArray());
}

DetectedText detected(const QByteArray& bytes, const char* attribute = "")
{
    return detectEncoding(ByteBuffer(bytes), attribute);
}

constexpr QStringView german =
    u"Die Größe der Flügel überraschte uns: für größere Höhen möglich.\n";
constexpr QStringView russian = u"Съешь же ещё этих мягких французских булок, да выпей чаю. "
                                u"Быстрая коричневая лиса перепрыгнула через ленивую собаку.\n";
constexpr QStringView japanese =
    u"吾輩は猫である。名前はまだ無い。どこで生れたかとんと見当がつかぬ。"
    u"何でも薄暗いじめじめした所でニャーニャー泣いていた事だけは記憶している。\n";
constexpr QStringView chinese =
    u"学而时习之，不亦说乎？有朋自远方来，不亦乐乎？人不知而不愠，不亦君子乎？"
    u"这是一个测试文件，用来检查文字编码的识别。\n";
constexpr QStringView taiwanese =
    u"學而時習之，不亦說乎？有朋自遠方來，不亦樂乎？人不知而不慍，不亦君子乎？"
    u"這是一個測試檔案，用來檢查文字編碼的識別。\n";
constexpr QStringView korean =
    u"모든 인간은 태어날 때부터 자유로우며 그 존엄과 권리에 있어 동등하다. "
    u"인간은 천부적으로 이성과 양심을 부여받았다.\n";

TEST(EncodingDetector, FindsTheEncodingOfOrdinaryText)
{
    struct Case
    {
        StringEncoding encoding;
        QStringView text;
    };
    const Case cases[] = {
        {utf8, u""},
        {utf8, u"plain ASCII\n"},
        {utf8, german},
        {utf8, japanese},
        {utf16, u""},
        {utf16, german},
        {utf16LittleEndian, german},
        {utf16BigEndian, german},
        {utf16LittleEndian, japanese},
        {utf16BigEndian, japanese},
        {utf32, russian},
        {windowsCyrillic, russian},
        {koi8R, russian},
        {isoCyrillic, russian},
        {shiftJis, japanese},
        {eucJp, japanese},
        {iso2022Jp, japanese},
        {gb18030, chinese},
        {hz, chinese},
        {big5, taiwanese},
        {eucKr, korean},
        {iso2022Kr, korean},
        {windowsLatin1, u"“Größe” – 5 €\n"},
    };
    for (const Case& c : cases) {
        const DetectedText result = detected(in(c.encoding, c.text));
        EXPECT_EQ(quint32(result.encoding), quint32(c.encoding));
        EXPECT_EQ(result.text.string(), c.text) << quint32(c.encoding);
        EXPECT_EQ(result.layout, standardLayout(c.encoding));
    }
}

TEST(EncodingDetector, WesternTextDecodesWhicheverNameItGets)
{
    for (const QStringView text : {german, QStringView(u"Grün"), QStringView(u"façade, naïve")}) {
        const DetectedText result = detected(in(isoLatin1, text));
        EXPECT_TRUE(result.isText());
        EXPECT_EQ(result.text.string(), text);
    }
}

TEST(EncodingDetector, RareLettersFarIntoALargeFileCount)
{
    QByteArray bytes;
    while (bytes.size() < 3000000)
        bytes += "A line of plain ASCII such as logs are full of.\n";
    bytes += in(shiftJis, japanese);
    while (bytes.size() < 6000000)
        bytes += "A line of plain ASCII such as logs are full of.\n";
    EXPECT_EQ(detected(bytes).encoding, shiftJis);
}

TEST(EncodingDetector, AttributeComesFirstUnlessTheBytesContradictIt)
{
    const QByteArray ascii("plain");
    EXPECT_EQ(detected(ascii, "macintosh;0").encoding, macRoman);
    EXPECT_EQ(detected(ascii, ";513").encoding, isoLatin1);
    EXPECT_EQ(detected(ascii, "unheard-of;77").encoding, utf8);
    EXPECT_EQ(detected("caf\xC3\xA9", "windows-1252;1280").text.string(), u"caf\u00C3\u00A9");
    EXPECT_EQ(detected("caf\xC3\xA9", "us-ascii;1536").encoding, utf8);
    const DetectedText marked = detected("\xEF\xBB\xBF"
                                         "a",
                                         "utf-8;134217984");
    EXPECT_EQ(marked.layout, (ByteLayout{.hasMark = true}));
    EXPECT_EQ(marked.text.string(), u"a");
}

TEST(EncodingDetector, MarksDecide)
{
    struct Case
    {
        QByteArray bytes;
        StringEncoding encoding;
        ByteLayout layout;
    };
    const Case cases[] = {
        {"\xEF\xBB\xBFx", utf8, {true, false}},
        {QByteArray("\xFF\xFEx\0", 4), utf16, {true, false}},
        {QByteArray("\xFE\xFF\0x", 4), utf16, {true, true}},
        {QByteArray("\xFF\xFE\0\0x\0\0\0", 8), utf32, {true, false}},
        {QByteArray("\0\0\xFE\xFF\0\0\0x", 8), utf32, {true, true}},
        // Little-endian UTF-16 that begins with a zero unit, since it is no UTF-32.
        {QByteArray("\xFF\xFE\0\0x\0", 6), utf16, {true, false}},
    };
    for (const Case& c : cases) {
        const DetectedText result = detected(c.bytes);
        EXPECT_EQ(quint32(result.encoding), quint32(c.encoding)) << c.bytes.toHex().constData();
        EXPECT_EQ(result.layout, c.layout) << c.bytes.toHex().constData();
    }
}

TEST(EncodingDetector, DeclarationsBreakTheTie)
{
    const QByteArray letters("\x8E\x9F\xE1\xF5\n"); // says nothing by itself
    struct Case
    {
        QByteArray start;
        StringEncoding encoding;
    };
    const Case cases[] = {
        {"<?xml version=\"1.0\" encoding=\"macintosh\"?>\n", macRoman},
        {"<meta charset=koi8-r>\n", koi8R},
        {"# -*- coding: ibm437 -*-\n", StringEncoding(0x80000400)},
        {"/* vim: set fileencoding=ibm850 : */\n", StringEncoding(0x80000410)},
    };
    for (const Case& c : cases)
        EXPECT_EQ(quint32(detected(c.start + letters).encoding), quint32(c.encoding))
            << c.start.data();
    // A declaration does not overrule what the bytes are, nor one that can not be.
    EXPECT_EQ(detected("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\xC3\xA9").encoding, utf8);
    EXPECT_NE(detected("<?xml version=\"1.0\" encoding=\"utf-16\"?>\xE9\xE8").encoding, utf16);
}

TEST(EncodingDetector, BinaryIsNoText)
{
    QByteArray noise;
    quint32 state = 1;
    for (int i = 0; i < 5000; ++i) {
        state = state * 1664525 + 1013904223;
        noise += char(state >> 24);
    }
    const QByteArray cases[] = {
        noise,
        QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16),
        QByteArray("\x7F"
                   "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0\x03\0>\0\xFF",
                   21),
        QByteArray("\xFF\xFE"
                   "abc\0",
                   6) +
            '\x01',
        "\xFF\x01\x02\x03\x04",
    };
    for (const QByteArray& bytes : cases) {
        EXPECT_FALSE(detected(bytes).isText()) << bytes.left(16).toHex().constData();
        EXPECT_TRUE(detected(bytes).text.isEmpty());
    }
}

TEST(EncodingDetector, AsciiIsNotTakenForSomethingElse)
{
    const QByteArray cases[] = {
        QByteArray("zero\0byte", 9), // valid UTF-8, and so kept
        QByteArray("a\0", 2),
        "cost ~{5} and ~/folder", // not HZ
        "map(x, ~{ .x + 1 })",
        "~{abc",
        "\x1B[31mred\x1B[0m", // terminal colours
        "price: +AOk-",       // not UTF-7
    };
    for (const QByteArray& bytes : cases) {
        EXPECT_EQ(quint32(detected(bytes).encoding), quint32(utf8)) << bytes.constData();
        EXPECT_EQ(detected(bytes).text.string(), QString::fromLatin1(bytes));
    }
}

} // namespace
} // namespace quillory
