#include "ViewHarness.h"

#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

namespace quillory {

namespace {

constexpr auto left = Qt::LeftButton;

class TextViewMouseTest : public testing::Test
{
protected:
    void drag(TextOffset from, TextOffset to, Qt::KeyboardModifiers modifiers = {})
    {
        const QPoint start = harness.pointOf(from);
        const QPoint end = harness.pointOf(to);
        QTest::mousePress(harness.view.viewport(), left, modifiers, start);
        move((start + end) / 2);
        move(end);
        QTest::mouseRelease(harness.view.viewport(), left, modifiers, end);
    }

    void move(QPoint point)
    {
        QMouseEvent event(QEvent::MouseMove, point, harness.view.viewport()->mapToGlobal(point),
                          Qt::NoButton, left, {});
        QCoreApplication::sendEvent(harness.view.viewport(), &event);
    }

    void doubleClick(TextOffset offset)
    {
        const QPoint point = harness.pointOf(offset);
        QTest::mouseClick(harness.view.viewport(), left, {}, point);
        QTest::mouseDClick(harness.view.viewport(), left, {}, point);
    }

    void expect(const char* marked) { EXPECT_EQ(harness.marked(), QString::fromUtf8(marked)); }

    ViewHarness harness{QStringLiteral("one two three\nfour five\n\nsix")};
    /// A click there makes the next one anywhere else the first of its kind.
    const QPoint elsewhere{700, 380};
};

TEST_F(TextViewMouseTest, aClickSetsTheCaret)
{
    for (TextOffset offset = 0; offset <= harness.storage.length(); ++offset) {
        harness.click(offset);
        EXPECT_EQ(harness.editor.selections(), std::vector{Selection::caret(offset)});
    }
}

TEST_F(TextViewMouseTest, aClickBesideTheTextGoesToTheNearestPlace)
{
    const QRect line = harness.view.caretRectAt(16);
    QTest::mouseClick(harness.view.viewport(), left, {}, {700, line.center().y()});
    expect("one two three\nfour five|\n\nsix");
    QTest::mouseClick(harness.view.viewport(), left, {}, {2, 390});
    expect("one two three\nfour five\n\n|six");
}

TEST_F(TextViewMouseTest, aDragSelectsInEitherDirection)
{
    drag(1, 16);
    expect("o^ne two three\nfo|ur five\n\nsix");
    drag(16, 1);
    expect("o|ne two three\nfo^ur five\n\nsix");
}

TEST_F(TextViewMouseTest, shiftExtendsFromTheAnchor)
{
    harness.click(5);
    harness.click(9, Qt::ShiftModifier);
    expect("one t^wo t|hree\nfour five\n\nsix");
    harness.click(2, Qt::ShiftModifier);
    expect("on|e t^wo three\nfour five\n\nsix");
}

TEST_F(TextViewMouseTest, aDoubleClickSelectsAWordAndItsDragWords)
{
    doubleClick(5);
    expect("one ^two| three\nfour five\n\nsix");
    move(harness.pointOf(10));
    expect("one ^two three|\nfour five\n\nsix");
    move(harness.pointOf(1));
    expect("|one two^ three\nfour five\n\nsix");
}

TEST_F(TextViewMouseTest, aDoubleClickSelectsWhatIsUnderTheMouse)
{
    // The place between characters that is nearest to the right half of one lies behind it.
    const auto rightHalfOf = [&](TextOffset offset) {
        return (harness.pointOf(offset) + 3 * harness.pointOf(offset + 1)) / 4;
    };
    struct Click
    {
        const char* text;
        TextOffset at;
        const char* selected;
        int beeps;
    };
    const Click clicks[] = {
        {"f((a) b) c", 1, "f^((a) b)| c", 0},
        {"f((a) b) c", 7, "f^((a) b)| c", 0},
        {"f((a) b) c", 2, "f(^(a)| b) c", 0},
        {"a) b", 1, "a^)| b", 1},
        {"one.two:three", 2, "^one|.two:three", 0},
        {"one.two:three", 4, "one.^two|:three", 0},
        {"one two", 2, "^one| two", 0},
    };
    QSignalSpy beeps(&harness.editor, &QPTextView::beep);
    for (const Click& click : clicks) {
        for (const bool right : {false, true}) {
            harness.setMarked(QLatin1String(click.text) + u'|');
            beeps.clear();
            const QPoint point = right ? rightHalfOf(click.at) : harness.pointOf(click.at);
            QTest::mouseClick(harness.view.viewport(), left, {}, elsewhere);
            QTest::mouseClick(harness.view.viewport(), left, {}, point);
            QTest::mouseDClick(harness.view.viewport(), left, {}, point);
            expect(click.selected);
            EXPECT_EQ(beeps.count(), click.beeps) << click.text;
        }
    }
}

TEST_F(TextViewMouseTest, aDragGoesOnByWordsFromWhatADoubleClickSelected)
{
    harness.setMarked(QStringLiteral("one (two one.two) three\nfour|"));
    const auto drag = [&](TextOffset from,
                          std::initializer_list<std::pair<TextOffset, const char*>> steps) {
        QTest::mouseClick(harness.view.viewport(), left, {}, elsewhere);
        QTest::mouseClick(harness.view.viewport(), left, {}, harness.pointOf(from));
        QTest::mouseDClick(harness.view.viewport(), left, {}, harness.pointOf(from));
        for (const auto& [to, marked] : steps) {
            move(harness.pointOf(to));
            expect(marked);
        }
        QTest::mouseRelease(harness.view.viewport(), left);
    };
    drag(4, {{6, "one ^(two one.two)| three\nfour"},
             {20, "one ^(two one.two) three|\nfour"},
             {1, "|one (two one.two)^ three\nfour"}});
    drag(9, {{10, "one (two ^one|.two) three\nfour"},
             {14, "one (two ^one.two|) three\nfour"},
             {6, "one (|two one^.two) three\nfour"}});
}

TEST_F(TextViewMouseTest, aTripleClickSelectsALineAndItsDragLines)
{
    doubleClick(5);
    QTest::mousePress(harness.view.viewport(), left, {}, harness.pointOf(5));
    expect("^one two three\n|four five\n\nsix");
    move(harness.pointOf(16));
    expect("^one two three\nfour five\n|\nsix");
}

TEST_F(TextViewMouseTest, controlAddsACaret)
{
    harness.click(1);
    harness.click(15, Qt::ControlModifier);
    expect("o|ne two three\nf|our five\n\nsix");
    EXPECT_EQ(harness.editor.primarySelection(), Selection::caret(15));
    harness.press({QStringLiteral("'x'")});
    expect("ox|ne two three\nfx|our five\n\nsix");
    harness.click(3);
    expect("oxn|e two three\nfxour five\n\nsix");
}

TEST_F(TextViewMouseTest, controlTakesACaretOrASelectionAwayAndAddsWords)
{
    harness.click(1);
    harness.click(15, Qt::ControlModifier);
    harness.click(1, Qt::ControlModifier);
    expect("one two three\nf|our five\n\nsix");
    harness.click(15, Qt::ControlModifier); // the last one stays
    expect("one two three\nf|our five\n\nsix");
    const QPoint word = harness.pointOf(5);
    QTest::mouseClick(harness.view.viewport(), left, Qt::ControlModifier, word);
    QTest::mouseDClick(harness.view.viewport(), left, Qt::ControlModifier, word);
    expect("one ^two| three\nf|our five\n\nsix");
    QTest::qWait(QApplication::doubleClickInterval() + 50); // or it would be a triple click
    harness.click(5, Qt::ControlModifier);
    expect("one two three\nf|our five\n\nsix");
}

TEST_F(TextViewMouseTest, aDragHeldOutsideScrollsOn)
{
    harness.storage.replaceCharactersInRange({0, 0}, QStringLiteral("line\n").repeated(500));
    harness.editor.setSelectedRange({0, 0});
    const QPoint start = harness.pointOf(0);
    QTest::mousePress(harness.view.viewport(), left, {}, start);
    move({start.x(), harness.view.viewport()->height() + 60});
    const TextOffset before = harness.editor.primarySelection().head;
    QTest::qWait(300);
    EXPECT_GT(harness.editor.primarySelection().head, before + 20);
    QTest::mouseRelease(harness.view.viewport(), left);
    const TextOffset after = harness.editor.primarySelection().head;
    QTest::qWait(100);
    EXPECT_EQ(harness.editor.primarySelection().head, after);
}

TEST_F(TextViewMouseTest, theMiddleButtonInsertsThePrimarySelection)
{
    if (!QGuiApplication::clipboard()->supportsSelection())
        GTEST_SKIP() << "this platform has no primary selection";
    drag(0, 3);
    harness.click(14, {}, Qt::MiddleButton);
    expect("one two three\none|four five\n\nsix");
}

} // namespace

} // namespace quillory
