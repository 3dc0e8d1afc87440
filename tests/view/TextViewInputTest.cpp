#include "ViewHarness.h"

#include <QInputMethodEvent>
#include <QStyleHints>
#include <QTest>
#include <QTextCharFormat>

namespace quillory {

namespace {

class TextViewInputTest : public testing::Test
{
protected:
    using Attributes = QList<QInputMethodEvent::Attribute>;

    void compose(const QString& preedit, const Attributes& attributes)
    {
        QInputMethodEvent event(preedit, attributes);
        QCoreApplication::sendEvent(&harness.view, &event);
        harness.settle();
    }
    void compose(const QString& preedit, int caret)
    {
        compose(preedit, {{QInputMethodEvent::Cursor, caret, 1, QVariant()}});
    }
    void compose(const QString& preedit) { compose(preedit, int(preedit.size())); }
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
    QRect caretAtInputMethod() { return query(Qt::ImCursorRectangle).toRect(); }
    double advance() const { return TextFont(harness.view.textFont()).advance(); }
    /// How many pixels of the text's view have a colour.
    int pixels(const QColor& colour)
    {
        const QImage image = harness.view.viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += image.pixel(x, y) == colour.rgb();
        }
        return count;
    }

    ViewHarness harness;
};

TEST_F(TextViewInputTest, composedTextIsShownAndNotYetPartOfTheText)
{
    harness.setMarked(QStringLiteral("ab|cd"));
    const int before = harness.view.caretRectAt(4).x();
    const int caret = harness.view.caretRect().x();
    compose(QStringLiteral("xyz"), 1);
    EXPECT_EQ(harness.text(), QStringLiteral("abcd"));
    EXPECT_FALSE(harness.undo.canUndo());
    EXPECT_NEAR(harness.view.caretRectAt(4).x(), before + 3 * advance(), 1);
    EXPECT_NEAR(query(Qt::ImCursorRectangle).toRectF().x(), caret + advance(), 1);
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
    harness.view.commands().undo();
    harness.view.commands().undo();
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

TEST_F(TextViewInputTest, surroundingsNeverSplitACharacterAndAgreeWithEachOther)
{
    harness.storage.replaceCharactersInRange({}, repeated(QStringLiteral("\U0001F600"), 40'000));
    for (const TextOffset head : {0, 2, 998, 20'000, 20'002, 39'998, 40'000}) {
        SCOPED_TRACE(head);
        harness.editor.setSelection({std::max<TextOffset>(0, head - 4), head});
        const QString around = query(Qt::ImSurroundingText).toString();
        const QString before = query(Qt::ImTextBeforeCursor).toString();
        const QString after = query(Qt::ImTextAfterCursor).toString();
        EXPECT_EQ(around, before + after);
        EXPECT_EQ(query(Qt::ImCursorPosition).toInt(), before.size());
        EXPECT_EQ(query(Qt::ImAnchorPosition).toInt(),
                  before.size() - std::min<TextOffset>(head, 4));
        EXPECT_EQ(query(Qt::ImAbsolutePosition).toInt(), head);
        EXPECT_LE(around.size(), 2002);
        if (!around.isEmpty()) {
            EXPECT_TRUE(around.front().isHighSurrogate());
            EXPECT_TRUE(around.back().isLowSurrogate());
        }
    }
}

TEST_F(TextViewInputTest, attributesOfComposedTextAreShown)
{
    harness.setMarked(QStringLiteral("ab|cd"));
    const QColor ground(1, 200, 3);
    const QColor line(200, 1, 3);
    const QColor caret(3, 1, 200);
    QTextCharFormat clause;
    clause.setBackground(ground);
    clause.setUnderlineStyle(QTextCharFormat::NoUnderline);
    QTextCharFormat rest;
    rest.setUnderlineStyle(QTextCharFormat::SingleUnderline);
    rest.setUnderlineColor(line);
    using Attribute = QInputMethodEvent::Attribute;
    const Attributes formats{Attribute(QInputMethodEvent::TextFormat, 0, 2, clause),
                             Attribute(QInputMethodEvent::TextFormat, 2, 3, rest)};
    compose(QStringLiteral("     "),
            formats + Attributes{Attribute(QInputMethodEvent::Cursor, 5, 1, caret)});
    const int height = TextFont(harness.view.textFont()).rowHeight();
    EXPECT_NEAR(pixels(ground), 2 * advance() * height, height);
    EXPECT_NEAR(pixels(line), 3 * advance(), 3);
    EXPECT_EQ(pixels(caret), height);
    // A caret of no length is not to be seen.
    compose(QStringLiteral("     "),
            formats + Attributes{Attribute(QInputMethodEvent::Cursor, 5, 0, caret)});
    EXPECT_EQ(pixels(caret), 0);
    compose({});
    EXPECT_EQ(pixels(ground) + pixels(line), 0);
}

TEST_F(TextViewInputTest, composingOverASelectionReplacesItOrLeavesIt)
{
    const auto start = QStringLiteral("one ^two| three");
    harness.setMarked(start);
    harness.undo.markClean();
    compose(QStringLiteral("x"));
    EXPECT_EQ(harness.text(), QStringLiteral("one  three"));
    compose(QStringLiteral("xy"));
    compose({});
    EXPECT_EQ(harness.marked(), start);
    EXPECT_TRUE(harness.undo.isClean());
    EXPECT_FALSE(harness.undo.canUndo());

    compose(QStringLiteral("xy"));
    commit(QStringLiteral("XY"));
    EXPECT_EQ(harness.marked(), QStringLiteral("one XY| three"));
    harness.view.commands().undo();
    EXPECT_EQ(harness.marked(), start);
    harness.view.commands().redo();
    EXPECT_EQ(harness.marked(), QStringLiteral("one XY| three"));

    // Nothing is brought back into a text that was edited meanwhile.
    harness.setMarked(start);
    compose(QStringLiteral("x"));
    harness.storage.replaceCharactersInRange({0, 3}, QStringLiteral("1"));
    compose({});
    EXPECT_EQ(harness.marked(), QStringLiteral("1 | three"));
}

TEST_F(TextViewInputTest, aCommitGoesToEveryCaret)
{
    harness.setMarked(QStringLiteral("ab|cd\nab|cd"));
    compose(QStringLiteral("x"));
    EXPECT_NEAR(harness.view.caretRectAt(4).x() - harness.view.caretRectAt(3).x(), advance(), 1);
    EXPECT_NEAR(caretAtInputMethod().y(), harness.view.caretRectAt(6).y(), 0);
    commit(QStringLiteral("X"));
    EXPECT_EQ(harness.marked(), QStringLiteral("abX|cd\nabX|cd"));
    commit(QStringLiteral("Y"), -2, 3);
    EXPECT_EQ(harness.marked(), QStringLiteral("aY|d\naY|d"));
    harness.setMarked(QStringLiteral("^ab|cd\n^ab|cd"));
    compose(QStringLiteral("x"));
    compose({});
    EXPECT_EQ(harness.marked(), QStringLiteral("^ab|cd\n^ab|cd"));
}

TEST_F(TextViewInputTest, replacementsArePulledIntoTheText)
{
    const struct
    {
        const char16_t* before;
        int start;
        int length;
        const char16_t* after;
    } cases[] = {
        {u"abc|def", -1, 1, u"abX|def"},  {u"abc|def", 1, 1, u"abcdX|f"},
        {u"abc|def", -99, 100, u"X|ef"},  {u"abc|def", 2, 99, u"abcdeX|"},
        {u"abc|def", -2, 0, u"aX|bcdef"}, {u"a\U0001F600|b", -1, 1, u"aX|b"},
        {u"ab^cd|ef", -1, 1, u"aX|ef"},   {u"ab^cd|ef", 0, 1, u"abX|f"},
        {u"ab|cd^ef", -1, 2, u"aX|f"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(QString::fromUtf16(c.before).toStdString());
        harness.setMarked(QString::fromUtf16(c.before));
        commit(QStringLiteral("X"), c.start, c.length);
        EXPECT_EQ(harness.marked(), QString::fromUtf16(c.after));
    }
}

TEST_F(TextViewInputTest, theInputMethodMaySelect)
{
    harness.setMarked(QStringLiteral("first\nsome| text"));
    compose({}, {{QInputMethodEvent::Selection, 5, 4, QVariant()}});
    EXPECT_EQ(harness.marked(), QStringLiteral("first\nsome ^text|"));
    compose({}, {{QInputMethodEvent::Selection, 400, -2, QVariant()}});
    EXPECT_EQ(harness.marked(), QStringLiteral("first\nsome text|"));
}

TEST_F(TextViewInputTest, composedTextStaysAtTheCaretWhateverHappensToTheText)
{
    harness.setMarked(QStringLiteral("line\nab|cd"));
    compose(QStringLiteral("xyz"), 3);
    const auto composedAt = [&](TextOffset offset) {
        harness.settle();
        EXPECT_EQ(harness.view.textGeometry().preedit(), (Preedit{offset, QStringLiteral("xyz")}));
        EXPECT_NEAR(caretAtInputMethod().x(),
                    harness.view.textViewport().caretRect({offset}).x() + 3 * advance(), 1);
    };
    composedAt(7);
    harness.storage.replaceCharactersInRange({0, 4}, QStringLiteral("a longer line"));
    composedAt(16);
    harness.storage.replaceCharactersInRange({0, 18}, QString());
    composedAt(0);
    harness.editor.insertText(QStringLiteral("typed"));
    composedAt(5);
    harness.view.commands().undo();
    composedAt(0);
    harness.view.commands().redo();
    composedAt(5);
    harness.press({QStringLiteral("Home")});
    composedAt(0);
    commit(QStringLiteral("done"));
    EXPECT_EQ(harness.marked(), QStringLiteral("done|typed"));
}

TEST_F(TextViewInputTest, longComposedTextKeepsItsCaretInSight)
{
    const QString composed = repeated(QStringLiteral("word "), 2000);
    for (const bool wrap : {true, false}) {
        harness.view.setWrapLines(wrap);
        harness.setMarked(QStringLiteral("text\n").repeated(10) + u'|');
        for (const int caret : {2000, 1000, 3}) {
            SCOPED_TRACE(QStringLiteral("%1 %2").arg(wrap).arg(caret).toStdString());
            compose(composed, caret);
            const QRect shown = harness.view.caretRect();
            ASSERT_FALSE(shown.isEmpty());
            EXPECT_TRUE(harness.view.viewport()->rect().contains(shown));
            EXPECT_EQ(caretAtInputMethod().center(),
                      shown.center() + harness.view.viewport()->pos());
        }
        compose({});
    }
}

TEST_F(TextViewInputTest, aClickIntoComposedTextIsNotForTheText)
{
    harness.setMarked(QStringLiteral("ab|cdefgh"));
    compose(QStringLiteral("wxyz"), 2);
    const QPoint inside = harness.view.caretRect().center() + QPoint(1, 0);
    QTest::mouseClick(harness.view.viewport(), Qt::LeftButton, {}, inside);
    EXPECT_EQ(harness.marked(), QStringLiteral("ab|cdefgh"));
    EXPECT_FALSE(harness.view.textGeometry().preedit().text.isEmpty());
    // No input method is there that would commit, so a click elsewhere gives it up.
    harness.click(5);
    EXPECT_TRUE(harness.view.textGeometry().preedit().text.isEmpty());
    EXPECT_EQ(harness.text(), QStringLiteral("abcdefgh"));
    EXPECT_FALSE(harness.undo.canUndo());
}

TEST_F(TextViewInputTest, composingEndsWithTheFocus)
{
    harness.setMarked(QStringLiteral("one ^two| three"));
    compose(QStringLiteral("xyz"));
    harness.view.clearFocus();
    harness.settle();
    EXPECT_TRUE(harness.view.textGeometry().preedit().text.isEmpty());
    EXPECT_EQ(harness.marked(), QStringLiteral("one ^two| three"));
}

TEST_F(TextViewInputTest, aTextThatMayNotBeEditedTakesNothing)
{
    harness.setMarked(QStringLiteral("one ^two| three"));
    EXPECT_TRUE(query(Qt::ImEnabled).toBool());
    EXPECT_FALSE(query(Qt::ImReadOnly).toBool());
    harness.editor.setEditable(false);
    EXPECT_FALSE(query(Qt::ImEnabled).toBool());
    EXPECT_TRUE(query(Qt::ImReadOnly).toBool());
    compose(QStringLiteral("x"));
    commit(QStringLiteral("x"), -1, 2);
    EXPECT_EQ(harness.marked(), QStringLiteral("one ^two| three"));
    EXPECT_TRUE(harness.view.textGeometry().preedit().text.isEmpty());
}

TEST_F(TextViewInputTest, theCaretIsToldInTheWidgetAndAtOnce)
{
    harness.setMarked(repeated(QStringLiteral("text\n"), 500) + QStringLiteral("last|"));
    harness.view.setRulerWidth(40);
    harness.view.ensureVisible(harness.storage.length());
    const auto expected = [&] {
        return harness.view.caretRect().translated(harness.view.viewport()->pos());
    };
    EXPECT_EQ(caretAtInputMethod(), expected());
    harness.editor.insertText(QStringLiteral("abc")); // without a turn of the event loop
    EXPECT_EQ(caretAtInputMethod(), expected());
    harness.view.scrollBy(0, -10);
    EXPECT_EQ(caretAtInputMethod().y(), expected().y());
    EXPECT_EQ(query(Qt::ImInputItemClipRectangle).toRect(), harness.view.viewport()->geometry());
    // Scrolled away, it is at the edge; and news of no change do not scroll it back.
    harness.view.ensureVisible(0);
    harness.settle();
    compose({}, Attributes());
    EXPECT_TRUE(harness.view.caretRect().isEmpty());
    EXPECT_TRUE(harness.view.rect().contains(caretAtInputMethod()));
    EXPECT_GT(caretAtInputMethod().y(), harness.view.height() / 2);
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
