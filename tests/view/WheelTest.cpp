#include "ViewHarness.h"

#include <QPointingDevice>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyle>
#include <QTest>
#include <QWheelEvent>

namespace quillory {

namespace {

struct Turn
{
    QPoint pixels;
    QPoint angle;
    Qt::KeyboardModifiers modifiers = {};
    Qt::ScrollPhase phase = Qt::NoScrollPhase;
};

WheelMove read(WheelReader& reader, const Turn& turn, int rowHeight = 20)
{
    const QWheelEvent event({9, 9}, {9, 9}, turn.pixels, turn.angle, {}, turn.modifiers, turn.phase,
                            false);
    return reader.read(event, rowHeight);
}

TEST(WheelReader, aNotchOfAWheelScrollsTheRowsThatTheDesktopSays)
{
    WheelReader reader;
    const int rows = QApplication::wheelScrollLines();
    EXPECT_EQ(read(reader, {{}, {0, -120}}).pixels, QPoint(0, rows * 20));
    EXPECT_EQ(read(reader, {{}, {0, -120}, Qt::ShiftModifier}).pixels, QPoint(rows * 20, 0));
}

TEST(WheelReader, finePartsOfANotchAddUpToIt)
{
    WheelReader reader;
    QPoint sum;
    for (int i = 0; i < 120; ++i)
        sum += read(reader, {{}, {0, -1}}, 19).pixels;
    EXPECT_EQ(sum, QPoint(0, QApplication::wheelScrollLines() * 19));
}

TEST(WheelReader, aFingerThatMovesMostlyDownScrollsStraight)
{
    WheelReader reader;
    QPoint sum;
    for (int i = 0; i < 20; ++i)
        sum += read(reader, {{i % 3, -10}, {}, {}, Qt::ScrollUpdate}).pixels;
    EXPECT_EQ(sum, QPoint(0, 200));
    // A slanting move is one along both axes.
    WheelReader other;
    EXPECT_EQ(read(other, {{-10, -10}, {}, {}, Qt::ScrollUpdate}).pixels, QPoint(10, 10));
    // A wheel with two axes is no finger.
    EXPECT_NE(read(other, {{}, {-20, -120}}).pixels.x(), 0);
}

TEST(WheelReader, ctrlZoomsByWholeNotches)
{
    WheelReader reader;
    EXPECT_EQ(read(reader, {{}, {0, 120}, Qt::ControlModifier}), (WheelMove{{}, 1}));
    int steps = 0;
    for (int i = 0; i < 16; ++i)
        steps += read(reader, {{}, {0, -15}, Qt::ControlModifier}).zoomSteps;
    EXPECT_EQ(steps, -2);
}

TEST(WheelReader, whatRollsOnEndsWithAKeyAndNeverZooms)
{
    WheelReader reader;
    const Turn roll{{0, -8}, {}, {}, Qt::ScrollMomentum};
    EXPECT_FALSE(read(reader, roll).pixels.isNull());
    EXPECT_EQ(read(reader, {{0, -8}, {0, -120}, Qt::ControlModifier, Qt::ScrollMomentum}),
              WheelMove{});
    reader.interrupt();
    EXPECT_TRUE(read(reader, roll).pixels.isNull());
    EXPECT_FALSE(read(reader, {{0, -8}, {}, {}, Qt::ScrollBegin}).pixels.isNull());
    EXPECT_FALSE(read(reader, roll).pixels.isNull());
}

TEST(Wheel, ctrlAsksForAnotherSizeAndDoesNotScroll)
{
    ViewHarness harness(QStringLiteral("line\n").repeated(400));
    QSignalSpy zoom(&harness.view, &TextViewWidget::zoomRequested);
    QWidget* viewport = harness.view.viewport();
    QWheelEvent event({9, 9}, viewport->mapToGlobal(QPointF(9, 9)), {}, {0, -240}, {},
                      Qt::ControlModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(viewport, &event);
    harness.settle();
    ASSERT_EQ(zoom.count(), 1);
    EXPECT_EQ(zoom.front().front().toInt(), -2);
    EXPECT_EQ(harness.view.caretRectAt(0).y(), TextViewport::verticalMargin);
}

TEST(Wheel, theTextAtTheMouseStaysWhileItIsMadeLarger)
{
    ViewHarness harness(QStringLiteral("a line of text\n").repeated(400));
    QObject::connect(&harness.view, &TextViewWidget::zoomRequested, [&](int steps) {
        QFont font = harness.view.textFont();
        font.setPointSize(font.pointSize() + steps);
        harness.view.setTextFont(font);
    });
    harness.view.centerOn(3000);
    harness.settle();
    QWidget* viewport = harness.view.viewport();
    const QPointF mouse(200, 150);
    const TextOffset pointed = harness.view.offsetAtPoint(mouse.toPoint());
    const int y = harness.view.caretRectAt(pointed).y();
    for (const int turn : {120, 120, 120, -240, -120}) {
        QWheelEvent event(mouse, viewport->mapToGlobal(mouse), {}, {0, turn}, {},
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(viewport, &event);
        harness.settle();
        EXPECT_EQ(harness.view.caretRectAt(pointed).y(), y) << turn;
    }
}

TEST(Zoom, theCaretStaysInItsPlaceWhenItIsInSight)
{
    for (const bool wraps : {false, true}) {
        ViewHarness harness(QStringLiteral("a line of text that wraps somewhere\n").repeated(400));
        harness.view.setWrapLines(wraps);
        harness.view.centerOn(5000);
        harness.editor.setSelectedRange({5000, 0});
        harness.settle();
        const int y = harness.view.caretRect().y();
        harness.view.setTextFont(QFont(harness.view.textFont().family(), 40));
        harness.settle();
        EXPECT_EQ(harness.view.caretRect().y(), y) << wraps;
    }
}

TEST(ScrollBarClick, besideTheHandleGoesThere)
{
    ViewHarness harness(QStringLiteral("line\n").repeated(4000));
    QScrollBar* bar = harness.view.verticalScrollBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, {bar->width() / 2, bar->height() / 2});
    harness.settle();
    const double share = double(harness.view.visibleRange().location) / 20'000;
    EXPECT_NEAR(share, 0.5, 0.05);
}

} // namespace

} // namespace quillory
