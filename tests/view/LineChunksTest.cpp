#include "text/TextReader.h"
#include "view/ChunkCuts.h"
#include "view/LongLines.h"

#include <gtest/gtest.h>
#include <numeric>
#include <random>

namespace quillory {

namespace {

constexpr double unitWidth = 8;

/// Every way to ask for a place gives the same answer as adding up the chunks does.
void expectTiled(const LineChunks& chunks, std::mt19937& random)
{
    TextOffset start = 0;
    double x = 0;
    std::vector<LineChunks::Place> places;
    for (size_t i = 0; i < chunks.count(); ++i) {
        ASSERT_GT(chunks.lengthOf(i), 0);
        ASSERT_LE(chunks.lengthOf(i), LineChunks::longLine * 2);
        places.push_back({i, start, x});
        start += chunks.lengthOf(i);
        x += chunks.widthOf(i);
    }
    ASSERT_EQ(start, chunks.length());
    ASSERT_DOUBLE_EQ(x, chunks.width());
    for (int probe = 0; probe < 20; ++probe) {
        const size_t i = random() % chunks.count();
        const LineChunks::Place& place = places[i];
        for (const LineChunks::Place& found :
             {chunks.placeOf(i), chunks.placeAtOffset(place.start),
              chunks.placeAtOffset(place.start + chunks.lengthOf(i) - 1), chunks.placeAtX(place.x),
              chunks.placeAtX(place.x + chunks.widthOf(i) / 2)}) {
            ASSERT_EQ(found.index, i);
            ASSERT_EQ(found.start, place.start);
            ASSERT_DOUBLE_EQ(found.x, place.x);
        }
    }
}

TEST(LineChunks, tileTheLineThroughRandomEdits)
{
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        LineChunks chunks(20'000, unitWidth);
        for (int step = 0; step < 100; ++step) {
            const TextOffset at = TextOffset(random() % size_t(chunks.length() + 1));
            const size_t most = step % 10 == 0 ? 6000 : 3;
            const TextOffset removed = std::min(TextOffset(random() % most), chunks.length() - at);
            const TextOffset inserted = TextOffset(random() % most) + (chunks.length() < 3000);
            chunks.followEdit({at, removed}, inserted);
            const size_t index = random() % chunks.count();
            if (!chunks.isSettled(index))
                chunks.settle(index,
                              std::min(TextOffset(random() % 101), chunks.lengthOf(index - 1) - 1));
            chunks.setWidth(index, double(chunks.lengthOf(index)) * double(random() % 20));
            ASSERT_NO_FATAL_FAILURE(expectTiled(chunks, random));
        }
    }
}

TEST(LineChunks, anEditLeavesTheOtherChunksAlone)
{
    LineChunks chunks(100'000, unitWidth);
    const LineChunks::Place place = chunks.placeAtOffset(50'100);
    std::vector<TextOffset> lengths;
    for (size_t i = 0; i < chunks.count(); ++i)
        lengths.push_back(chunks.lengthOf(i));
    chunks.followEdit({50'100, 0}, 7);
    lengths[place.index] += 7;
    for (size_t i = 0; i < chunks.count(); ++i)
        EXPECT_EQ(chunks.lengthOf(i), lengths[i]) << i;
}

TEST(LineChunks, onlyAFirstMeasurementLeftOfWhatWasSeenShiftsIt)
{
    LineChunks chunks(10'000, unitWidth);
    EXPECT_EQ(chunks.setWidth(5, 9'000), 0); // nothing to its right was seen
    EXPECT_NE(chunks.setWidth(4, 8'000), 0); // chunk 5 had told of 9,000
    EXPECT_EQ(chunks.setWidth(4, 8'000), 0);
    chunks.followEdit({chunks.placeOf(4).start + 1, 0}, 1);
    EXPECT_EQ(chunks.setWidth(4, 8'008), 0); // typing pushes what follows
}

TEST(LongLines, followEditsAndForgetLinesThatAreNoneAnyMore)
{
    const QString longLine(10'000, u'x');
    TextSnapshot text(QString(longLine + u'\n' + longLine));
    LongLines lines(unitWidth);
    lines.chunks({0, 10'000}).setWidth(3, 1);
    lines.chunks({10'001, 10'000}).setWidth(3, 1);
    const auto isKnown = [&](TextRange content) {
        return lines.chunks(content).widthOf(3) < LineChunks::chunkLength;
    };
    const auto edit = [&](TextRange range, QStringView replacement) {
        text = text.replacing(range, TextSnapshot(replacement));
        lines.followEdit({range, replacement.size()}, text);
    };
    edit({5, 0}, u"ab");
    EXPECT_TRUE(isKnown({0, 10'002}));
    EXPECT_TRUE(isKnown({10'003, 10'000}));
    edit({10'002, 1}, u""); // both become one
    EXPECT_FALSE(isKnown({0, 20'002}));
    edit({10'002, 0}, u"\n");
    EXPECT_FALSE(isKnown({0, 10'002}));
}

TEST(ChunkCuts, fallWhereNothingIsTornApart)
{
    struct Case
    {
        QString text;
        TextOffset offset;
        TextOffset cut;
    };
    const QString marks(1000, QChar(0x0301));
    const Case cases[] = {
        {QStringLiteral("words and words"), 12, 10}, // after a blank
        {QString(500, u'x'), 200, 200},              // anywhere
        {QString(200, u'x') + QStringLiteral("e\u0301x"), 201, 200},
        {QString(200, u'x') + QStringLiteral("a \u0301bc"), 204, 204}, // a mark on a blank
        {QString(200, u'x') + QStringLiteral("\U0001F468\u200D\U0001F469"), 203, 200},
        {marks, 500, 500},
        {QString(300, u'x') + QStringLiteral("\U0001F600").repeated(200), 401, 400},
    };
    for (const Case& row : cases) {
        const TextSnapshot text(row.text);
        EXPECT_EQ(row.offset - unitsToCut(text, text.range(), row.offset), row.cut)
            << row.text.toStdString();
    }
}

} // namespace

} // namespace quillory
