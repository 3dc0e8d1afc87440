#include "ViewHarness.h"

#include <QFontDatabase>
#include <QScrollBar>
#include <cmath>
#include <random>

namespace quillory {

namespace {

struct LongLine
{
    const char* name;
    QString text;
};

QString sparseTabs()
{
    std::mt19937 random(3);
    QString text;
    while (text.size() < 12'000)
        text += QString(qsizetype(random() % 700), u'x') + u'\t';
    return text;
}

const QString hebrewWords =
    QStringLiteral("\u05d0\u05d1\u05d2 \u05d3\u05d4 \u05d5\u05d6\u05d7\u05d8 ");

QString prose()
{
    std::mt19937 random(7);
    QString text;
    while (text.size() < 60'000)
        text += QString(qsizetype(1 + random() % 9), QChar(char16_t(u'a' + random() % 26))) +
                QLatin1String(random() % 12 == 0 ? ", " : " ");
    return text;
}

QString noBlanks()
{
    std::mt19937 random(9);
    QString text;
    while (text.size() < 60'000)
        text += QString::number(random(), 36) + u'_';
    return text;
}

const LongLine longLines[] = {
    {"prose", prose()},
    {"noBlanks", noBlanks()},
    {"words", repeated(QStringLiteral("some words of a long line; "), 9000)},
    {"tabsEverywhere", repeated(QStringLiteral("1\t22\t333\t4444\t"), 9000)},
    {"tabsFarBetween", sparseTabs()},
    {"onlyTabs", QString(5000, u'\t')},
    {"rightToLeft", repeated(hebrewWords, 9000)},
    {"rightToLeftTabs", repeated(hebrewWords + u'\t', 9000)},
};

class SeamsOfALongLine : public testing::TestWithParam<LongLine>
{};

TEST_P(SeamsOfALongLine, standWhereTheLineInOnePieceHasThem)
{
    const QString& text = GetParam().text;
    TextStorage storage;
    storage.replaceCharactersInRange({}, text);
    const TextFont font(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    TextGeometry geometry(storage, font);
    const LineLayout whole(text, font, {});
    geometry.setRightEdge(whole.rowWidth(0)); // where such a line begins
    const auto row = geometry.rowAt(0);
    for (TextOffset offset = 0; offset <= text.size(); offset += 7)
        ASSERT_NEAR(geometry.xOf(row, offset), whole.xAt(0, int(offset)), 0.5) << offset;
}

TEST_P(SeamsOfALongLine, keepTabsInStepWhereverOneJumpsTo)
{
    const QString& text = GetParam().text;
    TextStorage storage;
    storage.replaceCharactersInRange({}, text);
    const TextFont font(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const LineLayout whole(text, font, {});
    for (const TextOffset jump : {TextOffset(4500), text.size() - 100}) {
        TextGeometry geometry(storage, font);
        geometry.setRightEdge(whole.rowWidth(0));
        const auto row = geometry.rowAt(jump);
        // The distances within a screen are right though the places themselves are estimates.
        const double off = geometry.xOf(row, jump) - whole.xAt(0, int(jump));
        for (TextOffset offset = jump - 90; offset <= jump + 90; offset += 9)
            ASSERT_NEAR(geometry.xOf(row, offset) - whole.xAt(0, int(offset)), off, 0.5) << offset;
    }
}

TEST_P(SeamsOfALongLine, doNotShowInTheRowsOfAWrappedLine)
{
    const QString& text = GetParam().text;
    TextStorage storage;
    storage.replaceCharactersInRange({}, text);
    const TextFont font(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    const double width = 60 * font.advance();
    TextGeometry geometry(storage, font);
    geometry.setWrapWidth(width);
    const auto isFull = [&](const TextGeometry::Row& row, const TextGeometry::Row& next) {
        const QString joined = text.mid(row.range.location, row.range.length + next.range.length);
        const LineLayout both(joined, font,
                              {width, row.content.isEmpty() || !text.isRightToLeft()
                                          ? Qt::LeftToRight
                                          : Qt::RightToLeft});
        return both.rowEnd(0) == row.range.length;
    };
    // Down from the start every row is full. Up from the end, which nothing was shown above, the
    // rows follow from a cut a few chunks further up, where one row may be short.
    auto row = std::optional(geometry.rowAt(0));
    for (auto next = geometry.rowAfter(*row); next; next = geometry.rowAfter(*row)) {
        ASSERT_TRUE(isFull(*row, *next)) << row->range.location;
        row = next;
    }
    TextGeometry upwards(storage, font);
    upwards.setWrapWidth(width);
    int broken = 0;
    row = upwards.rowAt(text.size());
    for (auto before = upwards.rowBefore(*row); before; before = upwards.rowBefore(*row)) {
        ASSERT_EQ(before->range.end(), row->range.location);
        broken += isFull(*before, *row) ? 0 : 1;
        row = before;
    }
    EXPECT_LE(broken, text.size() / (6 * LineChunks::chunkLength));
}

INSTANTIATE_TEST_SUITE_P(Table, SeamsOfALongLine, testing::ValuesIn(longLines),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(LongLineEdits, typingInAWrappedLineLeavesEveryRowFull)
{
    ViewHarness harness(repeated(QStringLiteral("some words of a long line; "), 30'000));
    harness.view.setWrapLines(true);
    harness.editor.setSelectedRange({15'000, 0});
    harness.view.ensureVisible(15'000);
    harness.settle();
    TextGeometry& geometry = harness.view.textGeometry();
    for (int i = 0; i < 30; ++i) {
        harness.press({i % 3 == 2 ? QStringLiteral("Backspace") : QStringLiteral("'x'")});
        const auto rows = harness.view.textViewport().rows();
        for (const auto& visible : rows) {
            const double advance = geometry.font().advance();
            EXPECT_GT(geometry.widthOf(visible.row), geometry.wrapWidth() - 12 * advance) << i;
        }
    }
}

TEST(LongLineScrolling, theFirstLookAtALineTellsHowWideItIs)
{
    ViewHarness harness(repeated(QStringLiteral("iiiii"), 20'000) + u'\n' +
                        QString(200'000, QChar(0x2003))); // wider than a digit, in most fonts
    TextGeometry& geometry = harness.view.textGeometry();
    const auto row = geometry.rowAt(harness.storage.length());
    const double atFirst = geometry.widthOf(row);
    harness.press({QStringLiteral("Ctrl+End")});
    EXPECT_NEAR(geometry.widthOf(row), atFirst, atFirst / 100);
    EXPECT_NEAR(harness.view.textViewport().x() + harness.view.viewport()->width(),
                geometry.widthOf(row), 200);
    // The bar goes there, and back, though nothing between was ever laid out.
    QScrollBar& bar = *harness.view.horizontalScrollBar();
    bar.setValue(0);
    harness.settle();
    EXPECT_EQ(harness.view.textViewport().x(), 0);
    bar.setValue(bar.maximum());
    harness.settle();
    EXPECT_FALSE(harness.view.caretRectAt(harness.storage.length()).isEmpty());
    EXPECT_LT(harness.view.caretRectAt(harness.storage.length()).x(),
              harness.view.viewport()->width());
}

} // namespace

} // namespace quillory
