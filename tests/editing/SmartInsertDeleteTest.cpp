#include "editing/SmartInsertDelete.h"
#include "MarkedEditor.h"

#include <gtest/gtest.h>

namespace quillory {

namespace {

TEST(SmartInsertDeleteTest, takesOneSpaceAlong)
{
    const struct
    {
        const char* before;
        const char* after;
    } cases[]{
        {"one [two] three", "one |three"},
        {"[one] two", "|two"},
        {"one [two]", "one|"},
        {"one [two]\nthree", "one|\nthree"},
        {"one\n[two] three", "one\n|three"},
        {"[one]", "|"},
        {"[one]\ntwo", "|\ntwo"},
        // Signs.
        {"one [two], three", "one|, three"},
        {"one [two].", "one|."},
        {"(one [two])", "(one|)"},
        {"([one] two)", "(|two)"},
        {"([one])", "(|)"},
        {"say \"[one] two\"", "say \"|two\""},
        {"say \"one [two]\"", "say \"one|\""},
        {"say \u201cone [two]\u201d", "say \u201cone|\u201d"},
        {"x.[y] z", "x.| z"},
        {"a + [b] + c", "a + |+ c"},
        {"a [b]+ c", "a |+ c"},
        {"f([a], b)", "f(|, b)"},
        // Indentation and runs of spaces are somebody's own.
        {"    [one]", "    |"},
        {"    [one] two", "    |two"},
        {"\t [one]\n", "\t |\n"},
        {"one  [two]", "one  |"},
        {"one\t[two]\tthree", "one\t|\tthree"},
        // Several.
        {"[a] [b] c", "|c"},
        {"x [a] [b]", "x|"},
        {"[one] two [three] four", "|two |four"},
        {"[a]\n[b] c", "|\n|c"},
        {"| one {two} three", "| one |three"},
        {"\U0001f600 [two] \U0001f600", "\U0001f600 |\U0001f600"},
    };
    for (const auto& [before, after] : cases) {
        MarkedEditor editor(QString::fromUtf8(before));
        const std::string text = editor.marked();
        smartDelete(editor.view, QStringLiteral("Cut"));
        EXPECT_EQ(editor.marked(), after) << before;
        editor.view.undo();
        EXPECT_EQ(editor.marked(), text);
        EXPECT_FALSE(editor.undo.canUndo());
    }
}

TEST(SmartInsertDeleteTest, setsWordsApart)
{
    const struct
    {
        const char* text;
        const char* word;
        const char* after;
    } cases[]{
        {"one|", "two", "one two"},
        {"|one", "two", "two one"},
        {"on|ne", "two", "on two ne"},
        {"one |two", "x", "one x two"},
        {"one | two", "x", "one x two"},
        {"one [two] three", "x", "one x three"},
        {"(|)", "x", "(x)"},
        {"f(a, |)", "x", "f(a, x)"},
        {"one.|", "two", "one.two"},
        {"x_|", "y", "x_ y"},
        {"7|", "y", "7 y"},
        {"one|", "(two)", "one(two)"},
        {"one|", " two", "one two"},
        {"e\u0301|", "a", "e\u0301 a"},
        {"\U0001d400|", "\U0001d401", "\U0001d400 \U0001d401"},
        {"\u6f22|", "\u5b57", "\u6f22\u5b57"}, // no spaces in these scripts
        {"\u0e01|", "\u0e02", "\u0e01\u0e02"},
        {"|", "x", "x"},
        {"one|", "", "one"},
    };
    for (const auto& [text, word, after] : cases) {
        const MarkedEditor editor(QString::fromUtf8(text));
        const TextSnapshot& before = editor.view.string();
        const TextRange range = editor.view.selectedRange();
        const TextSnapshot inserted =
            smartlyInserted(before, range, TextSnapshot(QString::fromUtf8(word)));
        EXPECT_EQ(before.replacing(range, inserted).string().toStdString(), after) << text;
    }
}

} // namespace

} // namespace quillory
