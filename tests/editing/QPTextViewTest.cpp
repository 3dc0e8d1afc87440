#include "MarkedEditor.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace quillory {
namespace {

TEST(QPTextView, OperationsOnTextAndSelections)
{
    using Do = void (*)(QPTextView&);
    struct Case
    {
        const char* name;
        const char* before;
        Do operation;
        const char* after;
    };
    const Case cases[] = {
        {"type", "a|b", [](auto& v) { v.insertText(QStringLiteral("xy")); }, "axy|b"},
        {"type over", "a[bc]d", [](auto& v) { v.insertText(QStringLiteral("x")); }, "ax|d"},
        {"type at carets", "|a|b\n|", [](auto& v) { v.insertText(QStringLiteral("x")); },
         "x|ax|b\nx|"},
        {"return", "a|b", [](auto& v) { v.insertNewline(); }, "a\n|b"},
        {"backspace", "ab|c", [](auto& v) { v.deleteBackward(); }, "a|c"},
        {"backspace at start", "|abc", [](auto& v) { v.deleteBackward(); }, "|abc"},
        {"backspace over CR LF", "a\r\n|b", [](auto& v) { v.deleteBackward(); }, "a|b"},
        {"backspace selection", "a{bc}d", [](auto& v) { v.deleteBackward(); }, "a|d"},
        {"carets backspace", "ab|c|d", [](auto& v) { v.deleteBackward(); }, "a|d"},
        {"carets that meet", "a|b|c", [](auto& v) { v.deleteWordForward(); }, "a|"},
        {"delete", "a|bc", [](auto& v) { v.deleteForward(); }, "a|c"},
        {"delete at end", "abc|", [](auto& v) { v.deleteForward(); }, "abc|"},
        {"word back", "one two|", [](auto& v) { v.deleteWordBackward(); }, "one |"},
        {"to line start", "a\nbc|d", [](auto& v) { v.deleteToBeginningOfParagraph(); }, "a\n|d"},
        {"to line end", "a|bc\nd", [](auto& v) { v.deleteToEndOfParagraph(); }, "a|\nd"},
        {"line end itself", "a|\r\nd", [](auto& v) { v.deleteToEndOfParagraph(); }, "a|d"},
        {"carets merge", "a|b|c", [](auto& v) { v.moveParagraphBackward(false); }, "|abc"},
        {"paragraph up", "a\nbc|\nd", [](auto& v) { v.moveParagraphBackward(false); }, "a\n|bc\nd"},
        {"paragraph up again", "a\n|bc\nd", [](auto& v) { v.moveParagraphBackward(false); },
         "|a\nbc\nd"},
        {"paragraph down", "a|\nb", [](auto& v) { v.moveParagraphForward(true); }, "a[\n]b"},
        {"document end", "|a\nb", [](auto& v) { v.moveToEndOfDocument(true); }, "[a\nb]"},
        {"select all", "a|b", [](auto& v) { v.selectAll(); }, "[ab]"},
        {"keep one", "a|b[c]|d", [](auto& v) { v.keepPrimarySelection(true); }, "abc|d"},
        {"selections overlap", "a|",
         [](auto& v) {
             v.setSelectedRanges({{0, 1}, {0, 99}});
         },
         "[a]"},
        {"nothing to delete", "a|b", [](auto& v) { v.deleteSelection(); }, "a|b"},
    };
    for (const Case& c : cases) {
        MarkedEditor editor(QString::fromLatin1(c.before));
        c.operation(editor.view);
        EXPECT_EQ(editor.marked(), c.after) << c.name;
        // Whatever it was, one step takes it back, selections included.
        if (editor.undo.canUndo()) {
            editor.view.undo();
            EXPECT_EQ(editor.marked(), c.before) << c.name;
            editor.view.redo();
            EXPECT_EQ(editor.marked(), c.after) << c.name;
        } else {
            EXPECT_TRUE(editor.undo.isClean()) << c.name;
        }
    }
}

TEST(QPTextView, OnlyPermittedChangesAreUndoable)
{
    MarkedEditor editor(QStringLiteral("abc|"));
    QSignalSpy changed(&editor.view, &QPTextView::textDidChange);
    ASSERT_TRUE(editor.view.shouldChangeTextInRange({0, 1}, QStringLiteral("X")));
    editor.view.replaceCharactersInRange({0, 1}, QStringLiteral("X"));
    editor.view.didChangeText();
    EXPECT_EQ(changed.count(), 1);
    editor.view.replaceCharactersInRange({0, 0}, QStringLiteral("--"));
    EXPECT_EQ(editor.marked(), "--Xbc|"); // the caret goes with its character
    editor.view.undo();
    EXPECT_EQ(editor.marked(), "--abc|");

    editor.view.setEditable(false);
    EXPECT_FALSE(editor.view.shouldChangeTextInRange({0, 1}, QString()));
    editor.view.insertText(QStringLiteral("x"));
    editor.view.deleteBackward();
    editor.view.redo();
    EXPECT_EQ(editor.marked(), "--abc|");
}

TEST(QPTextView, AnnouncesSelectionsThatEditsMoveOrEmpty)
{
    MarkedEditor editor(QStringLiteral("[abc]"));
    QSignalSpy selection(&editor.view, &QPTextView::selectionDidChange);
    editor.view.deleteBackward();
    EXPECT_EQ(editor.marked(), "|");
    EXPECT_EQ(selection.count(), 1);
    editor.view.setSelectedRange({0, 0}); // no news
    EXPECT_EQ(selection.count(), 1);
}

TEST(QPTextView, ProposedRangesWidenByGranularity)
{
    const MarkedEditor editor(QString::fromUtf8("one two\nth\u0065\u0301ee|"));
    const auto widened = [&](TextRange range, SelectionGranularity granularity) {
        return editor.view.selectionRangeForProposedRange(range, granularity);
    };
    EXPECT_EQ(widened({1, 0}, SelectionGranularity::Word), (TextRange{0, 3}));
    EXPECT_EQ(widened({1, 4}, SelectionGranularity::Word), (TextRange{0, 7}));
    EXPECT_EQ(widened({5, 0}, SelectionGranularity::Paragraph), (TextRange{0, 8}));
    EXPECT_EQ(widened({11, 0}, SelectionGranularity::Character), (TextRange{10, 0}));
    EXPECT_EQ(widened({10, 1}, SelectionGranularity::Character), (TextRange{10, 2}));
}

TEST(QPTextView, SelectedTextJoinsSelectionsByLineBreaks)
{
    const MarkedEditor editor(QStringLiteral("[ab]c{de}|f"));
    EXPECT_EQ(editor.view.selectedText().string(), QStringLiteral("ab\nde"));
}

} // namespace
} // namespace quillory
