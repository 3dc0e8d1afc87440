#include "view/FindIndicator.h"
#include "ViewHarness.h"

#include <QPixmap>
#include <QTest>

namespace quillory {

namespace {

class FindIndicatorTest : public testing::Test
{
protected:
    FindIndicator* indicator() { return harness.view.viewport()->findChild<FindIndicator*>(); }
    bool isShowing() { return indicator() && indicator()->isVisible(); }
    void show(TextRange range) { harness.view.showFindIndicatorForRange(range); }

    ViewHarness harness{QStringLiteral("one (two) three\n").repeated(200)};
};

TEST_F(FindIndicatorTest, popsUpOverTheRangeAndFades)
{
    show({4, 5});
    ASSERT_TRUE(isShowing());
    const QRect text(harness.view.caretRectAt(4).topLeft(),
                     harness.view.caretRectAt(9).bottomRight());
    EXPECT_TRUE(indicator()->geometry().contains(text));
    const QImage shown = indicator()->grab().toImage();
    const int above = int((text.height() / 2 - 1) * shown.devicePixelRatio());
    const QColor ground = shown.pixelColor(shown.rect().center() - QPoint(0, above));
    EXPECT_GT(ground.red(), ground.blue() + 80) << qPrintable(ground.name());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isShowing(); }, 4 * FindIndicator::duration));
    EXPECT_FALSE(indicator()->isShowing());
}

TEST_F(FindIndicatorTest, laysNothingOutAnewAndLetsTheMouseThrough)
{
    WorkDone work(harness);
    show({4, 5});
    harness.click(6);
    EXPECT_EQ(harness.editor.selectedRange(), (TextRange{6, 0}));
    EXPECT_EQ(work().unitsShaped, 0);
}

TEST_F(FindIndicatorTest, showsNothingForWhatIsOutOfSight)
{
    show({2000, 5});
    EXPECT_FALSE(isShowing());
    show({3, 0});
    EXPECT_FALSE(isShowing());
    // The visible part of a range that goes on below.
    show({4, 3000});
    EXPECT_TRUE(isShowing());
    EXPECT_TRUE(harness.view.viewport()->rect().contains(indicator()->geometry()));
}

TEST_F(FindIndicatorTest, goesAtOnceWhenTheTextMoves)
{
    const std::pair<const char*, std::function<void()>> moves[]{
        {"scrolling", [&] { harness.view.scrollBy(0, 10); }},
        {"typing", [&] { harness.press({QStringLiteral("'x'")}); }},
        {"resizing", [&] { harness.view.resize(500, 300); }},
        {"zooming", [&] { harness.view.setTextFont(QFont(QStringLiteral("Sans"), 20)); }},
    };
    for (const auto& [name, move] : moves) {
        harness.view.ensureVisible(0);
        harness.settle();
        show({4, 5});
        EXPECT_TRUE(isShowing()) << name;
        move();
        harness.settle();
        EXPECT_FALSE(isShowing()) << name;
    }
}

TEST_F(FindIndicatorTest, waitsForTheTextThatIsAboutToBeScrolledTo)
{
    harness.view.centerOn(1604);
    show({1604, 5});
    harness.settle();
    EXPECT_TRUE(isShowing());
    EXPECT_TRUE(indicator()->geometry().contains(harness.view.caretRectAt(1605).center()));
}

} // namespace

} // namespace quillory
