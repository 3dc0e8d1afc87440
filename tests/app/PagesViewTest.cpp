#include "app/PagesView.h"

#include <QMutex>
#include <QPainter>
#include <QScrollBar>
#include <QTest>
#include <QThread>
#include <gtest/gtest.h>
#include <set>

namespace quillory {
namespace {

constexpr int patience = 20000; ///< milliseconds; only a failing test waits that long

/// Pages, each of a colour of its own, with a line from corner to corner.
class ColouredPages : public PageSource
{
public:
    void prepare(const std::function<bool()>&) override {}

    QImage render(int page, double scale, const QRect& part) override
    {
        {
            const QMutexLocker lock(&m_mutex);
            m_rendered.insert(page);
            m_threads.insert(QThread::currentThread());
            m_pixels += qint64(part.width()) * part.height();
        }
        QImage image(part.size(), QImage::Format_RGB32);
        image.fill(colourOf(page));
        QPainter painter(&image);
        painter.translate(-part.topLeft());
        painter.scale(scale, scale);
        painter.drawLine(QPointF(0, 0), QPointF(200, 300));
        return image;
    }

    static QRgb colourOf(int page) { return QColor::fromHsv(page * 40 % 360, 90, 250).rgb(); }

    std::set<int> takeRendered()
    {
        const QMutexLocker lock(&m_mutex);
        return std::exchange(m_rendered, {});
    }

    /// That drew.
    std::set<QThread*> threads()
    {
        const QMutexLocker lock(&m_mutex);
        return m_threads;
    }

    qint64 pixels()
    {
        const QMutexLocker lock(&m_mutex);
        return m_pixels;
    }

private:
    QMutex m_mutex;
    std::set<int> m_rendered;
    std::set<QThread*> m_threads;
    qint64 m_pixels = 0;
};

class PagesViewTest : public ::testing::Test
{
protected:
    PagesViewTest()
    {
        view.resize(500, 400);
        view.QWidget::show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
        view.setRenderer(&renderer);
    }
    ~PagesViewTest() override { view.setRenderer(nullptr); }

    void setPages(int count)
    {
        view.setPageSizes(std::vector<QSizeF>(size_t(count), QSizeF(200, 300)));
    }

    bool isDrawn()
    {
        view.grab(); // which paints, and so asks for what is missing
        return QTest::qWaitFor([&] { return view.isDrawn(); }, patience);
    }

    QRgb pixelAt(QPoint place) { return view.viewport()->grab().toImage().pixel(place); }

    std::shared_ptr<ColouredPages> source = std::make_shared<ColouredPages>();
    PageRenderer renderer{source};
    PagesView view;
};

TEST_F(PagesViewTest, DrawsOnlyWhatIsInSight)
{
    setPages(100'000);
    ASSERT_TRUE(isDrawn());
    EXPECT_LE(source->takeRendered().size(), 3);
    for (const int page : {0, 1, 5000, 99'999}) {
        view.goToPage(page);
        ASSERT_TRUE(isDrawn());
        EXPECT_EQ(view.currentPage(), page);
        EXPECT_EQ(pixelAt({400, 60}), ColouredPages::colourOf(page)) << page;
        EXPECT_LE(source->takeRendered().size(), 4);
    }
    EXPECT_EQ(source->threads().size(), 1U) << "fonts belong to a thread";
    EXPECT_FALSE(source->threads().contains(QThread::currentThread()));
    // Of a large page a part is drawn.
    const qint64 before = source->pixels();
    view.setZoom(PagesView::largestZoom);
    ASSERT_TRUE(isDrawn());
    EXPECT_LT(source->pixels() - before, 12 * 1024 * 1024);
}

TEST_F(PagesViewTest, IsScaledToTheWindowOrByTheUser)
{
    setPages(9);
    const auto width = [&] { return 200 * view.zoom() * view.logicalDpiX() / 72; };
    EXPECT_NEAR(width(), view.viewport()->width() - 20, 2);
    view.resize(700, 400);
    EXPECT_NEAR(width(), view.viewport()->width() - 20, 2);
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);

    view.setFit(PagesView::Fit::Page);
    EXPECT_NEAR(width() * 1.5, view.viewport()->height() - 20, 2);
    view.goToPage(4);
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_EQ(view.currentPage(), 5);
    QTest::keyClick(&view, Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(view.currentPage(), 4);

    for (int i = 0; i < 40; ++i)
        view.zoomIn();
    EXPECT_DOUBLE_EQ(view.zoom(), PagesView::largestZoom);
    EXPECT_EQ(view.currentPage(), 4);
    EXPECT_GT(view.horizontalScrollBar()->maximum(), 0);
    for (int i = 0; i < 40; ++i)
        view.zoomOut();
    EXPECT_DOUBLE_EQ(view.zoom(), PagesView::smallestZoom);
}

TEST_F(PagesViewTest, KeepsThePlaceUnderTheMouseWhenTheWheelZooms)
{
    setPages(9);
    view.goToPage(3);
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->value() + 20);
    const auto under = [&](QPoint place) {
        const PagesView::Place corner = view.place();
        return corner.corner + QPointF(place) * 72 / view.logicalDpiY() / view.zoom();
    };
    const QPoint mouse(300, 150);
    const QPointF before = under(mouse);
    const double zoom = view.zoom();
    for (int i = 0; i < 3; ++i) {
        QWheelEvent wheel(mouse, view.viewport()->mapToGlobal(mouse), {}, {0, 120}, Qt::NoButton,
                          Qt::ControlModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view.viewport(), &wheel);
    }
    EXPECT_NEAR(view.zoom() / zoom, 1.2 * 1.2 * 1.2, 0.01);
    EXPECT_EQ(view.place().page, 3);
    EXPECT_NEAR(under(mouse).x(), before.x(), 3);
    EXPECT_NEAR(under(mouse).y(), before.y(), 3);
}

TEST_F(PagesViewTest, ShowsWhatWasThereUntilTheNewIsDrawn)
{
    setPages(3);
    ASSERT_TRUE(isDrawn());
    const QPoint place(400, 60);
    view.zoomIn();
    EXPECT_EQ(pixelAt(place), ColouredPages::colourOf(0));
    view.setZoom(3); // before the last scale was drawn
    EXPECT_EQ(pixelAt(place), ColouredPages::colourOf(0));
    PageRenderer other(std::make_shared<ColouredPages>());
    view.setRenderer(&other);
    EXPECT_EQ(pixelAt(place), ColouredPages::colourOf(0));
    setPages(3);
    EXPECT_TRUE(isDrawn());
    view.setRenderer(nullptr);
}

TEST_F(PagesViewTest, TakesPagesOfManySizes)
{
    std::vector<QSizeF> sizes;
    for (int i = 0; i < 50; ++i)
        sizes.emplace_back(100 + i % 5 * 40, 150 + i % 7 * 30);
    view.setPageSizes(sizes);
    for (int page = 0; page < 50; ++page) {
        view.goToPage(page);
        EXPECT_EQ(view.currentPage(), page);
    }
    view.setPageSizes({});
    EXPECT_EQ(view.verticalScrollBar()->maximum(), 0);
    EXPECT_TRUE(isDrawn());
}

} // namespace
} // namespace quillory
