#include "text/TextDecoder.h"
#include "text/TextEncoder.h"

#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

std::optional<QString> decoded(const QByteArray& bytes, quint32 number)
{
    const auto text = decode(ByteBuffer(bytes), StringEncoding(number));
    return text ? std::optional(text->string()) : std::nullopt;
}

QByteArray bytes(const char* hex)
{
    return QByteArray::fromHex(hex);
}

QString units(std::initializer_list<char16_t> list)
{
    return QString(reinterpret_cast<const QChar*>(list.begin()), qsizetype(list.size()));
}

TEST(TextDecoder, ReadsWhatOtherImplementationsRead)
{
    struct Case
    {
        quint32 number;
        const char* hex;
        QString text;
    };
    const Case cases[] = {
        {4, "efbbbf61", QStringLiteral("a")},
        {4, "61efbbbf", units({'a', 0xFEFF})},
        {4, "efbbbfefbbbf", units({0xFEFF})},
        {5, "80e9ff", units({0x80, 0xE9, 0xFF})},
        {12, "80e992", units({0x20AC, 0xE9, 0x2019})},
        {30, "8ec6f0db", units({0xE9, 0x2206, 0xF8FF, 0x20AC})},
        {2, "80a9b8e9fd", units({0xA0, 0x2019, 0x201A, 0xD8, 0xFF})},
        {7, "615c5c5c3335315c7532303232", units({'a', '\\', 0xE9, 0x2022})},
        {10, "fffe6100", QStringLiteral("a")},
        {10, "feff0061", QStringLiteral("a")},
        {10, "0061", QStringLiteral("a")},
        {10, "fffe", QString()},
        {10, "fffefffe", units({0xFEFF})},
        {0x94000100, "fffe6100", units({0xFEFF, 'a'})},
        {0x94000100, "00d86100", units({0xD800, 'a'})},
        {0x90000100, "d83dde00dc00", units({0xD83D, 0xDE00, 0xDC00})},
        {0x8c000100, "fffe000061000000", QStringLiteral("a")},
        {0x8c000100, "0000feff0001f600", units({0xD83D, 0xDE00})},
        {0x8c000100, "00000061", QStringLiteral("a")},
        {0x9c000100, "00f60100", units({0xD83D, 0xDE00})},
        {0x80000400, "1a1c7fe6", units({0x1A, 0x1C, 0x7F, 0xB5})},
        {0x80000412, "1a1c7faa", units({0x1A, 0x1C, 0x7F, 0xAC})},
        {8, "1a1c7f5c7e82a0b1", units({0x1A, 0x1C, 0x7F, '\\', '~', 0x3042, 0xFF71})},
        {3, "a4a2", units({0x3042})},
        {21,
         "1b2442242"
         "21b284261",
         units({0x3042, 'a'})},
        {0x80000840, "1b2429430e30210f5c", units({0xAC00, '\\'})},
        {0x80000a05,
         "7e7b3021"
         "7e7d7e7e",
         units({0x554A, '~'})},
        {0x80000631, "b0a1", units({0x554A})},
        {0x80000632, "b0a19439da33", units({0x554A, 0xD83D, 0xDCA9})},
        {0x80000a03, "a440", units({0x4E00})},
        {0x80000a06, "8866", units({0xCA})},
        {0x80000940, "b0a1", units({0xAC00})},
        {0x84000100, "2b414f6b2d", units({0xE9})},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(decoded(bytes(c.hex), c.number), c.text) << c.number << ' ' << c.hex;
    }
}

TEST(TextDecoder, RefusesWhatIsNotText)
{
    struct Case
    {
        quint32 number;
        const char* hex;
    };
    const Case cases[] = {
        {0, "61"},
        {6, "61"},
        {99, "61"},
        {1, "6180"},
        {4, "61ff"},
        {4, "61e282"},
        {10, "fffe610062"},
        {10, "61"},
        {0x94000100, "610062"},
        {0x8c000100, "fffe00006100"},
        {0x9c000100, "00d80000"}, // a surrogate
        {0x9c000100, "00001100"}, // above U+10FFFF
        {12, "81"},
        {13, "aa"},
        {2, "fe"},
        {0x8000041d, "db"},
        {0x80000206, "a1"},
        {7, "80"},
        {7, "5c"},
        {7, "5c6e"},
        {7, "5c343030"},
        {7, "5c7532303"},
        {8, "82"},
        {8, "8282ff"},
        {3, "a4"},
        {21, "1b2442"
             "24"},
        {21, "e9"},
        {0x80000a05, "7e7b30"},
        {0x80000a05, "617e"},
        {0x84000100, "2b"},
        {0x84000100, "2b414f"},
        {0x80000940, "b0"},
    };
    for (const Case& c : cases)
        EXPECT_FALSE(decoded(bytes(c.hex), c.number)) << c.number << ' ' << c.hex;
}

