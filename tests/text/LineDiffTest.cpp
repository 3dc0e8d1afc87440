#include "text/LineDiff.h"

#include "text/WordDiff.h"

#include <QStringList>
#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

TextSnapshot textOf(const QString& string)
{
    return TextSnapshot(string);
}

QStringList linesOf(const TextSnapshot& text)
{
    QStringList lines;
    for (qsizetype i = 0; i < text.lineCount(); ++i)
        lines.append(text.string(text.line(LineIndex(i))));
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

/// What the differences make of \a left, with its other lines.
TextSnapshot applied(const TextSnapshot& left, const TextSnapshot& right,
                     const LineDifferences& differences)
{
    std::vector<TextEdit> edits;
    for (const LineDifference& difference : differences)
        edits.push_back(
            {rangeOf(left, difference.left), right.slice(rangeOf(right, difference.right))});
    return left.replacing(edits);
}

qsizetype changedLines(const LineDifferences& differences)
{
    qsizetype count = 0;
    for (const LineDifference& difference : differences)
        count += difference.left.count + difference.right.count;
    return count;
}

/// As many lines as can be in common, by the plain table.
qsizetype commonLines(const QStringList& left, const QStringList& right)
{
    std::vector<std::vector<qsizetype>> table(size_t(left.size()) + 1,
                                              std::vector<qsizetype>(size_t(right.size()) + 1));
    for (size_t i = 1; i < table.size(); ++i) {
        for (size_t j = 1; j < table[i].size(); ++j)
            table[i][j] = left[qsizetype(i) - 1] == right[qsizetype(j) - 1]
                              ? table[i - 1][j - 1] + 1
                              : std::max(table[i - 1][j], table[i][j - 1]);
    }
    return table.back().back();
}

class RandomTexts
{
public:
    explicit RandomTexts(unsigned seed) : m_random(seed) {}

    int upTo(int most) { return std::uniform_int_distribution(0, most)(m_random); }

    QString lines(int most, int kinds)
    {
        static const QStringList breaks{QStringLiteral("\n"), QStringLiteral("\n"),
                                        QStringLiteral("\r\n"), QStringLiteral("\r")};
        QString text;
        for (int i = upTo(most); i > 0; --i)
            text += QString(QChar(u'a' + upTo(kinds))) + breaks[upTo(3)];
        if (upTo(2) == 0)
            text += u'z';
        return text;
    }

private:
    std::mt19937 m_random;
};

TEST(LineDiffTest, DifferencesAreTrueAndAsFewAsCanBe)
{
    RandomTexts random(8);
    for (int i = 0; i < 4000; ++i) {
        const int kinds = random.upTo(12);
        const TextSnapshot left = textOf(random.lines(i % 40, kinds));
        const TextSnapshot right = textOf(random.lines(i % 31, kinds));
        const auto differences = lineDifferences(left, right);
        ASSERT_TRUE(differences);
        ASSERT_EQ(applied(left, right, *differences).string(), right.string())
            << qPrintable(left.string());
        const QStringList ours = linesOf(left);
        const QStringList theirs = linesOf(right);
        ASSERT_EQ(changedLines(*differences),
                  ours.size() + theirs.size() - 2 * commonLines(ours, theirs))
            << qPrintable(left.string()) << "\n--\n"
            << qPrintable(right.string());
        // Apart, and each with something in it.
        for (size_t j = 0; j < differences->size(); ++j) {
            const LineDifference& difference = (*differences)[j];
            ASSERT_GT(difference.left.count + difference.right.count, 0);
            if (j > 0) {
                const LineDifference& before = (*differences)[j - 1];
                ASSERT_EQ(difference.left.first - before.left.end(),
                          difference.right.first - before.right.end());
                ASSERT_GT(difference.left.first, before.left.end());
            }
        }
    }
}

TEST(LineDiffTest, SingleCases)
{
    struct Case
    {
        const char* left;
        const char* right;
        std::vector<std::array<int, 4>> expected; ///< first and count, left and right
    };
    const Case cases[]{
        {"", "", {}},
        {"a\nb\n", "a\nb\n", {}},
        {"", "a\n", {{0, 0, 0, 1}}},
        {"a\nb\nc\n", "a\nc\n", {{1, 1, 1, 0}}},
        {"a\nb\nc\n", "a\nB\nc\n", {{1, 1, 1, 1}}},
        {"a", "a\n", {{0, 1, 0, 1}}},           // the last break counts
        {"a\r\nb\n", "a\nb\n", {{0, 1, 0, 1}}}, // and so does its kind
        {"x\r\n", "x\r\ry\n", {{0, 1, 0, 3}}},  // a CR that the one LF belongs to
        {"a\nb\n\nc\n", "b\n\nd\n", {{0, 1, 0, 0}, {3, 1, 2, 1}}},
    };
    for (const Case& sample : cases) {
        const auto found = lineDifferences(textOf(QString::fromUtf8(sample.left)),
                                           textOf(QString::fromUtf8(sample.right)));
        LineDifferences expected;
        for (const auto& [a, b, c, d] : sample.expected)
            expected.push_back({{LineIndex(a), b}, {LineIndex(c), d}});
        EXPECT_EQ(found, expected) << sample.left << "--\n" << sample.right;
    }
}

/// Lines that occur often, in another order: the worst that can be asked.
QString shuffled(int lines, int kinds, unsigned seed)
{
    std::mt19937 random(seed);
    QString text;
    for (int i = 0; i < lines; ++i)
        text += QString::number(random() % unsigned(kinds)) + u'\n';
    return text;
}

TEST(LineDiffTest, WorkIsBounded)
{
    const TextSnapshot left = textOf(shuffled(50'000, 300, 1));
    const TextSnapshot right = textOf(shuffled(50'000, 300, 2));
    int questions = 0;
    const auto differences = lineDifferences(left, right, [&] {
        ++questions;
        return true;
    });
    ASSERT_TRUE(differences);
    EXPECT_EQ(applied(left, right, *differences), right);
    EXPECT_LT(changedLines(*differences), 100'000);
    EXPECT_LT(questions, 8'000); // one in some 65,000 steps

    EXPECT_FALSE(
        lineDifferences(left, right, [&] { return --questions > 0 && questions % 50 != 0; }));
}

TEST(LineDiffTest, LinesThatMovedFarPairUpWhereTheyAreUnique)
{
    // Too much is different for a shortest answer, but the numbered lines hold it together.
    QString left;
    QString right;
    for (int i = 0; i < 40'000; ++i) {
        const QString line = QStringLiteral("line %1\n").arg(i);
        left += line + QStringLiteral("{\n") + QString::number(i % 7) + QStringLiteral("\n}\n");
        right += QStringLiteral("}\n{\n{\n") + line + QString::number(i % 5) + u'\n';
    }
    const auto differences = lineDifferences(textOf(left), textOf(right));
    ASSERT_TRUE(differences);
    EXPECT_EQ(applied(textOf(left), textOf(right), *differences).string(), right);
    EXPECT_LE(changedLines(*differences), 320'000 - 2 * 40'000);
}

TEST(WordDiffTest, WordsAndSigns)
{
    struct Case
    {
        const char* left;
        const char* right;
        QStringList onlyLeft;
        QStringList onlyRight;
    };
    const Case cases[]{
        {"int count = 1;", "int total = 1;", {u"count"_qs}, {u"total"_qs}},
        {"call(a, b)", "call(a, b, c)", {}, {u", c"_qs}},
        {"größer als ich", "größer als du", {u"ich"_qs}, {u"du"_qs}},
        {"one\ntwo three\n", "one\nthree\nfour\n", {u"two "_qs}, {u"four\n"_qs}},
        {"completely", "different!", {}, {}}, // nothing in common
        {"same", "same", {}, {}},
        {"", "new", {}, {}},
    };
    for (const Case& sample : cases) {
        const QString left = QString::fromUtf8(sample.left);
        const QString right = QString::fromUtf8(sample.right);
        const WordDifferences found = wordDifferences(left, right);
        const auto strings = [](const QString& text, const std::vector<TextRange>& ranges) {
            QStringList list;
            for (const TextRange& range : ranges)
                list.append(text.sliced(range.location, range.length));
            return list;
        };
        EXPECT_EQ(strings(left, found.left), sample.onlyLeft) << sample.left;
        EXPECT_EQ(strings(right, found.right), sample.onlyRight) << sample.right;
    }
}

} // namespace
} // namespace quillory
