#include "editing/TypewriterScroll.h"

#include <gtest/gtest.h>

namespace quillory {

namespace {

TEST(TypewriterScrollTest, choosesTheRowThatIsAnchored)
{
    const auto nothing = std::optional<AnchoredRow>();
    const auto top = [](TextOffset character) {
        return std::optional(AnchoredRow{character, false});
    };
    const auto bottom = [](TextOffset character) {
        return std::optional(AnchoredRow{character, true});
    };
    // "ab" and its break end at 3, the indented line at 8, the empty one at 9.
    const TextSnapshot text(QStringLiteral("ab\n    \n\nlast"));
    const struct
    {
        TextRange selection;
        TypedKey key;
        std::optional<AnchoredRow> row;
    } cases[]{
        {{2, 0}, TypedKey::Space, nothing},
        {{0, 9}, TypedKey::Space, nothing},
        {{2, 0}, TypedKey::Other, top(1)},
        {{3, 0}, TypedKey::Other, top(2)}, // at the start of a line it is the one before
        {{1, 4}, TypedKey::Other, top(4)},
        {{0, 0}, TypedKey::Other, top(0)},
        {{3, 0}, TypedKey::Return, bottom(2)},
        {{7, 0}, TypedKey::Return, bottom(2)}, // the new line was indented since
        {{9, 0}, TypedKey::Return, bottom(8)}, // below an empty line
        {{1, 0}, TypedKey::Return, bottom(0)},
    };
    for (const auto& [selection, key, row] : cases)
        EXPECT_EQ(constrainScrollRow(text, selection, key), row)
            << selection.location << " key " << int(key);
    EXPECT_EQ(constrainScrollRow({}, {}, TypedKey::Other), top(0));
    EXPECT_EQ(constrainScrollRow({}, {}, TypedKey::Return), bottom(0));
    EXPECT_EQ(simpleScrollRow({4, 3}), (AnchoredRow{6, true}));
    EXPECT_EQ(simpleScrollRow({}), (AnchoredRow{0, true}));
}

TEST(TypewriterScrollTest, anchorsAtAWholePixel)
{
    EXPECT_EQ(anchorHeight(400), 120);
    EXPECT_EQ(anchorHeight(399), 119);
    EXPECT_EQ(anchorHeight(2), 0);
}

} // namespace

} // namespace quillory
