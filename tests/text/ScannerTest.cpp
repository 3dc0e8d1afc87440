#include "text/Scanner.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

Scanner scannerOf(QStringView text, const CharacterSet& skipped = {})
{
    Scanner scanner{TextSnapshot(text)};
    scanner.setCharactersToBeSkipped(skipped);
    return scanner;
}

TEST(Scanner, StringsAreTakenWhereTheyStand)
{
    Scanner scanner = scannerOf(u"<div class>");
    EXPECT_FALSE(scanner.scanString(u"<DIV")) << "case matters";
    EXPECT_FALSE(scanner.scanString(u"div"));
    EXPECT_EQ(scanner.scanLocation(), 0);
    EXPECT_TRUE(scanner.scanString(u"<div"));
    EXPECT_EQ(scanner.scannedString(), u"<div");
    EXPECT_FALSE(scanner.scanString(u"class")) << "no blank is skipped";
    EXPECT_FALSE(scanner.scanString(u""));
    EXPECT_FALSE(scanner.scanString(u" class>more"));
    EXPECT_TRUE(scanner.scanString(u" class>"));
    EXPECT_TRUE(scanner.isAtEnd());
    EXPECT_FALSE(scanner.scanString(u">"));
}

TEST(Scanner, UpToStopsBeforeWhatIsSoughtOrAtTheEnd)
{
    Scanner scanner = scannerOf(u"one -- two");
    EXPECT_TRUE(scanner.scanUpToString(u"--"));
    EXPECT_EQ(scanner.scannedRange(), (TextRange{0, 4}));
    EXPECT_FALSE(scanner.scanUpToString(u"--")) << "nothing lies before it";
    EXPECT_EQ(scanner.scanLocation(), 4);
    EXPECT_TRUE(scanner.scanUpToString(u"three"));
    EXPECT_EQ(scanner.scannedString(), u"-- two");
    EXPECT_TRUE(scanner.isAtEnd());
    EXPECT_FALSE(scanner.scanUpToString(u"three"));
}

TEST(Scanner, SetsAreScannedByWholeCharacters)
{
    const CharacterSet& letters = CharacterSet::letter();
    Scanner scanner = scannerOf(u"ab\U00010400\U0001F600 c\xD800");
    EXPECT_TRUE(scanner.scanCharactersFromSet(letters));
    EXPECT_EQ(scanner.scannedRange(), (TextRange{0, 4})); // U+10400 is a letter of two units
    EXPECT_FALSE(scanner.scanCharactersFromSet(letters));
    EXPECT_TRUE(scanner.scanUpToCharactersFromSet(letters));
    EXPECT_EQ(scanner.scannedRange(), (TextRange{4, 3}));
    EXPECT_FALSE(scanner.scanUpToCharactersFromSet(letters));
    EXPECT_TRUE(scanner.scanUpToCharactersFromSet(CharacterSet(u";")));
    EXPECT_EQ(scanner.scanLocation(), 9) << "the unpaired surrogate is a character";
}

TEST(Scanner, SkippedCharactersComeBeforeAStepOnly)
{
    Scanner scanner{TextSnapshot(u" \t\u200Bkey = value \n")};
    EXPECT_TRUE(scanner.scanUpToString(u"="));
    EXPECT_EQ(scanner.scannedString(), u"key ");
    EXPECT_TRUE(scanner.scanString(u"="));
    EXPECT_FALSE(scanner.scanUpToString(u"value")) << "only skipped characters lie before it";
    EXPECT_EQ(scanner.scanLocation(), 8) << "a step that fails moves nothing";
    EXPECT_FALSE(scanner.isAtEnd());
    EXPECT_TRUE(scanner.scanCharactersFromSet(CharacterSet::letter()));
    EXPECT_EQ(scanner.scannedString(), u"value");
    EXPECT_TRUE(scanner.isAtEnd());
    EXPECT_NE(scanner.scanLocation(), scanner.text().length());
    EXPECT_FALSE(scanner.scanUpToString(u"more"));
}

TEST(Scanner, LocationStaysInsideTheText)
{
    Scanner scanner = scannerOf(u"abc");
    scanner.setScanLocation(99);
    EXPECT_EQ(scanner.scanLocation(), 3);
    scanner.setScanLocation(-1);
    EXPECT_EQ(scanner.scanLocation(), 0);
    scanner.setScanLocation(2);
    EXPECT_TRUE(scanner.scanString(u"c"));
    EXPECT_TRUE(scannerOf(u"").isAtEnd());
}

} // namespace
} // namespace quillory
