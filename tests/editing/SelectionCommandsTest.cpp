#include "editing/SelectionCommands.h"
#include "text/TextBoundary.h"

#include "MarkedEditor.h"

#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

/// Runs \a operation, and expects that one step takes back what it edited.
template<class Operation>
void expectChange(const char* before, const char* after, Operation&& operation)
{
    MarkedEditor editor(QString::fromLatin1(before));
    operation(editor.view);
    EXPECT_EQ(editor.marked(), after) << "from " << before;
    if (!editor.undo.canUndo())
        return;
    editor.view.undo();
    EXPECT_EQ(editor.marked(), before);
    editor.view.redo();
    EXPECT_EQ(editor.marked(), after) << "redone from " << before;
}

TEST(SelectionCommands, PastingGivesEachSelectionItsLineWhereTheirNumbersAgree)
{
    struct Case
    {
        const char* before;
        const char* pasted;
        const char* after;
    };
    const Case cases[] = {
        {"a|b|c", "1\n2", "a1|b2|c"},
        {"a|b|c", "1\r\n2\n", "a1|b2|c"}, // the last line is ended, not followed by another
        {"[a]b{c}d|", "1\n2\n3", "1|b2|d3|"},
        {"a|b|c", "1\n2\n3", "a1\n2\n3|b1\n2\n3|c"},
        {"a|b|c", "1", "a1|b1|c"},
        {"a|b|", "\n", "a\n|b\n|"},
        {"a|b|c|", "\n\n\n", "a|b|c|"}, // an empty line each
        {"a|b", "1\n2", "a1\n2|b"},
    };
    for (const Case& c : cases)
        expectChange(c.before, c.after, [&](QPTextView& view) {
            pasteText(view, TextSnapshot(QString::fromLatin1(c.pasted)), {}, QString());
        });
    // Parts are given as they were copied, line breaks in them included.
    const std::vector<TextRange> parts{{0, 3}, {4, 1}};
    expectChange("a|b|", "a1\n2|b3|", [&](QPTextView& view) {
        pasteText(view, TextSnapshot(u"1\n2\n3"), parts, QString());
    });
}

TEST(SelectionCommands, SplittingLeavesASelectionOnEachLine)
{
    struct Case
    {
        const char* before;
        const char* after;
    };
    const Case cases[] = {
        {"a[b\ncd\r\ne]f", "a[b]\n[cd]\r\n[e]f"},
        {"{ab\ncd\n}ef", "[ab]\n[cd]\nef"},
        {"[ab\n\ncd]", "[ab]\n|\n[cd]"},
        {"a|b\n[c\nd]", "a|b\n[c]\n[d]"},
        {"a[b]c", "a[b]c"},
        {"ab[\n]c", "ab|\nc"},
    };
    for (const Case& c : cases)
        expectChange(c.before, c.after, splitSelectionsIntoLines);
}

TEST(SelectionCommands, OneOfSeveralIsTakenAway)
{
    struct Case
    {
        const char* before;
        TextOffset offset;
        const char* after; ///< null where nothing is there to take
    };
    const Case cases[] = {
        {"a|b|c", 1, "ab|c"},      {"a|b|c", 2, "a|bc"},     {"a|b|c", 3, nullptr},
        {"|a[bcd]e", 2, "|abcde"}, {"|a[bcd]e", 1, nullptr}, {"|a[bcd]e", 4, nullptr},
        {"a|b", 1, nullptr},
    };
    for (const Case& c : cases) {
        MarkedEditor editor(QString::fromLatin1(c.before));
        EXPECT_EQ(removeSelectionAt(editor.view, c.offset), c.after != nullptr);
        EXPECT_EQ(editor.marked(), c.after ? c.after : c.before);
    }
}

TEST(SelectionCommands, DroppedTextIsSelectedAndMovedTextLeavesItsPlace)
{
    struct Case
    {
        const char* before;
        TextOffset offset;
        bool moving;
        const char* after;
    };
    const Case cases[] = {
        {"[ab]cd", 4, true, "cd[ab]"},           {"ab{cd}", 0, true, "[cd]ab"},
        {"[ab]cd", 3, false, "abc[ab]d"},        {"[ab]cd", 1, false, "a[ab]bcd"},
        {"[ab]cd", 1, true, "[ab]cd"},           {"[ab]cd", 2, true, "[ab]cd"},
        {"[ab]cx[d]e", 3, true, "c[ab\nd]xe"},   {"[ab]c[d]e", 5, true, "ce[ab\nd]"},
        {"x[ab]c|d[e]", 1, true, "x[ab]c|d[e]"},
    };
    for (const Case& c : cases)
        expectChange(c.before, c.after, [&](QPTextView& view) {
            const bool done =
                dropText(view, view.selectedText(), c.offset, c.moving, QStringLiteral("Move"));
            EXPECT_EQ(done, view.undoManager().canUndo());
        });
    MarkedEditor protectedText(QStringLiteral("[ab]cd"));
    protectedText.view.setEditable(false);
    EXPECT_FALSE(dropText(protectedText.view, TextSnapshot(u"x"), 3, false, QString()));
    EXPECT_EQ(protectedText.marked(), "[ab]cd");
}

// Typing in words and deleting at many places, against the same done to one place at a time.
TEST(SelectionCommands, ManyCaretsTypeAndDeleteInStepsAsOneDoes)
{
    std::mt19937 random(7);
    const auto below = [&](int n) { return int(random() % unsigned(n)); };
    for (int round = 0; round < 50; ++round) {
        MarkedEditor one(QStringLiteral("line of text|\n"));
        MarkedEditor many(QString(QStringLiteral("line of text|\n")).repeated(3 + below(400)));
        for (int step = 0; step < 30; ++step) {
            const int action = below(8);
            for (QPTextView* view : {&one.view, &many.view}) {
                if (action < 4)
                    view->insertText(QString(QChar(u"ab \u4e00"[action])));
                else if (action == 4)
                    view->deleteBackward();
                else if (action == 5)
                    view->moveEach(
                        [&](const Selection& s) { return characterBefore(view->string(), s.head); },
                        false);
                else if (action == 6)
                    view->undo();
                else
                    view->redo();
            }
            const QString line = QString::fromStdString(one.marked());
            const qsizetype count =
                std::max<qsizetype>(1, qsizetype(many.view.selections().size()));
            ASSERT_EQ(many.marked(), line.repeated(count).toStdString()) << "step " << step;
        }
    }
}

} // namespace
} // namespace quillory
