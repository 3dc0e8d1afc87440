#include "text/TextSnapshot.h"

#include "text/TextBuilder.h"
#include "text/TextModel.h"
#include "text/TextReader.h"
#include "text/TextStorage.h"

#include <QSignalSpy>
#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

using test::TextModel;
using test::treeFault;

/// Texts that are rich in what can go wrong at a boundary.
class RandomText
{
public:
    explicit RandomText(unsigned seed) : m_engine(seed) {}

    size_t below(size_t limit) { return limit == 0 ? 0 : m_engine() % limit; }

    std::u16string operator()(size_t length)
    {
        static constexpr std::u16string_view alphabet =
            u"\r\n\r\n\u2028\u2029\xD83D\xDE00\xD83D\xDE00"
            u"abcdefgh \t\u00E9\u00FF\u0100\u3042\x85\f";
        // None, a few or very many of the units take 16 bits.
        const size_t mode = below(4);
        std::u16string text;
        while (text.size() < length) {
            if (mode == 0)
                text += alphabet[below(alphabet.size())];
            else if (mode == 1 && below(40) == 0)
                text += std::u16string_view(u"\u03A9\xD83D\xDE00\u2013").substr(below(4));
            else
                text += std::u16string_view(u"ab\r\n c\u00E9\0", 8)[below(8)];
        }
        text.resize(length);
        return text;
    }

private:
    std::minstd_rand m_engine;
};

std::u16string unitsOf(const TextSnapshot& text)
{
    return text.string().toStdU16String();
}

void expectSame(const TextSnapshot& text, const TextModel& model)
{
    ASSERT_EQ(treeFault(text), "");
    ASSERT_EQ(unitsOf(text), model.text);
    ASSERT_EQ(text.lineCount(), model.lineAt(TextOffset(model.text.size())) + 1);
    ASSERT_EQ(text.longestLine(), model.longestLine());
}

// A million edits, many of them of one unit, so that surrogate pairs and CR LF are split and joined
// again and again; snapshots taken on the way must never change.
TEST(TextSnapshot, AMillionRandomEditsKeepToTheModel)
{
    constexpr int edits = 1'000'000;
    RandomText random(20261121);
    TextModel model;
    TextSnapshot text;
    std::vector<std::pair<TextSnapshot, std::u16string>> kept;
    for (int i = 0; i < edits; ++i) {
        const size_t length = model.text.size();
        const size_t location = random.below(length + 1);
        const bool large = random.below(1000) == 0;
        const bool shrinking = length > 12000;
        const size_t removed =
            std::min(length - location, random.below(large || shrinking ? 6000 : 4));
        const std::u16string inserted = random(random.below(large && !shrinking ? 6000 : 5));
        const TextRange range{TextOffset(location), TextOffset(removed)};
        text = text.replacing(range, TextSnapshot(inserted));
        model.replace(range, inserted);

        const TextOffset offset = TextOffset(random.below(model.text.size() + 1));
        if (offset < text.length()) {
            ASSERT_EQ(text.at(offset), model.text[size_t(offset)]) << "edit " << i;
        }
        if (i % 256 == 0) {
            const LineIndex line = text.lineAt(offset);
            ASSERT_EQ(line.value(), model.lineAt(offset)) << "edit " << i;
            ASSERT_EQ(text.lineStart(line), model.lineStart(line.value())) << "edit " << i;
        }
        if (i % 8192 == 0) {
            ASSERT_NO_FATAL_FAILURE(expectSame(text, model)) << "edit " << i;
        }
        if (i % 50000 == 0)
            kept.emplace_back(text, model.text);
    }
    ASSERT_NO_FATAL_FAILURE(expectSame(text, model));
    for (const auto& [snapshot, units] : kept)
        EXPECT_EQ(unitsOf(snapshot), units);
}

TEST(TextSnapshot, SlicesShareAndGoBackTogether)
{
    RandomText random(7);
    for (int round = 0; round < 300; ++round) {
        const std::u16string units = random(random.below(60000));
        const TextSnapshot text{QStringView(units)};
        const TextOffset a = TextOffset(random.below(units.size() + 1));
        const TextOffset b = TextOffset(random.below(units.size() + 1));
        const TextRange range = TextRange::between(a, b);
        const TextSnapshot slice = text.slice(range);
        ASSERT_NO_FATAL_FAILURE(
            expectSame(slice, {units.substr(size_t(range.location), size_t(range.length))}));
        const TextSnapshot again =
            text.replacing(range, TextSnapshot()).replacing({range.location, 0}, slice);
        ASSERT_NO_FATAL_FAILURE(expectSame(again, {units}));
        ASSERT_TRUE(again == text);
    }
}

