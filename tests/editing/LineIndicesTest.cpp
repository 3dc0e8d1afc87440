#include "editing/LineIndices.h"

#include "editing/RulerMeasures.h"

#include <QStringList>
#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

/// The same list, by walking over the text.
std::vector<TextOffset> walked(const QString& text)
{
    std::vector<TextOffset> starts{0};
    for (TextOffset i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        const bool beforeLf = unit == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n';
        if (!beforeLf && QStringView(u"\n\r\u2028\u2029").contains(unit))
            starts.push_back(i + 1);
    }
    return starts;
}

/// The line of an index, by halving the list.
qsizetype found(const std::vector<TextOffset>& starts, TextOffset index)
{
    size_t left = 0;
    size_t right = starts.size();
    while (right - left >= 2) {
        const size_t middle = (left + right) / 2;
        if (index < starts[middle])
            right = middle;
        else if (index > starts[middle])
            left = middle;
        else
            return qsizetype(middle);
    }
    return qsizetype(left);
}

void expectAsWalked(const QString& text)
{
    SCOPED_TRACE(text.toStdString());
    const LineIndices lines{TextSnapshot(text)};
    const std::vector<TextOffset> expected = walked(text);
    ASSERT_EQ(lines.count(), qsizetype(expected.size()));
    for (size_t line = 0; line < expected.size(); ++line)
        ASSERT_EQ(lines[qsizetype(line)], expected[line]) << line;
    for (TextOffset index = 0; index <= text.size() + 2; ++index)
        ASSERT_EQ(lines.lineNumberForCharacterIndex(index).value(), found(expected, index))
            << index;
}

TEST(LineIndices, areThoseOfAWalkOverTheText)
{
    for (const char16_t* text : {u"", u"a", u"\n", u"a\n", u"a\r\nb", u"\r\n\r\n", u"\n\r",
                                 u"\r\r\n", u"a\u2028b\u2029", u"\u0085\u000b\u000c"})
        expectAsWalked(QString::fromUtf16(text));
    std::mt19937 random(7);
    const QStringList pieces{QStringLiteral("a"),      QStringLiteral("\n"),
                             QStringLiteral("\r"),     QStringLiteral("\r\n"),
                             QStringLiteral("\u2028"), QStringLiteral("\u2029"),
                             QStringLiteral("tail  "), QStringLiteral("\U0001F600")};
    for (int round = 0; round < 100; ++round) {
        QString text;
        for (size_t i = random() % 60; i > 0; --i)
            text += pieces[qsizetype(random() % size_t(pieces.size()))];
        expectAsWalked(text);
    }
    expectAsWalked(QStringLiteral("some words\r\n").repeated(2000)); // over several leaves
}

TEST(RulerMeasures, followTheNumberOfLines)
{
    const struct
    {
        qsizetype lines;
        int digits;
    } cases[]{{1, 1},    {9, 1},    {10, 2},    {11, 2},        {99, 2},
              {100, 3},  {999, 3},  {1000, 4},  {999'999, 6},   {1'000'000, 7},
              {1001, 4}, {9999, 4}, {10000, 5}, {9'999'999, 7}, {2'000'000'000'000, 13}};
    for (const auto& [lines, digits] : cases)
        EXPECT_EQ(digitCount(lines), digits) << lines;
    EXPECT_EQ(requiredThickness(0), 22);
    EXPECT_EQ(requiredThickness(12), 22);
    EXPECT_EQ(requiredThickness(12.01), 23);
    EXPECT_EQ(requiredThickness(49), 59);
}

TEST(RulerMeasures, aLabelStandsAtTheMiddleOfItsRow)
{
    EXPECT_EQ(labelOffset(20, 14), 13);
    for (const double row : {8.0, 15.0, 60.0}) {
        for (const double label : {6.0, 15.0}) {
            const double top = labelOffset(row, label) - rulerOrigin;
            EXPECT_DOUBLE_EQ(top, row - label - top);
        }
    }
}

} // namespace
} // namespace quillory
