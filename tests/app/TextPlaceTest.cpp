#include "app/TextPlace.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

TEST(TextPlaceTest, countsCharactersInLines)
{
    // Line 2 holds a surrogate pair at its second character, line 1 ends in CR LF.
    const TextSnapshot text(QStringView(u"ab\r\nx😀y\nlast"));
    struct
    {
        TextOffset offset;
        TextPlace place;
    } const cases[]{
        {0, {1, 1}}, {2, {1, 3}}, {4, {2, 1}}, {5, {2, 2}}, {7, {2, 3}}, {9, {3, 1}}, {13, {3, 5}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(placeOf(text, c.offset), c.place) << c.offset;
        EXPECT_EQ(offsetOf(text, c.place), c.offset) << c.offset;
    }
    EXPECT_EQ(characterCount(text, text.range()), 11);
    EXPECT_EQ(offsetOf(text, {2, 99}), 8) << "past the line's end";
    EXPECT_EQ(offsetOf(text, {99, 1}), 9) << "past the last line";
    EXPECT_EQ(offsetOf(TextSnapshot(), {5, 5}), 0);
}

TEST(TextPlaceTest, countsUnitsInVeryLongLines)
{
    const TextOffset length = 2 * longestCounted;
    const TextSnapshot text(QString(QString(length, u'a') + QStringLiteral("😀")));
    EXPECT_EQ(placeOf(text, length + 2), (TextPlace{1, length + 3}));
    EXPECT_EQ(offsetOf(text, {1, length + 1}), length);
    EXPECT_EQ(offsetOf(text, {1, 10 * length}), text.length());
}

} // namespace
} // namespace quillory
