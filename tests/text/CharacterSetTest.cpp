#include "text/CharacterSet.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>

namespace quillory {
namespace {

TEST(CharacterSet, NamedSetsFollowTheGeneralCategories)
{
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        const auto category = U_GET_GC_MASK(UChar32(character));
        const bool isNewline = (character >= 0x0A && character <= 0x0D) || character == 0x85 ||
                               character == 0x2028 || character == 0x2029;
        const bool isBlank =
            (category & U_GC_ZS_MASK) != 0 || character == 0x09 || character == 0x200B;
        const bool isLetter = (category & (U_GC_L_MASK | U_GC_M_MASK)) != 0;
        const auto expect = [&](const CharacterSet& set, bool expected) {
            ASSERT_EQ(set.contains(character), expected) << quint32(character);
        };
        expect(CharacterSet::whitespace(), isBlank);
        expect(CharacterSet::newline(), isNewline);
        expect(CharacterSet::whitespaceAndNewline(), isBlank || isNewline);
        expect(CharacterSet::letter(), isLetter);
        expect(CharacterSet::alphanumeric(), isLetter || (category & U_GC_N_MASK) != 0);
        expect(CharacterSet::decimalDigit(), (category & U_GC_ND_MASK) != 0);
        expect(CharacterSet::symbol(), (category & U_GC_S_MASK) != 0);
        expect(CharacterSet::punctuation(), (category & U_GC_P_MASK) != 0);
        expect(CharacterSet::illegal(), (category & U_GC_CN_MASK) != 0);
        if (testing::Test::HasFatalFailure())
            return;
    }
}

TEST(CharacterSet, OddPlacesAreWhereTheyBelong)
{
    EXPECT_TRUE(CharacterSet::punctuation().contains(U'_'));
    for (const char32_t sign : U"$+<=>^`|~") {
        if (sign != 0) {
            EXPECT_TRUE(CharacterSet::symbol().contains(sign)) << int(sign);
        }
    }
    EXPECT_TRUE(CharacterSet::letter().contains(0x17000)); // a Tangut ideograph
    EXPECT_FALSE(CharacterSet::illegal().contains(0xD800));
    EXPECT_TRUE(CharacterSet::illegal().contains(0xFFFF));
    EXPECT_FALSE(CharacterSet::letter().contains(0x110000));
    EXPECT_FALSE(CharacterSet::letter().inverted().contains(0x110000));
}

TEST(CharacterSet, SetsAreMadeFromSets)
{
    const CharacterSet marks(u"_:@#");
    const CharacterSet starts = CharacterSet::letter().withCharacters(u"_:@#");
    EXPECT_EQ(starts, CharacterSet::letter().united(marks));
    EXPECT_EQ(starts.withoutCharacters(u"_:@#"), CharacterSet::letter());
    EXPECT_NE(starts, CharacterSet::letter());
    EXPECT_TRUE(starts.contains(U'@'));
    EXPECT_FALSE(CharacterSet::letter().contains(U'@')) << "the first set changed";
    EXPECT_EQ(starts.inverted().inverted(), starts);
    EXPECT_FALSE(starts.inverted().contains(U'@'));
    EXPECT_TRUE(starts.inverted().contains(U' '));
    EXPECT_TRUE(starts.inverted().contains(0xD800));

    const CharacterSet wide(u"a\U0001F600");
    EXPECT_TRUE(wide.contains(0x1F600));
    EXPECT_FALSE(wide.contains(0xD83D));
    EXPECT_FALSE(wide.withoutCharacters(u"\U0001F600").contains(0x1F600));
    EXPECT_EQ(CharacterSet(), CharacterSet(u""));
    EXPECT_FALSE(CharacterSet().contains(0));
}

} // namespace
} // namespace quillory