TEST(TextSnapshot, BuilderTakesPiecesCutAnywhere)
{
    RandomText random(99);
    for (int round = 0; round < 200; ++round) {
        TextBuilder builder;
        std::u16string expected;
        while (expected.size() < 40000) {
            const size_t kind = random.below(3);
            if (kind == 0) {
                const std::u16string piece = random(random.below(6000));
                builder.append(QStringView(piece));
                expected += piece;
                continue;
            }
            QByteArray bytes;
            const size_t length = random.below(kind == 1 ? 3 : 20000);
            for (size_t i = 0; i < length; ++i)
                bytes += "xy\r\n\r\xE9"[random.below(6)];
            if (kind == 1) {
                builder.append(QLatin1StringView(bytes));
            } else {
                const ByteBuffer owner(bytes);
                builder.appendShared(owner, owner.view());
            }
            for (const char byte : bytes)
                expected += char16_t(uchar(byte));
        }
        ASSERT_EQ(builder.length(), TextOffset(expected.size()));
        ASSERT_NO_FATAL_FAILURE(expectSame(builder.finish(), {expected})) << "round " << round;
    }
}

TEST(TextSnapshot, LinesEndAtEveryKindOfBreak)
{
    struct Case
    {
        QString text;
        std::vector<TextRange> lines;    // with their breaks
        std::vector<TextOffset> content; // length without it
    };
    const std::vector<Case> cases = {
        {QString(), {{0, 0}}, {0}},
        {QStringLiteral("a"), {{0, 1}}, {1}},
        {QStringLiteral("a\n"), {{0, 2}, {2, 0}}, {1, 0}},
        {QStringLiteral("a\r\nb"), {{0, 3}, {3, 1}}, {1, 1}},
        {QStringLiteral("a\rb"), {{0, 2}, {2, 1}}, {1, 1}},
        {QStringLiteral("\n\r"), {{0, 1}, {1, 1}, {2, 0}}, {0, 0, 0}},
        {QStringLiteral("\r\r\n"), {{0, 1}, {1, 2}, {3, 0}}, {0, 0, 0}},
        {QStringLiteral("a\u2028b\u2029c"), {{0, 2}, {2, 2}, {4, 1}}, {1, 1, 1}},
        {QStringLiteral("a\u0085b\fc\vd"), {{0, 7}}, {7}},
    };
    for (const Case& c : cases) {
        const TextSnapshot text(c.text);
        ASSERT_EQ(size_t(text.lineCount()), c.lines.size()) << c.text.toStdString();
        for (size_t i = 0; i < c.lines.size(); ++i) {
            const LineIndex line{qsizetype(i)};
            EXPECT_EQ(text.line(line), c.lines[i]) << c.text.toStdString() << " line " << i;
            EXPECT_EQ(text.lineContent(line).length, c.content[i]) << c.text.toStdString();
        }
    }
    const TextSnapshot text(QStringLiteral("one\r\ntwo\nthree"));
    EXPECT_EQ(text.lineRangeForRange({1, 0}), (TextRange{0, 5}));
    EXPECT_EQ(text.lineRangeForRange({4, 0}), (TextRange{0, 5})); // between CR and LF
    EXPECT_EQ(text.lineRangeForRange({0, 5}), (TextRange{0, 5})); // ends just after the break
    EXPECT_EQ(text.lineRangeForRange({2, 4}), (TextRange{0, 9}));
    EXPECT_EQ(text.lineRangeForRange({14, 0}), (TextRange{9, 5}));
}

TEST(TextReader, ReadsCodePointsInBothDirections)
{
    TextReader reader(TextSnapshot(QStringView(u"a\xD83D\xDE00\xDE00\xD83D")));
    EXPECT_EQ(reader.codePointAt(1), U'\U0001F600');
    EXPECT_EQ(reader.codePointBefore(3), U'\U0001F600');
    EXPECT_EQ(reader.codePointAt(3), char32_t(0xDE00)); // unpaired ones as they stand
    EXPECT_EQ(reader.codePointAt(4), char32_t(0xD83D));
    EXPECT_EQ(reader.codePointBefore(1), U'a');
}

TEST(TextStorage, ReportsEveryChangeAndTheBatchOnce)
{
    TextStorage storage;
    std::vector<TextChange> changes;
    QObject::connect(&storage, &TextStorage::edited,
                     [&](const TextChange& change) { changes.push_back(change); });
    QSignalSpy ended(&storage, &TextStorage::editingEnded);

    storage.replaceCharactersInRange({0, 0}, u"hello");
    EXPECT_EQ(ended.count(), 1);
    storage.beginEditing();
    storage.replaceCharactersInRange({0, 1}, u"J");
    storage.replaceCharactersInRange({4, 100}, u""); // pulled into the text
    EXPECT_EQ(ended.count(), 1);
    storage.endEditing();
    EXPECT_EQ(ended.count(), 2);
    storage.beginEditing();
    storage.endEditing(); // nothing changed
    EXPECT_EQ(ended.count(), 2);

    EXPECT_EQ(storage.snapshot().string(), QStringLiteral("Jell"));
    EXPECT_EQ(changes, (std::vector<TextChange>{{{0, 0}, 5}, {{0, 1}, 1}, {{4, 1}, 0}}));
}

} // namespace
} // namespace quillory
