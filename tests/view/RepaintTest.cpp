#include "ViewHarness.h"
#include "view/BandedLines.h"
#include "view/LineNumberView.h"

#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QTest>
#include <QWindow>
#include <random>

namespace quillory {

namespace {

QImage onScreen(ViewHarness& harness)
{
    return harness.view.screen()
        ->grabWindow(harness.view.winId())
        .toImage()
        .convertToFormat(QImage::Format_RGB32);
}

QImage paintedAnew(ViewHarness& harness)
{
    QImage image(harness.view.size(), QImage::Format_RGB32);
    harness.view.render(&image);
    return image;
}

/// The screen after everything on it was painted at once.
QImage onScreenPaintedAnew(ViewHarness& harness)
{
    for (auto* part : harness.view.findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
        part->update();
    harness.settle();
    return onScreen(harness);
}

/// Whether \a image has a pixel of \a colour in \a area.
bool shows(const QImage& image, QRect area, QRgb colour)
{
    area = area.intersected(image.rect());
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            if (image.pixel(x, y) == colour)
                return true;
        }
    }
    return false;
}

class RandomRepaint : public testing::TestWithParam<bool>
{};

TEST_P(RandomRepaint, whatIsPaintedPieceByPieceIsWhatIsPaintedAtOnce)
{
    ViewHarness harness;
    const auto* ruler = new LineNumberView(harness.view);
    harness.view.setWrapLines(GetParam());
    QString text;
    for (int i = 0; i < 60; ++i)
        text += QStringLiteral("line %1 ").arg(i).repeated(i * 5 % 23) + u'\n';
    harness.storage.replaceCharactersInRange({}, text);
    harness.settle();
    if (onScreen(harness).isNull())
        GTEST_SKIP() << "this platform cannot be looked at";

    std::mt19937 random(4);
    const QStringList keys{
        QStringLiteral("'x'"),         QStringLiteral("Return"),       QStringLiteral("Backspace"),
        QStringLiteral("Shift+Right"), QStringLiteral("Shift+Down"),   QStringLiteral("Down"),
        QStringLiteral("Up"),          QStringLiteral("Left"),         QStringLiteral("Ctrl+Z"),
        QStringLiteral("End"),         QStringLiteral("Shift+PgDown"), QStringLiteral("PgUp"),
    };
    for (int step = 0; step < 150; ++step) {
        const auto somewhere = [&] {
            return TextOffset(random() % size_t(harness.storage.length() + 1));
        };
        switch (random() % 9) {
        case 0: {
            OverlayAttributes look;
            look.foreground = Colour{float(random() % 2), 0, 1, 1};
            look.background = Colour{1, 1, float(random() % 2), 1};
            harness.overlay.setAttributes(
                TextRange{somewhere(), 30}.clampedTo(harness.storage.length()), look);
            break;
        }
        case 1:
            harness.view.scrollBy(0, int(random() % 100) - 50);
            break;
        case 2:
            harness.editor.setSelectedRanges({{somewhere(), 5}, {somewhere(), 0}});
            break;
        case 3:
            harness.overlay.setLineBand(
                LineBand{{somewhere(), TextOffset(random() % 50)}, {0.8F, 0.9F, 0.8F, 0.5F}});
            break;
        case 4:
            harness.storage.replaceCharactersInRange({somewhere(), TextOffset(random() % 9)},
                                                     QStringLiteral("new\ntext"));
            break;
        default:
            harness.press({keys[qsizetype(random() % size_t(keys.size()))]});
        }
        harness.settle();
        const QImage piecewise = onScreen(harness);
        ASSERT_EQ(piecewise, onScreenPaintedAnew(harness)) << "after step " << step;
        ASSERT_EQ(ruler->width(), harness.view.viewport()->x());
    }
}

INSTANTIATE_TEST_SUITE_P(Wrapping, RandomRepaint, testing::Bool());

/// How much of its height a viewport paints while this lives, in pixels.
class PaintedHeight : public QObject
{
public:
    explicit PaintedHeight(ViewHarness& harness)
    {
        harness.view.viewport()->installEventFilter(this);
    }
    int operator()() const { return m_height; }

    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            for (const QRect& rect : static_cast<QPaintEvent*>(event)->region())
                m_height += rect.height();
        }
        return false;
    }

