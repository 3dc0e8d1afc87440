#include "ViewHarness.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>

namespace quillory {

namespace {

struct KeyCase
{
    const char16_t* before;
    QStringList keys;
    const char16_t* after;
};

QStringList keys(const char* names)
{
    return QString::fromLatin1(names).split(u' ');
}

const KeyCase keyCases[] = {
    // Typing
    {u"a|b", keys("'xyz'"), u"axyz|b"},
    {u"a^bc|d", keys("'x'"), u"ax|d"},
    {u"|a\n|b", keys("'x'"), u"x|a\nx|b"},
    {u"a|b", keys("Return"), u"a\n|b"},
    {u"a|b", keys("Enter"), u"a\n|b"},
    {u"a|b", keys("Tab"), u"a\t|b"},
    {u"a|b", keys("Ctrl+E"), u"a|b"},
    {u"a|b", keys("Alt+X"), u"a|b"},
    {u"a|b", keys("Meta+X"), u"a|b"},
    // Deleting
    {u"ab|c", keys("Backspace"), u"a|c"},
    {u"ab|c", keys("Shift+Backspace"), u"a|c"},
    {u"ab|c", keys("Del"), u"ab|"},
    {u"a^bc|d", keys("Backspace"), u"a|d"},
    {u"e\u0301|", keys("Backspace"), u"e|"},
    {u"|e\u0301", keys("Del"), u"|"},
    {u"ab\r\n|c", keys("Backspace"), u"ab|c"},
    {u"one two|", keys("Ctrl+Backspace"), u"one |"},
    {u"|one two", keys("Ctrl+Del"), u"| two"},
    {u"ab\ncd|ef", keys("Ctrl+Shift+Backspace"), u"ab\n|ef"},
    {u"ab\ncd|ef\ngh", keys("Ctrl+Shift+Del"), u"ab\ncd|\ngh"},
    // Moving
    {u"a|b", keys("Left"), u"|ab"},
    {u"a|b", keys("Right Right"), u"ab|"},
    {u"a^bc|d", keys("Left"), u"a|bcd"},
    {u"a^bc|d", keys("Right"), u"abc|d"},
    {u"a|bcd", keys("Shift+Right Shift+Right"), u"a^bc|d"},
    {u"abc|d", keys("Shift+Left Shift+Left"), u"a|bc^d"},
    {u"one |two three", keys("Ctrl+Right Ctrl+Right"), u"one two three|"},
    {u"one two| three", keys("Ctrl+Shift+Left"), u"one |two^ three"},
    {u"abc\nd|ef", keys("Home"), u"abc\n|def"},
    {u"abc\nd|ef\n", keys("End"), u"abc\ndef|\n"},
    {u"abc\r\nd|ef\r\n", keys("Shift+End"), u"abc\r\nd^ef|\r\n"},
    {u"abc\nd|ef", keys("Ctrl+Home"), u"|abc\ndef"},
    {u"abc\nd|ef", keys("Ctrl+Shift+End"), u"abc\nd^ef|"},
    // Up and down keep the column over short lines, and lose it by any other move.
    {u"abcdef\nab\nabcd|ef", keys("Up Up"), u"abcd|ef\nab\nabcdef"},
    {u"abcdef\nab\nabcd|ef", keys("Up Left Up"), u"a|bcdef\nab\nabcdef"},
    {u"abcd|ef\nab\nabcdef", keys("Shift+Down Shift+Down"), u"abcd^ef\nab\nabcd|ef"},
    {u"ab|c\nabc", keys("Up"), u"|abc\nabc"},
    {u"abc\nab|c", keys("Down"), u"abc\nabc|"},
    {u"ab|c\n|abc\n", keys("Down"), u"abc\nab|c\n|"},
    {u"\tab|\n\tab", keys("Down"), u"\tab\n\tab|"},
    {u"\u4e00\u4e00|\nabcdef\n\u4e00\u4e00", keys("Down Down"),
     u"\u4e00\u4e00\nabcdef\n\u4e00\u4e00|"},
    {u"one\ntw|o\nthree", keys("Ctrl+Up Ctrl+Up"), u"|one\ntwo\nthree"},
    {u"on|e\ntwo\nthree", keys("Ctrl+Shift+Down"), u"on^e\n|two\nthree"},
    // Several carets
    {u"|a\n|b", keys("Escape"), u"a\n|b"},
    {u"|a\n|b", keys("Right 'x' Left"), u"a|x\nb|x"},
    // Clipboard and undo
    {u"a^bc|d", keys("Ctrl+C Ctrl+End Ctrl+V"), u"abcdbc|"},
    {u"a^bc|d", keys("Ctrl+X Ctrl+V Ctrl+V"), u"abcbc|d"},
    {u"a^bc|d", keys("Ctrl+Ins Right Shift+Ins"), u"abcbc|d"},
    {u"a^bc|d", keys("Shift+Del"), u"a|d"},
    {u"a|b", keys("Ctrl+A"), u"^ab|"},
    {u"a|b", keys("'x' Ctrl+Z"), u"a|b"},
    {u"a|b", keys("'x' Ctrl+Z Ctrl+Shift+Z"), u"ax|b"},
};

class TextViewKeys : public testing::TestWithParam<KeyCase>
{};

TEST_P(TextViewKeys, changeTextAndSelections)
{
    const KeyCase& row = GetParam();
    ViewHarness harness;
    harness.setMarked(QString::fromUtf16(row.before));
    harness.press(row.keys);
    EXPECT_EQ(harness.marked(), QString::fromUtf16(row.after))
        << row.keys.join(u' ').toStdString() << " on "
        << QString::fromUtf16(row.before).toStdString();
}

INSTANTIATE_TEST_SUITE_P(Table, TextViewKeys, testing::ValuesIn(keyCases));

TEST(TextViewKeysPlain, accentedLettersOfTheThirdLevelAreTyped)
{
    ViewHarness harness;
    QKeyEvent key(QEvent::KeyPress, Qt::Key_At, Qt::GroupSwitchModifier, QStringLiteral("@"));
    QCoreApplication::sendEvent(&harness.view, &key);
    EXPECT_EQ(harness.text(), QStringLiteral("@"));
}

TEST(TextViewKeysPlain, editingKeysAreKeptFromShortcutsAndOthersAreNot)
{
    ViewHarness harness(QStringLiteral("text"));
    const auto isKept = [&](const QKeyEvent& key) {
        QKeyEvent event(QEvent::ShortcutOverride, key.key(), key.modifiers(), key.text());
        event.ignore();
        QCoreApplication::sendEvent(&harness.view, &event);
        return event.isAccepted();
    };
    const auto key = [](Qt::Key code, Qt::KeyboardModifiers modifiers = {}, QString text = {}) {
        return QKeyEvent(QEvent::KeyPress, code, modifiers, text);
    };
    EXPECT_TRUE(isKept(key(Qt::Key_A, {}, QStringLiteral("a"))));
    EXPECT_TRUE(isKept(key(Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier)));
    EXPECT_TRUE(isKept(key(Qt::Key_Delete)));
    EXPECT_FALSE(isKept(key(Qt::Key_S, Qt::ControlModifier, QStringLiteral("\x13"))));
    EXPECT_FALSE(isKept(key(Qt::Key_F5)));
}

TEST(TextViewKeysPlain, pagesKeepTheColumnAndTheCaretsPlaceOnTheScreen)
{
    ViewHarness harness(repeated(QStringLiteral("line of text\n"), 13 * 500));
    harness.editor.setSelectedRange({13 * 4 + 7, 0});
    const int y = harness.view.caretRect().y();
    harness.press({QStringLiteral("PgDown"), QStringLiteral("PgDown")});
    const TextOffset down = harness.editor.primarySelection().head;
    EXPECT_EQ(down % 13, 7);
    EXPECT_GT(down, 13 * 30);
    EXPECT_EQ(harness.view.caretRect().y(), y);
    harness.press({QStringLiteral("PgUp"), QStringLiteral("PgUp")});
    EXPECT_EQ(harness.editor.primarySelection().head, 13 * 4 + 7);
}

TEST(TextViewKeysPlain, rowsOfAWrappedLineAreWalkedLikeLines)
{
    ViewHarness harness(repeated(QStringLiteral("words and more words "), 21 * 40));
    harness.view.setWrapLines(true);
    harness.settle();
    harness.editor.setSelectedRange({5, 0});
    const int height = harness.view.caretRect().height();
    const QRect start = harness.view.caretRect();
    harness.press({QStringLiteral("Down"), QStringLiteral("Down")});
    EXPECT_EQ(harness.view.caretRect().y(), start.y() + 2 * height);
    EXPECT_NEAR(harness.view.caretRect().x(), start.x(), 5);
    harness.press({QStringLiteral("End")});
    EXPECT_EQ(harness.view.caretRect().y(), start.y() + 2 * height);
    EXPECT_GT(harness.view.caretRect().x(), 600);
    harness.press({QStringLiteral("Home")});
    EXPECT_EQ(harness.view.caretRect().y(), start.y() + 2 * height);
    EXPECT_LT(harness.view.caretRect().x(), 20);
    harness.press({QStringLiteral("Up"), QStringLiteral("Up")});
    EXPECT_EQ(harness.editor.primarySelection(), Selection::caret(0));
}

TEST(TextViewKeysPlain, aHugeCopyIsMadeOnlyWhenAskedFor)
{
    ViewHarness harness(QStringLiteral("first\r\nsecond"));
    harness.view.commands().selectAll();
    harness.view.commands().copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("first\r\nsecond"));
    harness.editor.setSelectedRange({5, 2});
    harness.view.commands().copy();
    harness.editor.setSelectedRange({0, 0});
    harness.view.commands().copy(); // nothing selected: the clipboard keeps what it has
    harness.view.commands().paste();
    EXPECT_EQ(harness.text(), QStringLiteral("\r\nfirst\r\nsecond"));
}

} // namespace

} // namespace quillory
