#include "ViewHarness.h"

#include "text/TextBoundary.h"

#include <QFontDatabase>

namespace quillory {

namespace {

struct GeometryCase
{
    const char* name;
    QString text;
};

const GeometryCase geometryCases[] = {
    {"ascii", QStringLiteral("one\n\ntwo three\nfour")},
    {"endsInBreak", QStringLiteral("one\r\ntwo\r\n")},
    {"tabs", QStringLiteral("\tone\ttwo\t\tx\n\t\t")},
    {"wide", QStringLiteral("\u65e5\u672c\u8a9e and \u4e00\n\u4e8c")},
    {"combining", QStringLiteral("e\u0301a\u0308\u0323 x\u0301\u0301\u0301 o\n\u0301start")},
    {"emoji", QStringLiteral("\U0001F600 \U0001F468\u200D\U0001F469\u200D\U0001F467 x")},
    {"controls", QStringLiteral("a\u0001b\u007Fc\u0085d\uFFFCe") + QChar(0) + QStringLiteral("f")},
    {"surrogates", QStringLiteral("a") + QChar(0xD800) + QStringLiteral("b") + QChar(0xDC00) +
                       QStringLiteral("c")},
    {"longAscii", repeated(QStringLiteral("{\"key\": 12345, \"other\": [1, 2]}, "), 9000)},
    {"longWithoutBlanks", QString(7000, u'x')},
    {"longTabs", repeated(QStringLiteral("1\t22\t333\t"), 7000)},
    {"longWide", repeated(QStringLiteral("\u65e5\u672c\u8a9ee\u0301 x"), 7000)},
    {"longMarks", QString(5000, QChar(0x0301))},
    {"longEmoji", repeated(QStringLiteral("\U0001F600"), 7000)},
};

class TextGeometryRoundTrip
    : public testing::TestWithParam<std::tuple<GeometryCase, bool /*wraps*/>>
{};

TEST_P(TextGeometryRoundTrip, everyCharacterIsFoundWhereItShows)
{
    const auto& [row, wraps] = GetParam();
    TextStorage storage;
    storage.replaceCharactersInRange({}, row.text);
    const TextFont font(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    TextGeometry geometry(storage, font);
    geometry.setWrapWidth(wraps ? 40 * font.advance() : 0);
    const TextSnapshot& text = storage.snapshot();

    TextOffset previous = -1;
    double previousX = 0;
    for (TextOffset offset = 0; previous < text.length(); offset = characterAfter(text, offset)) {
        if (offset == previous)
            break;
        const auto place = geometry.rowAt(offset);
        ASSERT_LE(place.range.location, offset);
        ASSERT_GE(place.range.end(), offset);
        const double x = geometry.xOf(place, offset);
        const TextOffset found = geometry.offsetAt(place, x + 0.1);
        // A mark with nothing to stand on takes no room, and a thousand of them hardly any.
        if (geometry.xOf(place, found) != x && qstrcmp(row.name, "longMarks") != 0) {
            ASSERT_EQ(found, offset) << x;
        }
        const bool sameRow = previous >= place.range.location;
        if (sameRow && !text.string({previous, 1}).at(0).isMark()) {
            ASSERT_GE(x + 1e-6, previousX) << offset;
        }
        previous = offset;
        previousX = x;
    }
}

TEST_P(TextGeometryRoundTrip, rowsCoverTheTextInBothDirections)
{
    const auto& [row, wraps] = GetParam();
    TextStorage storage;
    storage.replaceCharactersInRange({}, row.text);
    const TextFont font(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    TextGeometry geometry(storage, font);
    geometry.setWrapWidth(wraps ? 40 * font.advance() : 0);

    std::vector<TextRange> down;
    std::optional<TextGeometry::Row> last;
    for (auto at = std::optional(geometry.rowAt(0)); at; at = geometry.rowAfter(*at)) {
        const TextOffset expected = !last              ? 0
                                    : last->endsLine() ? storage.snapshot().line(last->line).end()
                                                       : last->range.end();
        ASSERT_EQ(at->range.location, expected);
        down.push_back(at->range);
        last = at;
    }
    EXPECT_EQ(last->range.end(), storage.length());
    std::vector<TextRange> up;
    for (auto at = last; at; at = geometry.rowBefore(*at))
        up.insert(up.begin(), at->range);
    EXPECT_EQ(up, down);
}

INSTANTIATE_TEST_SUITE_P(Table, TextGeometryRoundTrip,
                         testing::Combine(testing::ValuesIn(geometryCases), testing::Bool()),
                         [](const auto& instance) {
                             return std::string(std::get<0>(instance.param).name) +
                                    (std::get<1>(instance.param) ? "Wrapped" : "");
                         });

TEST(TextGeometry, theSeamsOfALongLineDoNotShow)
{
    // The same characters in one piece and cut into chunks stand at the same places.
    const QString words = repeated(QStringLiteral("some words of a long line; "), 6000);
    TextStorage storage;
    storage.replaceCharactersInRange({}, words);
    const TextFont font(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    TextGeometry geometry(storage, font);
    const LineLayout whole(words, font, {});
    const auto row = geometry.rowAt(0);
    for (TextOffset offset = 0; offset <= words.size(); offset += 7)
        ASSERT_NEAR(geometry.xOf(row, offset), whole.xAt(0, int(offset)), 0.5) << offset;
}

} // namespace

} // namespace quillory
