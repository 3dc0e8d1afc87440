#include "commands/FunctionScan.h"

#include <ctime>
#include <gtest/gtest.h>

namespace quillory {
namespace {

const QString words = QStringLiteral("function \\w+");

NavigationItems itemsOf(const QString& text, const QString& pattern,
                        const std::optional<QString>& ignoring = {})
{
    return FunctionScan{TextSnapshot(text), pattern, ignoring}.run().value();
}

TEST(FunctionScan, FindsEveryMatchWithItsLine)
{
    struct Case
    {
        const char* name;
        QString text;
        QString pattern;
        std::optional<QString> ignoring;
        NavigationItems items;
    };
    const Case cases[] = {
        {"an empty text", QString(), words, {}, {}},
        {"no expression", u"function a"_qs, QString(), {}, {}},
        {"not an expression", u"function a"_qs, u"(("_qs, {}, {}},
        {"one at each end",
         u"function a\n\nfunction b"_qs,
         words,
         {},
         {{1, u"function a"_qs}, {3, u"function b"_qs}}},
        {"two in a line",
         u"x\nfunction a function b\n"_qs,
         words,
         {},
         {{2, u"function a"_qs}, {2, u"function b"_qs}}},
        {"whatever the case", u"FUNCTION A"_qs, words, {}, {{1, u"FUNCTION A"_qs}}},
        {"at the start of each line",
         u"a\nb\r\nc\u2028d"_qs,
         u"^\\w"_qs,
         {},
         {{1, u"a"_qs}, {2, u"b"_qs}, {3, u"c"_qs}, {4, u"d"_qs}}},
        {"one that begins with the break before it",
         u"x\ny\nfunction a"_qs,
         u"\\nfunction \\w"_qs,
         {},
         {{3, u"function a"_qs}}},
        {"with a break of two characters",
         u"x\r\nfunction a"_qs,
         u"\\r\\nfunction \\w"_qs,
         {},
         {{1, u"function a"_qs}}},
        {"the last break of the text", u"a\nb\n"_qs, u"\\n$"_qs, {}, {{2, QString()}}},
        {"nothing, at the text's end", u"a\nb"_qs, u"\\z"_qs, {}, {{2, QString()}}},
        {"nothing, behind the last break", u"a\nb\n"_qs, u"\\z"_qs, {}, {{2, QString()}}},
        {"an emptied label keeps its entry",
         u"function a"_qs,
         words,
         u"Function A"_qs,
         {{1, QString()}}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(itemsOf(c.text, c.pattern, c.ignoring), c.items) << c.name;
}

TEST(FunctionScan, LabelsAreCleanAndShort)
{
    const auto letters = [](int count) { return QString(count, u'x'); };
    struct Case
    {
        const char* name;
        QString matched;
        std::optional<QString> ignoring;
        QString label;
    };
    const Case cases[] = {
        {"blanks and breaks before", u" \t\n\r function foo() {"_qs, {}, u"function foo()"_qs},
        {"blanks and braces after", u"foo() {\t{ "_qs, {}, u"foo()"_qs},
        {"breaks after stay", u"foo()\n"_qs, {}, u"foo()\n"_qs},
        {"and keep what is before them", u"foo() {\n"_qs, {}, u"foo() {\n"_qs},
        {"nothing but what goes", u" {"_qs, {}, QString()},
        {"a part that is ignored", u"  function foo() {"_qs, u"FUNCTION "_qs, u"foo()"_qs},
        {"each time", u"static a(static b)"_qs, u"Static "_qs, u"a(b)"_qs},
        {"not as an expression", u"a.b acb"_qs, u"a.b"_qs, u" acb"_qs},
        {"nothing is ignored", u"foo"_qs, QString(), u"foo"_qs},
        {"61 units", letters(61), {}, letters(61)},
        {"62 units", letters(62), {}, letters(60) + u'…'},
        {"70 units", letters(70), {}, letters(60) + u'…'},
        {"62 units, of which one is ignored", u"y"_qs + letters(61), u"y"_qs, letters(61)},
        {"a pair where it is cut", letters(59) + u"😀xx"_qs, {}, letters(59) + u'…'},
        {"a pair before", letters(58) + u"😀xx"_qs, {}, letters(58) + u"😀…"_qs},
    };
    for (const Case& c : cases)
        EXPECT_EQ(navigationLabel(c.matched, c.ignoring), c.label) << c.name;
}

TEST(FunctionScan, NamesStandBelowEachOther)
{
    EXPECT_EQ(navigationTitle({999, u"a"_qs}), u"999\t\t a"_qs);
    EXPECT_EQ(navigationTitle({1000, u"a"_qs}), u"1000\t a"_qs);
}

TEST(FunctionScan, TakesALineNumberFromTheTextBeforeIt)
{
    struct Case
    {
        QString text;
        TextOffset offset;
        qint64 line;
    };
    for (const Case& c : {Case{QString(), 0, 0}, Case{u"a\nb"_qs, 0, 1}, Case{u"a\nb"_qs, 1, 1},
                          Case{u"a\nb"_qs, 2, 2}, Case{u"a\nb"_qs, 3, 2}, Case{u"a\nb\n"_qs, 4, 2},
                          Case{u"\n\n"_qs, 2, 2}})
        EXPECT_EQ(lineNumberAt(TextSnapshot(c.text), c.offset), c.line)
            << c.text.toStdString() << c.offset;
}

TEST(FunctionScan, CanBeStopped)
{
    const QString text = u"function a\n"_qs.repeated(10'000);
    int asked = 0;
    const FunctionScan scan{TextSnapshot(text), words, {}};
    EXPECT_FALSE(scan.run([&] { return ++asked > 3; }));
    // While nothing is found, too.
    asked = 0;
    const FunctionScan fruitless{TextSnapshot(text), u"function \\d"_qs, {}};
    EXPECT_FALSE(fruitless.run([&] { return ++asked > 3; }));
    EXPECT_EQ(asked, 4);
    EXPECT_EQ(scan.run([] { return false; })->size(), 10'000U);
}

TEST(FunctionScan, TakesTimeInProportion)
{
    const auto timeOf = [](int times) {
        const QString text = u"  static int f(int a, char b)\n{\n    return a + b;\n}\n"_qs;
        const FunctionScan scan{TextSnapshot(text.repeated(times)),
                                u"^[ \\t]*+(?:\\w+ )+\\w+\\([^)]*+\\)(?=\\s*\\{)"_qs,
                                u"static "_qs};
        std::clock_t best = std::numeric_limits<std::clock_t>::max(); // of processor time
        for (int i = 0; i < 3; ++i) {
            const std::clock_t start = std::clock();
            EXPECT_EQ(scan.run()->size(), size_t(times));
            best = std::min(best, std::clock() - start);
        }
        return best;
    };
    const std::clock_t small = timeOf(2'000);
    EXPECT_LT(timeOf(40'000), small * 20 * 4);
}

} // namespace
} // namespace quillory
