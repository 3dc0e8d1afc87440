#include "text/Utf8.h"

#include <QString>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace quillory {
namespace {

struct Decoded
{
    std::u16string units;
    qsizetype read = 0;
    bool valid = true;

    friend void PrintTo(const Decoded& decoded, std::ostream* out)
    {
        *out << decoded.units.size() << " units from " << decoded.read << " bytes, "
             << (decoded.valid ? "valid" : "invalid");
    }
    bool operator==(const Decoded&) const = default;
};

/// Decodes in rounds of a small room, as the decoder of whole texts does.
Decoded decodeAll(QByteArrayView bytes, qsizetype room = 4096, qsizetype longAscii = 1 << 20)
{
    Decoded result;
    std::vector<char16_t> units(size_t(room) + 1, u'\xABCD');
    while (result.valid && result.read < bytes.size()) {
        const auto progress = decodeUtf8(bytes.sliced(result.read), units.data(), room, longAscii);
        EXPECT_EQ(units.back(), u'\xABCD') << "written past the room";
        if (progress.read == 0 && progress.valid)
            break;
        result.units.append(units.data(), size_t(progress.written));
        result.read += progress.read;
        result.valid = progress.valid;
    }
    return result;
}

TEST(Utf8, TakesOnlyWellFormedSequences)
{
    struct Case
    {
        std::string bytes;
        std::u16string units;
        qsizetype read;
        bool valid;
    };
    const Case cases[] = {
        {"a\xC3\xA9z", u"a\u00E9z", 4, true},
        {"\xC2\x80\xDF\xBF", u"\u0080\u07FF", 4, true},
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\u0800\uD7FF\uE000\uFFFF", 12, true},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF", 8, true},
        {std::string("a\0b", 3), std::u16string(u"a\0b", 3), 3, true},
        {"a\x80", u"a", 1, false}, // a trail byte alone
        {"a\xC3", u"a", 1, false}, // cut short
        {"\xE2\x82", u"", 0, false},
        {"\xF0\x9F\x98", u"", 0, false},
        {"\xC0\x80", u"", 0, false}, // overlong
        {"\xC1\xBF", u"", 0, false},
        {"\xE0\x9F\xBF", u"", 0, false},
        {"\xF0\x8F\xBF\xBF", u"", 0, false},
        {"\xED\xA0\x80", u"", 0, false}, // a surrogate
        {"\xED\xBF\xBF", u"", 0, false},
        {"\xF4\x90\x80\x80", u"", 0, false}, // above U+10FFFF
        {"\xF5\x80\x80\x80", u"", 0, false},
        {"\xC3(", u"", 0, false},
        {"\xE2(\xA1", u"", 0, false},
        {"\xE2\x82(", u"", 0, false},
        {"\xF0\x9F\x98(", u"", 0, false},
        {"\xFF", u"", 0, false},
    };
    for (const Case& c : cases) {
        const Decoded expected{c.units, c.read, c.valid};
        EXPECT_EQ(decodeAll(c.bytes), expected)
            << QByteArray::fromStdString(c.bytes).toHex().data();
        // After ASCII of every length, and with little room, it is the same.
        for (qsizetype before = 0; before < 70; before += 3) {
            const Decoded shifted{std::u16string(size_t(before), u'x') + c.units, before + c.read,
                                  c.valid};
            EXPECT_EQ(decodeAll(std::string(size_t(before), 'x') + c.bytes, 5), shifted);
        }
    }
}

TEST(Utf8, EveryCodePointGoesThereAndBack)
{
    QString text;
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (!QChar::isSurrogate(character))
            text += QChar::fromUcs4(character);
    }
    QByteArray bytes(text.size() * 3, Qt::Uninitialized);
    const auto progress = encodeUtf8(text, bytes.data());
    ASSERT_TRUE(progress.valid);
    bytes.truncate(progress.written);
    EXPECT_EQ(bytes, text.toUtf8());
    const Decoded decoded = decodeAll(bytes);
    EXPECT_TRUE(decoded.valid);
    EXPECT_EQ(decoded.units, text.toStdU16String());
}

TEST(Utf8, EncodingStopsAtUnpairedSurrogates)
{
    for (const std::u16string text :
         {u"ab\xD800", u"ab\xDC00z", u"ab\xD800\xD800", u"ab\xDC00\xD800"}) {
        QByteArray bytes(qsizetype(text.size() * 3), Qt::Uninitialized);
        const auto progress = encodeUtf8(text, bytes.data());
        EXPECT_FALSE(progress.valid);
        EXPECT_EQ(progress.read, 2);
        EXPECT_EQ(bytes.first(progress.written), "ab");
    }
}

TEST(Utf8, AsciiIsFoundAndWidenedAtEveryAlignment)
{
    std::mt19937 random(7);
    for (int round = 0; round < 4000; ++round) {
        std::string bytes(random() % 200, 'a');
        for (char& byte : bytes)
            byte = char(random() % 40 == 0 ? 0x80 + random() % 0x80 : random() % 0x80);
        const size_t offset = bytes.empty() ? 0 : random() % bytes.size();
        const QByteArrayView view(bytes.data() + offset, qsizetype(bytes.size() - offset));

        qsizetype expected = 0;
        while (expected < view.size() && uchar(view[expected]) < 0x80)
            ++expected;
        EXPECT_EQ(asciiPrefixLength(view), expected);

        std::vector<char16_t> units(size_t(view.size()) + 1, u'\xABCD');
        widen(view, units.data());
        for (qsizetype i = 0; i < view.size(); ++i)
            ASSERT_EQ(units[size_t(i)], uchar(view[i]));
        EXPECT_EQ(units.back(), u'\xABCD');
    }
}

TEST(Utf8, StopsBeforeALongRunOfAscii)
{
    const std::string bytes = "\xC3\xA9" + std::string(50, 'x') + "\xC3\xA9" + std::string(51, 'y');
    const Decoded decoded = decodeAll(bytes, 4096, 51);
    EXPECT_TRUE(decoded.valid);
    EXPECT_EQ(decoded.read, 2 + 50 + 2);
}

} // namespace
} // namespace quillory
