#include "view/LongestLine.h"

#include <gtest/gtest.h>
#include <random>

namespace quillory {

namespace {

TEST(LongestLine, isFoundInTextsOfAnyShape)
{
    std::mt19937 random(11);
    for (int round = 0; round < 200; ++round) {
        const int longest = 1 << (random() % 15);
        QString text;
        while (text.size() < 60'000 && random() % 200 != 0) {
            text += QString(qsizetype(random() % uint(longest)), u'x');
            text += random() % 2 == 0 ? QStringLiteral("\n") : QStringLiteral("\r\n");
        }
        if (random() % 2 == 0)
            text += QString(longest, u'y');
        const TextSnapshot snapshot(text);
        const TextOffset offset = offsetInLongestLine(snapshot);
        ASSERT_EQ(snapshot.lineContent(snapshot.lineAt(offset)).length, snapshot.longestLine())
            << round;
    }
}

TEST(LongestLine, tellsItsDirection)
{
    const QString hebrew = QStringLiteral("\u05e9\u05dc\u05d5\u05dd");
    for (const auto& [text, rightToLeft] :
         {std::pair<QString, bool>(QStringLiteral("one\n") + hebrew, true),
          {QStringLiteral("three\n") + hebrew, false},
          {hebrew + QStringLiteral(" one\nthree"), true},
          {QString(), false}}) {
        LongestLine longest;
        longest.follow(TextSnapshot(text));
        EXPECT_EQ(longest.isRightToLeft(), rightToLeft) << text.toStdString();
    }
}

} // namespace

} // namespace quillory
