#include "ViewHarness.h"

#include <QInputMethodEvent>
#include <QStyleHints>
#include <QTest>

namespace quillory {

namespace {

class TextViewInputTest : public testing::Test
{
protected:
    void compose(const QString& preedit, int caret)
    {
        QInputMethodEvent event(preedit, {{QInputMethodEvent::Cursor, caret, 1, QVariant()}});
        QCoreApplication::sendEvent(&harness.view, &event);
        harness.settle();
    }
    void commit(const QString& text, int replaceFrom = 0, int replaceLength = 0)
    {
        QInputMethodEvent event;
        event.setCommitString(text, replaceFrom, replaceLength);
        QCoreApplication::sendEvent(&harness.view, &event);
        harness.settle();
    }
    QVariant query(Qt::InputMethodQuery what)
    {
        return static_cast<QWidget&>(harness.view).inputMethodQuery(what);
    }

    ViewHarness harness;
};

TEST_F(TextViewInputTest, composedTextIsShownAndNotYetPartOfTheText)
{
    harness.setMarked(QStringLiteral("ab|cd"));
    const int before = harness.view.caretRectAt(4).x();
    const int caret = harness.view.caretRect().x();
    const double advance = TextFont(harness.view.textFont()).advance();
    compose(QStringLiteral("xyz"), 1);
    EXPECT_EQ(harness.text(), QStringLiteral("abcd"));
    EXPECT_FALSE(harness.undo.canUndo());
    EXPECT_NEAR(harness.view.caretRectAt(4).x(), before + 3 * advance, 1);
    EXPECT_NEAR(query(Qt::ImCursorRectangle).toRectF().x(), caret + advance, 1);
    // A click behind the composed text finds the characters where they show.
    EXPECT_EQ(harness.view.offsetAtPoint(harness.view.caretRectAt(3).center()), 3);
    compose({}, 0);
    EXPECT_EQ(harness.view.caretRectAt(4).x(), before);
    EXPECT_EQ(harness.marked(), QStringLiteral("ab|cd"));
}

TEST_F(TextViewInputTest, aCommitIsTypedAndMayReplaceWhatIsAround)
{
    harness.setMarked(QStringLiteral("ab|cd"));
    compose(QStringLiteral("ni"), 2);
    commit(QStringLiteral("\u4f60"));
    EXPECT_EQ(harness.marked(), QStringLiteral("ab\u4f60|cd"));
    commit(QStringLiteral("X"), -2, 2);
    EXPECT_EQ(harness.marked(), QStringLiteral("aX|cd"));
    harness.view.undo();
    harness.view.undo();
    EXPECT_EQ(harness.text(), QStringLiteral("abcd"));
}

TEST_F(TextViewInputTest, surroundingsAreThoseOfTheLine)
{
    harness.setMarked(QStringLiteral("above\nsome t^ex|t\nbelow"));
    EXPECT_EQ(query(Qt::ImSurroundingText).toString(), QStringLiteral("some text"));
    EXPECT_EQ(query(Qt::ImCursorPosition).toInt(), 8);
    EXPECT_EQ(query(Qt::ImAnchorPosition).toInt(), 6);
    EXPECT_EQ(query(Qt::ImCurrentSelection).toString(), QStringLiteral("ex"));
}

TEST_F(TextViewInputTest, surroundingsOfALongLineAreBounded)
{
    harness.storage.replaceCharactersInRange({}, repeated(QStringLiteral("abc "), 500'000));
    harness.editor.setSelectedRange({250'001, 0});
    const QString around = query(Qt::ImSurroundingText).toString();
    EXPECT_LT(around.size(), 5000);
    EXPECT_EQ(around.mid(query(Qt::ImCursorPosition).toInt(), 2), QStringLiteral("bc"));
}

TEST(CaretBlink, blinksWhileFocusedAndNotForEver)
{
    ViewHarness harness(QStringLiteral("text"));
    const int flashTime = QGuiApplication::styleHints()->cursorFlashTime();
    QGuiApplication::styleHints()->setCursorFlashTime(40);
    harness.press({QStringLiteral("Right")});
    const CaretBlink& blink = harness.view.caretBlink();
    EXPECT_TRUE(blink.isBlinking());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !blink.isShown(); }, 1000));
    harness.press({QStringLiteral("Right")});
    EXPECT_TRUE(blink.isShown());
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    EXPECT_FALSE(blink.isBlinking());
    EXPECT_TRUE(blink.isShown());
    QGuiApplication::styleHints()->setCursorFlashTime(40);
    EXPECT_TRUE(blink.isBlinking());
    harness.view.clearFocus();
    EXPECT_FALSE(blink.isBlinking());
    EXPECT_FALSE(blink.isShown());
    QGuiApplication::styleHints()->setCursorFlashTime(flashTime);
}

} // namespace

} // namespace quillory
