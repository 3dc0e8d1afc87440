#include "editing/LineNavigation.h"
#include "MarkedEditor.h"

#include <gtest/gtest.h>

namespace quillory {

namespace {

TEST(LineNavigationTest, selectsWholeLinesByTheirNumber)
{
    const struct
    {
        const char* text;
        qint64 number;
        const char* after; ///< with the caret at the start before where nothing happens
    } cases[]{
        {"a\nbc\n", 1, "{a\n}bc\n"},
        {"a\nbc\n", 2, "a\n{bc\n}"},
        {"a\nbc\n", 3, "a\nbc\n|"}, // behind the last break
        {"a\nbc\n", 4, "|a\nbc\n"},
        {"a\nbc", 2, "a\n{bc}"},
        {"a\nbc", 3, "a\n{bc}"}, // once more
        {"a\nbc", 4, "|a\nbc"},
        {"a\r\nb\rc\u2028d\u2029", 2, "a\r\n{b\r}c\u2028d\u2029"},
        {"a\r\nb\rc\u2028d\u2029", 4, "a\r\nb\rc\u2028{d\u2029}"},
        {"", 1, "|"},
        {"", 2, "|"},
        {"a", 0, "|a"},
        {"a", -7, "|a"},
        {"a", std::numeric_limits<qint64>::max(), "|a"},
    };
    for (const auto& [text, number, after] : cases) {
        MarkedEditor editor(QLatin1Char('|') + QString::fromUtf8(text));
        LineNavigation lines(editor.view);
        std::vector<TextRange> shown;
        QObject::connect(&lines, &LineNavigation::lineSelected,
                         [&](TextRange line) { shown.push_back(line); });
        lines.goToLineVoid(number);
        EXPECT_EQ(editor.marked(), after) << number << " in " << text;
        if (lineWithNumber(editor.view.string(), number))
            EXPECT_EQ(shown, std::vector{editor.view.selectedRange()});
        else
            EXPECT_TRUE(shown.empty());
    }
}

} // namespace

} // namespace quillory
