#include "ViewHarness.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

namespace quillory {

namespace {

QString paragraphs(int count)
{
    QString text;
    for (int i = 0; i < count; ++i) {
        text += QStringLiteral("paragraph %1: ").arg(i);
        text += QStringLiteral("some words that go on and wrap ").repeated(i * 7 % 11) + u'\n';
    }
    return text;
}

void wheel(ViewHarness& harness, QPoint pixels)
{
    QWidget* viewport = harness.view.viewport();
    QWheelEvent event({100, 100}, viewport->mapToGlobal(QPointF(100, 100)), pixels, {}, {}, {},
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(viewport, &event);
    harness.settle();
}

class Scrolling : public testing::TestWithParam<bool>
{
protected:
    Scrolling()
    {
        harness.view.setWrapLines(GetParam());
        harness.settle();
    }

    ViewHarness harness{paragraphs(400)};
};

TEST_P(Scrolling, movesByExactlyThePixelsAskedFor)
{
    wheel(harness, {0, -100});
    const TextOffset mark = harness.view.offsetAtPoint({10, 200});
    const int y = harness.view.caretRectAt(mark).y();
    for (const int step : {7, 33, 1, -20, 150, -171}) {
        const int before = harness.view.caretRectAt(mark).y();
        wheel(harness, {0, -step});
        EXPECT_EQ(harness.view.caretRectAt(mark).y(), before - step);
    }
    EXPECT_EQ(harness.view.caretRectAt(mark).y(), y);
}

TEST_P(Scrolling, staysInTheText)
{
    wheel(harness, {0, 500});
    EXPECT_EQ(harness.view.caretRectAt(0).y(), TextViewport::verticalMargin);
    wheel(harness, {0, -1'000'000});
    const QRect last = harness.view.caretRectAt(harness.storage.length());
    EXPECT_EQ(last.bottom() + 1 + TextViewport::verticalMargin, harness.view.viewport()->height());
    EXPECT_EQ(harness.view.verticalScrollBar()->value(),
              harness.view.verticalScrollBar()->maximum());
}

TEST_P(Scrolling, theBarReachesBothEnds)
{
    QScrollBar& bar = *harness.view.verticalScrollBar();
    bar.setValue(bar.maximum());
    harness.settle();
    EXPECT_EQ(harness.view.visibleRange().end(), harness.storage.length());
    bar.setValue(bar.maximum() / 2);
    harness.settle();
    const TextRange middle = harness.view.visibleRange();
    EXPECT_GT(middle.location, harness.storage.length() / 4);
    EXPECT_LT(middle.end(), harness.storage.length() * 3 / 4);
    bar.setValue(0);
    harness.settle();
    EXPECT_EQ(harness.view.caretRectAt(0).y(), TextViewport::verticalMargin);
}

TEST_P(Scrolling, editsAboveAndBelowLeaveTheTextInSightWhereItIs)
{
    harness.view.centerOn(harness.storage.length() / 2);
    harness.settle();
    TextOffset mark = harness.view.offsetAtPoint({10, 200});
    const int y = harness.view.caretRectAt(mark).y();
    harness.storage.replaceCharactersInRange({100, 0}, QStringLiteral("new\nlines\n"));
    mark += 10;
    harness.settle();
    EXPECT_EQ(harness.view.caretRectAt(mark).y(), y);
    harness.storage.replaceCharactersInRange({50, 400}, QString());
    mark -= 400;
    harness.settle();
    EXPECT_EQ(harness.view.caretRectAt(mark).y(), y);
    harness.storage.replaceCharactersInRange({harness.storage.length() - 9, 0},
                                             QStringLiteral("x\n"));
    harness.settle();
    EXPECT_EQ(harness.view.caretRectAt(mark).y(), y);
}

TEST_P(Scrolling, linesRewrittenInOneChangeStayWhereTheyAre)
{
    harness.view.centerOn(harness.storage.length() / 2);
    harness.settle();
    const auto lineAtTop = [&] {
        return harness.storage.snapshot().lineAt(harness.view.offsetAtPoint({10, 2})).value();
    };
    const qsizetype line = lineAtTop();
    QString text = harness.text();
    text.replace(u"\n"_qs, u"\n////////"_qs);
    harness.storage.replaceCharactersInRange(harness.storage.snapshot().range(), text);
    harness.settle();
    EXPECT_EQ(lineAtTop(), line);
}

TEST_P(Scrolling, resizingKeepsTheTopOfTheText)
{
    harness.view.centerOn(harness.storage.length() / 2);
    harness.settle();
    const TextOffset top = harness.view.offsetAtPoint({0, 0});
    for (const int width : {500, 300, 900, 800}) {
        harness.view.resize(width, 400);
        harness.settle();
        const QRect caret = harness.view.caretRectAt(top);
        EXPECT_LE(std::abs(caret.y()), caret.height());
    }
}

TEST_P(Scrolling, ensureVisibleScrollsAsLittleAsPossible)
{
    const int height = harness.view.viewport()->height();
    harness.view.centerOn(harness.storage.length() / 2);
    harness.settle();
    const TextOffset shown = harness.view.offsetAtPoint({10, 200});
    const int y = harness.view.caretRectAt(shown).y();
    harness.view.ensureVisible(shown);
    EXPECT_EQ(harness.view.caretRectAt(shown).y(), y);
    for (const TextOffset offset : {TextOffset(0), harness.storage.length(), TextOffset(999)}) {
        harness.view.ensureVisible(offset);
        const QRect caret = harness.view.caretRectAt(offset);
        EXPECT_GE(caret.top(), 0) << offset;
        EXPECT_LT(caret.bottom(), height) << offset;
    }
}

TEST_P(Scrolling, tellsWhenOtherLinesAreInSight)
{
    QSignalSpy spy(&harness.view, &TextViewWidget::visibleRangeChanged);
    harness.press({QStringLiteral("Right")});
    EXPECT_EQ(spy.count(), 0);
    wheel(harness, {0, -50});
    EXPECT_EQ(spy.count(), 1);
}

INSTANTIATE_TEST_SUITE_P(Wrapping, Scrolling, testing::Bool());

TEST(ScrollScale, holdsMorePixelsThanAnIntDoes)
{
    QScrollBar bar;
    ScrollScale scale;
    const qint64 content = 20'000'000'000;
    scale.fit(bar, content, 400, 16);
    for (const qint64 position : {qint64(0), content / 3, content - 400}) {
        scale.show(bar, position);
        EXPECT_NEAR(double(scale.position(bar.value())), double(position), 25);
    }
    EXPECT_EQ(scale.position(bar.maximum()), content - 400);
    scale.show(bar, 3);
    EXPECT_GT(bar.value(), 0);
}

TEST(LongLineScrolling, measuringWhatIsLeftOfTheViewDoesNotMoveTheTextInSight)
{
    // Wide characters make the estimates wrong, so every chunk that comes into sight is a surprise.
    ViewHarness harness(
        repeated(QStringLiteral("\u65e5\u672c\u8a9e\u65e5\u672c\u8a9ee\u0301 "), 200'000));
    harness.editor.setSelectedRange({100'000, 0});
    harness.view.ensureVisible(100'000);
    harness.settle();
    TextOffset mark = 100'000;
    for (int step = 0; step < 60; ++step) {
        const int x = harness.view.caretRectAt(mark).x();
        wheel(harness, {150, 0});
        ASSERT_NEAR(harness.view.caretRectAt(mark).x(), x + 150, 1) << step;
        mark = harness.view.offsetAtPoint({300, 5});
    }
    EXPECT_LT(mark, 99'500);
}

TEST(LongLineScrolling, homeAndEndShowTheEndsOfALine)
{
    ViewHarness harness(repeated(QStringLiteral("\u65e5\u672c\u8a9ee\u0301 "), 200'000));
    harness.press({QStringLiteral("End")});
    EXPECT_EQ(harness.editor.primarySelection().head, 200'000);
    EXPECT_TRUE(harness.view.viewport()->rect().contains(harness.view.caretRect()));
    EXPECT_GT(harness.view.caretRect().x(), 400);
    harness.press({QStringLiteral("Home")});
    EXPECT_LT(harness.view.caretRect().x(), 20);
    EXPECT_EQ(harness.view.horizontalScrollBar()->value(), 0);
}

TEST(ScrollBars, doNotCoverTheCaretsRowWhenTheyAppear)
{
    ViewHarness harness(QStringLiteral("short\n").repeated(300));
    const int rows = (harness.view.viewport()->height() - TextViewport::verticalMargin) /
                     harness.view.textViewport().rowHeight();
    harness.editor.setSelectedRange({(rows - 1) * 6, 0});
    harness.settle();
    ASSERT_FALSE(harness.view.horizontalScrollBar()->isVisible());
    ASSERT_EQ(harness.view.verticalScrollBar()->value(), 0);
    // Elsewhere in sight, so that nothing but the bar's coming moves the text.
    harness.storage.replaceCharactersInRange({0, 0}, QString(500, u'w'));
    harness.settle();
    ASSERT_TRUE(harness.view.horizontalScrollBar()->isVisible());
    EXPECT_TRUE(harness.view.viewport()->rect().contains(harness.view.caretRect()));
}

TEST(Scrolling, theHorizontalBarFollowsTheSideToWhichTheLongestLineRuns)
{
    const QString latin = QStringLiteral("one ").repeated(100);
    const QString hebrew = QStringLiteral("\u05e9\u05dc\u05d5\u05dd ").repeated(100);
    const QString below = QStringLiteral("\n").repeated(100);
    for (const auto& [longest, text] : {std::pair<QString, QString>(hebrew, hebrew + below),
                                        {hebrew, below + hebrew},
                                        {latin, latin + below},
                                        {latin, below + latin}}) {
        ViewHarness harness(text);
        const QScrollBar& bar = *harness.view.horizontalScrollBar();
        ASSERT_TRUE(bar.isVisible());
        // The bar's extent goes in steps of a quarter of the page.
        const int step = harness.view.viewport()->width() / 4;
        const auto roomBeside = [&, rightToLeft = longest == hebrew] {
            return rightToLeft ? bar.maximum() - bar.value() : bar.value();
        };
        EXPECT_LT(roomBeside(), step);
        EXPECT_GT(bar.maximum(), 1000);
        // The same once the line was in sight.
        const int unseen = bar.maximum();
        harness.view.scrollBy(0, text == below + longest ? 100'000 : 0);
        harness.settle();
        EXPECT_LT(roomBeside(), step);
        EXPECT_NEAR(bar.maximum(), unseen, unseen / 2);
    }
}

TEST(Resizing, leavesTheTextAtTheTopInItsPlace)
{
    QString text;
    for (int i = 0; i < 3000; ++i)
        text += QStringLiteral("%1 %2\n").arg(i).arg(QStringLiteral("words ").repeated(i % 70));
    const QString oneLine = QString(text).replace(u'\n', u' ');
    for (const QString& shown : {text, oneLine}) {
        for (const double share : {0.0, 0.37, 0.8, 1.0}) {
            ViewHarness harness(shown);
            harness.view.setWrapLines(true);
            harness.settle();
            QScrollBar& bar = *harness.view.verticalScrollBar();
            bar.setValue(int(bar.maximum() * share));
            harness.settle();
            SCOPED_TRACE(share);
            TextViewport& viewport = harness.view.textViewport();
            const auto first = viewport.rows().front();
            const auto last = viewport.rows().back();
            for (int i = 0; i < 25; ++i) {
                harness.view.resize(400 + (i * 137) % 900, 200 + (i * 71) % 500);
                QApplication::processEvents();
                if (share == 1)
                    continue; // at the end the last row stays where it is
                const auto row = viewport.rows().front().row;
                ASSERT_LE(row.range.location, first.row.range.location) << i;
                ASSERT_GT(row.range.end(), first.row.range.location) << i;
            }
            harness.view.resize(800, 400);
            harness.settle();
            EXPECT_EQ(viewport.rows().front().y, first.y);
            EXPECT_LE(viewport.rows().front().row.range.location, first.row.range.location);
            EXPECT_GT(viewport.rows().front().row.range.end(), first.row.range.location);
            if (shown == text) {
                EXPECT_EQ(viewport.rows().front().row.range, first.row.range);
                EXPECT_EQ(viewport.rows().back().row.range, last.row.range);
            }
        }
    }
}

} // namespace

} // namespace quillory