private:
    int m_height = 0;
};

TEST(Repaint, theBandLiesBehindEveryLineThatItsRangeTouches)
{
    // The lines of "ab\ncd\n\nef\n" are 0-2, 3-5, 6, 7-9 and, empty, 10.
    const TextSnapshot text(QStringLiteral("ab\ncd\n\nef\n"));
    const struct
    {
        TextRange range;
        QString banded;
    } cases[]{
        {{0, 3}, QStringLiteral("0")},     {{3, 4}, QStringLiteral("12")},
        {{4, 1}, QStringLiteral("1")}, // an edit joined it with others
        {{6, 0}, QStringLiteral("2")},     {{10, 0}, QStringLiteral("4")},
        {{0, 10}, QStringLiteral("0123")}, {{7, 90}, QStringLiteral("3")},
    };
    for (const auto& [range, banded] : cases) {
        const BandedLines lines(text, std::vector{LineBand{range, {}}});
        QString found;
        for (qsizetype line = 0; line < text.lineCount(); ++line) {
            if (lines.colourOf(LineIndex(line)))
                found += QString::number(line);
        }
        EXPECT_EQ(found, banded);
    }
    EXPECT_FALSE(BandedLines(text, std::vector<LineBand>()).colourOf(LineIndex(0)));
}