/// The bytes that a Windows code page leaves undefined, by its published table.
TEST(TextDecoder, CodePagesHaveTheirHoles)
{
    struct Case
    {
        quint32 number;
        const char* hex;
    };
    const Case cases[] = {
        {12, "818d8f909d"},
        {15, "8183889098"},
        {11, "98"},
        {13, "81888a8c8d8e8f90989a9c9d9e9faad2ff"},
        {14, "818d8e8f909d9e"},
        {0x80000505, "818a8c8d8e8f909a9c9d9e9fcad9dadbdcdddedffbfcff"},
        {0x80000506, ""},
        {0x80000507, "8183888a8c9098"
                     "9a9c9f"
                     "a1a5"},
        {0x80000508, "818a8d8e8f909a9d9e"},
        {0x8000041d, "8182838486878889"
                     "8a8b8c8d8e8f90"
                     "98999a9b9c9d9e9f"
                     "dbdcdddefcfdfeff"},
    };
    for (const Case& c : cases) {
        QByteArray holes;
        for (int byte = 0; byte < 256; ++byte) {
            if (!decoded(QByteArray(1, char(byte)), c.number))
                holes += char(byte);
        }
        EXPECT_STREQ(holes.toHex().constData(), c.hex) << c.number;
    }
}

TEST(TextDecoder, LeafSeamsDoNotShow)
{
    std::mt19937 random(3);
    for (const qsizetype first : {1, 1023, 1024, 1025, 4095, 4096, 4097, 8190, 8192, 12000}) {
        for (const qsizetype second : {1, 1022, 1024, 5000}) {
            QString text(first, u'a');
            text += u"\u00E9\r\n\U0001F600\u20AC";
            text += QString(second, u'b') % u"\r\n\u0451";
            const QByteArray utf8 = text.toUtf8();
            EXPECT_TRUE(decoded(utf8, 4) == text) << first << ' ' << second;
            EXPECT_EQ(encoded(TextSnapshot(text), StringEncoding::utf8), utf8);
            text.remove(u"\U0001F600"_qs).remove(u'\u20AC').remove(u'\u0451');
            EXPECT_TRUE(decoded(text.toLatin1(), 5) == text) << first << ' ' << second;
        }
    }
}

TEST(TextDecoder, LongUtf8IsPutTogetherFromItsParts)
{
    const QByteArray unit = QStringLiteral("a\u00E9\u65E5\r\n\xD83D\xDE00").toUtf8();
    for (const int padding : {0, 1, 2, 3, 4, 5, 6, 7}) {
        QByteArray bytes = QByteArray(padding, 'x') + unit.repeated(2'000'000);
        EXPECT_TRUE(*decode(ByteBuffer(bytes), StringEncoding::utf8) ==
                    TextSnapshot(QString::fromUtf8(bytes)))
            << padding;
        bytes[bytes.size() / 3] = '\xFF';
        EXPECT_FALSE(decode(ByteBuffer(bytes), StringEncoding::utf8));
    }
}

TEST(TextDecoder, RefersToLongAsciiInPlace)
{
    const ByteBuffer ascii(QByteArray(100000, 'x'));
    const auto text = decode(ascii, StringEncoding::utf8);
    const TextPiece piece = text->pieceAt(50000);
    const char* at = std::get<QLatin1StringView>(piece.units).data();
    EXPECT_TRUE(at >= ascii.data() && at < ascii.data() + ascii.size().value());

    // A stretch that is the smaller part does not keep the bytes alive.
    QByteArray mixed(20000, 'x');
    for (int i = 0; i < 40000; ++i)
        mixed += "\xD1\x8F";
    const ByteBuffer buffer(mixed);
    const TextPiece copied = decode(buffer, StringEncoding::utf8)->pieceAt(10000);
    const char* copy = std::get<QLatin1StringView>(copied.units).data();
    EXPECT_FALSE(copy >= buffer.data() && copy < buffer.data() + buffer.size().value());
}

