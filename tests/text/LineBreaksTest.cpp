#include "text/LineBreaks.h"

#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

/// The conversion as its definition has it: one literal replacement after the other.
QString replacedInTurn(QString text, int format)
{
    const QString lf(u'\n');
    const QString cr(u'\r');
    const QString crLf = cr + lf;
    if (format == 3)
        return text.replace(crLf, lf).replace(cr, lf).replace(lf, crLf);
    if (format == 2)
        return text.replace(crLf, cr).replace(lf, cr);
    return text.replace(crLf, lf).replace(cr, lf);
}

TEST(LineBreaks, FormatIsThatOfTheFirstCarriageReturn)
{
    struct Case
    {
        QStringView text;
        int format;
    };
    const Case cases[] = {
        {u"", 1},       {u"abc", 1},       {u"a\nb", 1},     {u"a\rb", 2},
        {u"a\r\nb", 3}, {u"a\nb\r\nc", 3}, {u"a\r", 2},      {u"a\n\rb", 2},
        {u"\r\r\n", 2}, {u"\r\n\r", 3},    {u"a\u2028b", 1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(int(detectLBFormat(TextSnapshot(c.text))), c.format)
            << c.text.toUtf8().constData();
    // Where the pair meets the end of a leaf.
    for (const TextOffset before : {4094, 4095, 4096, 4097}) {
        const QString text = QString(before, u'x') % u"\r\n";
        EXPECT_EQ(detectLBFormat(TextSnapshot(text)), LineBreakFormat::windowsCrLf);
    }
}

TEST(LineBreaks, ConvertsAsReplacementsInTurnWould)
{
    std::mt19937 random(5);
    for (int round = 0; round < 100; ++round) {
        QString text;
        const unsigned plain = round % 3 == 0 ? 1000 : 3; // few breaks, or many
        const qsizetype length = qsizetype(random() % 20000);
        while (text.size() < length) {
            const QChar breaks[] = {u'\n', u'\r', u'\u2028', u'\u0436'};
            text +=
                random() % plain == 0 ? breaks[random() % (round % 2 == 0 ? 2 : 4)] : QChar(u'x');
        }
        const TextSnapshot snapshot(text);
        for (const int format : {0, 1, 2, 3, 17}) {
            const TextSnapshot result = converted(snapshot, LineBreakFormat(format));
            ASSERT_TRUE(result.string() == replacedInTurn(text, format)) << round << ' ' << format;
            EXPECT_TRUE(converted(result, LineBreakFormat(format)).isSameTree(result));
        }
        const LineBreakCounts counts = lineBreakCounts(snapshot);
        EXPECT_EQ(counts.crLf, text.count(u"\r\n"_qs));
        EXPECT_EQ(counts.lf, text.count(u'\n') - counts.crLf);
        EXPECT_EQ(counts.cr, text.count(u'\r') - counts.crLf);
        EXPECT_EQ(counts.separators, text.count(u'\u2028'));
    }
}

TEST(LineBreaks, MixedMeansMoreThanOneKind)
{
    EXPECT_FALSE(lineBreakCounts(TextSnapshot(u"a\r\nb\r\n")).isMixed());
    EXPECT_FALSE(lineBreakCounts(TextSnapshot(u"a\u2028b\n")).isMixed());
    EXPECT_TRUE(lineBreakCounts(TextSnapshot(u"a\r\nb\n")).isMixed());
    EXPECT_TRUE(lineBreakCounts(TextSnapshot(u"a\rb\n")).isMixed());
}

TEST(LineBreaks, LabelsTellTheFormat)
{
    EXPECT_EQ(label(LineBreakFormat(0)), u"UNIX (LF)");
    EXPECT_EQ(label(LineBreakFormat(1)), u"Unix (LF)");
    EXPECT_EQ(label(LineBreakFormat(2)), u"Mac (CR)");
    EXPECT_EQ(label(LineBreakFormat(3)), u"Windows (CRLF)");
    EXPECT_EQ(label(LineBreakFormat(4)), u"UNIX (LF)");
}

} // namespace
} // namespace quillory
