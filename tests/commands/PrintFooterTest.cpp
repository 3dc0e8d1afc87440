#include "commands/PrintFooter.h"

#include "foundation/UserDefaults.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

class PrintFooterTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(QStringLiteral("Quillory.conf"))};
};

TEST_F(PrintFooterTest, isMadeOfWhatTheUserAsksFor)
{
    EXPECT_EQ(PrintFooter::from(defaults).text(2, 5), QString());

    defaults.setValue(keys::footerIncludeTitle, true);
    EXPECT_EQ(PrintFooter::from(defaults).text(2, 5), QStringLiteral("(null) | "));
    defaults.setValue(keys::footerTitle, QStringLiteral("Notes"));
    defaults.setValue(keys::footerAuthor, QStringLiteral("Ann"));
    EXPECT_EQ(PrintFooter::from(defaults).text(2, 5), QStringLiteral("Notes | "));
    defaults.setValue(keys::footerIncludeAuthor, true);
    defaults.setValue(keys::prefsPrintNumbers, 1);

    const QString names = QStringLiteral("Notes | Ann | ");
    const struct
    {
        int style;
        const char16_t* text;
    } styles[] = {{0, u"2"},           {1, u"-- 2 --"}, {2, u"Page 2"},
                  {3, u"Page 2 of 5"}, {7, u""},        {-1, u""}};
    for (const auto& [style, text] : styles) {
        defaults.setValue(keys::prefsPrintNumbersTag, style);
        EXPECT_EQ(PrintFooter::from(defaults).text(2, 5), names + QStringView(text)) << style;
    }
    defaults.setValue(keys::prefsPrintNumbers, 0);
    EXPECT_EQ(PrintFooter::from(defaults).text(2, 5), names);
}

TEST_F(PrintFooterTest, standsInTheLowerMargin)
{
    EXPECT_EQ(PrintFooter::from(defaults).top(842, 12), 842 - 31);
    defaults.setValue(keys::prefsPrintNumbers, 1);
    EXPECT_EQ(PrintFooter::from(defaults).top(842, 12), 842 - 41);
}

TEST_F(PrintFooterTest, leavesOutTheFirstPageAndChoosesItsFont)
{
    EXPECT_TRUE(PrintFooter::from(defaults).isShownOn(1));
    defaults.setValue(keys::prefsSkip1Page, true);
    EXPECT_FALSE(PrintFooter::from(defaults).isShownOn(1));
    EXPECT_TRUE(PrintFooter::from(defaults).isShownOn(2));

    defaults.setValue(keys::plainFontName, QStringLiteral("Plain"));
    defaults.setValue(keys::convertedFontName, QStringLiteral("Converted"));
    EXPECT_EQ(PrintFooter::from(defaults).fontName, QStringLiteral("Plain"));
    defaults.setValue(keys::convertMarkdown, true);
    EXPECT_EQ(PrintFooter::from(defaults).fontName, QStringLiteral("Converted"));
}

} // namespace
} // namespace quillory