TEST(Repaint, onlyTheLinesWhoseBandDiffersArePainted)
{
    ViewHarness harness(QStringLiteral("some words in a line\n").repeated(5'000'000 / 21));
    const int row = harness.view.caretRect().height();
    const auto paintedBy = [&](TextRange range, Colour colour) {
        const PaintedHeight painted(harness);
        harness.overlay.setLineBand(LineBand{range, colour});
        harness.settle();
        return painted();
    };
    const Colour grey{0.5F, 0.5F, 0.5F, 0.5F};
    EXPECT_LE(paintedBy({21, 21}, grey), 2 * row);
    EXPECT_EQ(paintedBy({21, 21}, grey), 0);
    EXPECT_LE(paintedBy({42, 21}, grey), 4 * row);
    EXPECT_EQ(paintedBy({42, 20}, grey), 0); // the same line
    EXPECT_LE(paintedBy({42, 21}, {1, 0, 0, 0.5F}), 2 * row);
    EXPECT_LE(paintedBy({420'000, 21}, grey), 2 * row); // out of sight
    WorkDone work(harness);
    paintedBy(harness.storage.snapshot().range(), grey);
    EXPECT_EQ(work().linesLaidOut, 0);
}

TEST(Repaint, whatIsColouredWhenItComesIntoSightIsPaintedOnce)
{
    ViewHarness harness(QStringLiteral("some words in a line\n").repeated(500));
    QObject::connect(&harness.view, &TextViewWidget::visibleRangeChanged, [&] {
        OverlayAttributes look;
        look.foreground = Colour{1, 0, 0, 1};
        harness.overlay.setAttributes(harness.view.visibleRange(), look);
    });
    harness.settle();
    PaintedHeight painted(harness);
    harness.view.scrollBy(0, 3000);
    harness.settle();
    EXPECT_GT(painted(), 0);
    EXPECT_LE(painted(), harness.view.viewport()->height());
    EXPECT_TRUE(harness.overlay.attributesAt(harness.view.visibleRange().end() - 1).foreground);
}

TEST(Repaint, onlyTheLinesWhoseColoursDifferArePainted)
{
    ViewHarness harness(QStringLiteral("some words in a line\n").repeated(500));
    const auto colour = [&](TextOffset different) {
        harness.overlay.removeForeground(harness.storage.snapshot().range());
        for (TextOffset word = 0; word < 2000; word += 5) {
            OverlayAttributes look;
            look.foreground = Colour{word == different ? 1.F : 0.F, 0, float(word % 2), 1};
            harness.overlay.setAttributes({word, 4}, look);
        }
        harness.settle();
    };
    colour(-1);
    const int row = harness.view.caretRect().height();
    PaintedHeight painted(harness);
    colour(-1);
    EXPECT_EQ(painted(), 0);
    colour(100);
    EXPECT_GE(painted(), row);
    EXPECT_LE(painted(), 2 * row);
}

TEST(Repaint, aPieceOfALongLineThatIsColouredIsPainted)
{
    ViewHarness harness(repeated(QStringLiteral("word "), 100'000));
    PaintedHeight painted(harness);
    OverlayAttributes look;
    look.foreground = Colour{1, 0, 0, 1};
    harness.overlay.setAttributes({10, 4}, look);
    harness.settle();
    EXPECT_GT(painted(), 0);
}

/// Runs where the platform has two screens of different density.
TEST(MovingBetweenScreens, keepsTheTextWhereItIsAndPaintsItForTheScreen)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    if (screens.size() < 2 || screens[0]->devicePixelRatio() == screens[1]->devicePixelRatio())
        GTEST_SKIP() << "needs screens of two densities";
    ViewHarness harness(QStringLiteral("some text\n").repeated(99));
    harness.editor.setSelectedRange({405, 0});
    harness.view.centerOn(400);
    harness.settle();
    const QRect caret = harness.view.caretRectAt(400);
    for (QScreen* screen : {screens[1], screens[0], screens[1]}) {
        harness.view.move(screen->geometry().topLeft() + QPoint(20, 20));
        harness.settle();
        ASSERT_EQ(harness.view.screen(), screen);
        EXPECT_EQ(harness.view.devicePixelRatio(), screen->devicePixelRatio());
        EXPECT_EQ(harness.view.caretRectAt(400), caret);
        harness.press({QStringLiteral("'x'")});
        const QPixmap whole = harness.view.grab();
        EXPECT_EQ(whole.size(), harness.view.size() * screen->devicePixelRatio());
        const QImage shown = onScreen(harness);
        EXPECT_EQ(shown, onScreenPaintedAnew(harness));
        EXPECT_TRUE(shows(shown, shown.rect(), harness.view.colours().text.rgb()));
    }
}

TEST(TextPainter, paintsColoursBackgroundsAndSelections)
{
    ViewHarness harness(QStringLiteral("red plain\n\u05d0\u05d1 rtl"));
    OverlayAttributes look;
    look.foreground = Colour{1, 0, 0, 1};
    look.background = Colour{0, 1, 0, 1};
    harness.overlay.setAttributes({0, 3}, look);
    harness.editor.setSelectedRange({6, 7});
    const QImage image = paintedAnew(harness);
    const auto between = [&](TextOffset a, TextOffset b) {
        const QRect from = harness.view.caretRectAt(a);
        const QRect to = harness.view.caretRectAt(b);
        return QRect(std::min(from.x(), to.x()) + 2, from.y(), std::abs(to.x() - from.x()) - 4,
                     from.height());
    };
    const QRgb selection = harness.view.colours().selection.rgb();
    EXPECT_TRUE(shows(image, between(0, 3), qRgb(255, 0, 0)));
    EXPECT_TRUE(shows(image, between(0, 3), qRgb(0, 255, 0)));
    EXPECT_FALSE(shows(image, between(4, 6), qRgb(255, 0, 0)));
    EXPECT_FALSE(shows(image, between(4, 6), qRgb(0, 255, 0)));
    EXPECT_FALSE(shows(image, between(4, 6), selection));
    EXPECT_TRUE(shows(image, between(6, 9), selection));
    // The selected break reaches to the edge; of the line with two directions the parts that are
    // selected are marked, wherever they stand.
    EXPECT_TRUE(shows(image, {700, TextViewport::verticalMargin + 2, 90, 4}, selection));
    EXPECT_TRUE(shows(image, between(10, 12), selection));
    EXPECT_FALSE(shows(image, between(14, 16), selection));
}

TEST(TextPainter, followsThePalette)
{
    ViewHarness harness(QStringLiteral("text"));
    QPalette dark = harness.view.palette();
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    dark.setColor(QPalette::Text, QColor(230, 230, 230));
    harness.view.setPalette(dark);
    harness.settle();
    const QImage image = paintedAnew(harness);
    EXPECT_EQ(image.pixel(300, 200), qRgb(20, 20, 20));
    EXPECT_TRUE(shows(image, {0, 0, 60, 20}, qRgb(230, 230, 230)));
}

} // namespace

} // namespace quillory
