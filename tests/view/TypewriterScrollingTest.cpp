#include "view/TypewriterScrolling.h"
#include "ViewHarness.h"

#include <QScrollBar>

namespace quillory {

namespace {

class TypewriterScrollingTest : public testing::TestWithParam<bool>
{
protected:
    TypewriterScrollingTest()
    {
        QObject::connect(&harness.editor, &QPTextView::textDidChange, &typewriter,
                         &TypewriterScrolling::constrainScroll);
        harness.view.setWrapLines(GetParam());
        typewriter.setOn(true);
        harness.settle();
    }

    /// Of the caret's row; -1 where it is not in sight.
    int caretY()
    {
        harness.settle();
        const QRect caret = harness.view.caretRect();
        return caret.isEmpty() ? -1 : caret.y();
    }

    void putCaret(TextOffset offset)
    {
        harness.editor.setSelectedRange({offset, 0});
        harness.view.centerOn(offset);
        harness.settle();
    }

    static constexpr TextOffset lineLength = 180; // two rows where it is wrapped
    ViewHarness harness{
        QString(QStringLiteral("words and ").repeated(18).chopped(1) + u'\n').repeated(100)};
    TypewriterScrolling typewriter{harness.view};
    int anchor() { return anchorHeight(harness.view.viewport()->height()); }
};

TEST_P(TypewriterScrollingTest, holdsTheRowThatIsTypedOnAtTheAnchor)
{
    const TextOffset length = harness.storage.length();
    for (const TextOffset place : {50 * lineLength + 20, length - lineLength + 5, length}) {
        putCaret(place);
        harness.press({QStringLiteral("'x'")});
        EXPECT_EQ(caretY(), anchor()) << place;
        harness.press({QStringLiteral("Return")});
        EXPECT_EQ(caretY(), anchor()) << place;
        harness.press({QStringLiteral("Return"), QStringLiteral("Return"), QStringLiteral("'y'")});
        EXPECT_EQ(caretY(), anchor()) << place;
        harness.press({QStringLiteral("Backspace")}); // the line above is the one looked at
        EXPECT_EQ(caretY(), anchor() + harness.view.caretRect().height()) << place;
        harness.press({QStringLiteral("Down"), QStringLiteral("Up"), QStringLiteral("Ctrl+Z")});
    }
}

TEST_P(TypewriterScrollingTest, staysWhereThereIsNoMoreTextAbove)
{
    putCaret(3);
    harness.press({QStringLiteral("'x'")});
    EXPECT_EQ(caretY(), TextViewport::verticalMargin);
    EXPECT_EQ(harness.view.verticalScrollBar()->value(), 0);
    harness.press({QStringLiteral("Ctrl+Home"), QStringLiteral("Return")});
    EXPECT_EQ(harness.view.verticalScrollBar()->value(), 0);
}

TEST_P(TypewriterScrollingTest, aSpaceOrAMoveScrollsNothing)
{
    putCaret(50 * lineLength + 20);
    harness.press({QStringLiteral("'x'")});
    harness.view.scrollBy(0, -37);
    const int y = caretY();
    harness.press({QStringLiteral("Space"), QStringLiteral("Right"), QStringLiteral("Space")});
    EXPECT_EQ(caretY(), y);
    harness.press({QStringLiteral("'x'")});
    EXPECT_EQ(caretY(), anchor());
}

TEST_P(TypewriterScrollingTest, scrollsPastTheEndOnlyWhileItIsOn)
{
    QScrollBar& bar = *harness.view.verticalScrollBar();
    const TextOffset length = harness.storage.length();
    const int row = harness.view.caretRect().height();
    bar.setValue(bar.maximum());
    harness.settle();
    EXPECT_EQ(harness.view.caretRectAt(length).y(), anchor());
    typewriter.setOn(false);
    harness.settle();
    EXPECT_EQ(harness.view.caretRectAt(length).y(),
              harness.view.viewport()->height() - row - TextViewport::verticalMargin);
}

TEST_P(TypewriterScrollingTest, showsTheCaretInAnyColumn)
{
    const QRect sight = harness.view.viewport()->rect();
    putCaret(50 * lineLength + 170);
    int moves = 0;
    for (int i = 0; i < 30; ++i) {
        const double x = harness.view.textViewport().x();
        harness.press({QStringLiteral("'x'")});
        EXPECT_TRUE(sight.contains(harness.view.caretRect()));
        moves += harness.view.textViewport().x() != x ? 1 : 0;
    }
    EXPECT_LE(moves, 10); // not at every key
    putCaret(50 * lineLength + 170);
    harness.editor.setSelectedRange({50 * lineLength + 3, 0});
    harness.press({QStringLiteral("'x'")});
    EXPECT_EQ(harness.view.textViewport().x(), 0);
}

TEST_P(TypewriterScrollingTest, setUpShowsTheSelectionFirst)
{
    harness.editor.setSelectedRange({50 * lineLength, 0});
    typewriter.simpleScroll(); // by the bottom of the line above
    EXPECT_EQ(caretY(), anchor());
    harness.editor.setSelectedRange({});
    typewriter.simpleScroll();
    EXPECT_EQ(caretY(), TextViewport::verticalMargin);
}

TEST_P(TypewriterScrollingTest, costsTheSameInAnyText)
{
    const QString line = QStringLiteral("words in a row that goes on and on\n");
    harness.storage.replaceCharactersInRange(harness.storage.snapshot().range(),
                                             line.repeated(600'000));
    for (const TextOffset share : {1, 2, 4}) {
        putCaret(harness.storage.length() / 4 * share - 1);
        WorkDone work(harness);
        harness.press({QStringLiteral("'x'")});
        EXPECT_LE(work().linesLaidOut, 20u);
        EXPECT_EQ(caretY(), anchor());
    }
}

INSTANTIATE_TEST_SUITE_P(Wrapping, TypewriterScrollingTest, testing::Bool());

} // namespace

} // namespace quillory