TEST(TextEncoder, WritesMarksAsTheLayoutSays)
{
    using enum StringEncoding;
    const TextSnapshot text(u"a");
    EXPECT_EQ(encoded(text, utf8), "a");
    EXPECT_EQ(encoded(text, utf16), bytes("fffe6100"));
    EXPECT_EQ(encoded(TextSnapshot(), utf16), bytes("fffe"));
    EXPECT_EQ(encoded(text, utf32), bytes("fffe000061000000"));
    EXPECT_EQ(encoded(text, utf16BigEndian), bytes("0061"));
    EXPECT_EQ(encoded(text, utf16LittleEndian), bytes("6100"));
    EXPECT_EQ(encoded(text, utf32BigEndian), bytes("00000061"));
    EXPECT_EQ(encoded(text, utf32LittleEndian), bytes("61000000"));
    EXPECT_EQ(encoded(text, none), std::nullopt);

    // What was read is written as it lay.
    for (const char* hex : {"efbbbf61", "61", "fffe6100", "feff0061", "0061", "0000feff00000061"}) {
        for (const StringEncoding encoding : {utf8, utf16, utf16BigEndian, utf32, utf32BigEndian}) {
            const auto back = decode(ByteBuffer(bytes(hex)), encoding);
            if (!back)
                continue;
            QByteArray again;
            const auto failure =
                encode(*back, encoding, layoutOf(bytes(hex), encoding), [&](QByteArrayView piece) {
                    again += piece;
                    return true;
                });
            EXPECT_FALSE(failure);
            EXPECT_EQ(again, bytes(hex)) << quint32(encoding);
        }
    }
}

TEST(TextEncoder, UnpairedSurrogatesFitUtf16Only)
{
    const TextSnapshot text(units({'a', 0xD83D, 'b', 0xDE00}));
    EXPECT_EQ(encoded(text, StringEncoding::utf16LittleEndian), bytes("61003dd8620000de"));
    EXPECT_EQ(encoded(text, StringEncoding::nonLossyAscii), "a\\ud83db\\ude00");
    for (const quint32 number : {4U, 0x8c000100U, 5U, 8U, 0x80000632U, 21U}) {
        const auto failure = findUnencodable(text, StringEncoding(number));
        const EncodingFailure expected{EncodingFailure::Cause::unencodableCharacter, 1, 0xD83D};
        EXPECT_EQ(failure, expected) << number;
    }
}

TEST(TextEncoder, FailsAtTheFirstCharacterThatWouldComeBackAsAnother)
{
    struct Case
    {
        quint32 number;
        char16_t unit;
    };
    const Case cases[] = {
        {8, 0xF86F},          // would come back as U+2116
        {0x80000a06, 0xE000}, // as an ideograph
        {0x80000840, 0x20A9}, // the won sign as a backslash
        {12, 0x81},           {0x80000400, 0x3BC}, {1, 0xE9}, {12, 0x2260},
    };
    for (const Case& c : cases) {
        const QString string = u"ab" % QString(QChar(c.unit)) % u"c";
        const TextSnapshot text(string);
        const EncodingFailure expected{EncodingFailure::Cause::unencodableCharacter, 2, c.unit};
        EXPECT_EQ(findUnencodable(text, StringEncoding(c.number)), expected) << c.number;
    }
}

TEST(TextEncoder, StopsWhenTheSinkRefuses)
{
    const TextSnapshot text(QString(1000000, u'x'));
    for (const quint32 number : {4U, 10U, 5U, 8U, 21U, 7U}) {
        int calls = 0;
        const auto failure =
            encode(text, StringEncoding(number), {}, [&](QByteArrayView) { return ++calls < 3; });
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->cause, EncodingFailure::Cause::sinkRefused);
        EXPECT_EQ(calls, 3);
    }
}

TEST(TextEncoder, TellsWhenBytesWouldNotComeBack)
{
    struct Case
    {
        const char* hex;
        quint32 number;
        bool same;
    };
    const Case cases[] = {
        {"82a0", 8, true},
        {"8790", 8, false}, // the duplicate of 81E0
        {"1b244224221b2842", 21, true},
        {"1b2440"
         "24221b2842",
         21, false}, // the older escape sequence
        {"1b2442"
         "24221b2442"
         "24221b2842",
         21, false},
        {"2b414f6b2d", 0x84000100, true},
        {"2b4145452d", 0x84000100, false},
        {"617e7b30217e7d627e7b30217e7d", 0x80000a05, true},
        {"7e7b3021", 0x80000a05, false},
        {"5c7530306539", 7, false}, // \u00e9, which is written \351
        {"efbbbf61", 4, true},
    };
    for (const Case& c : cases) {
        const QByteArray original = bytes(c.hex);
        const auto text = decode(ByteBuffer(original), StringEncoding(c.number));
        ASSERT_TRUE(text) << c.number << ' ' << c.hex;
        EXPECT_EQ(encodesBack(*text, StringEncoding(c.number),
                              layoutOf(original, StringEncoding(c.number)), original),
                  c.same)
            << c.number << ' ' << c.hex;
    }
}

} // namespace
} // namespace quillory
