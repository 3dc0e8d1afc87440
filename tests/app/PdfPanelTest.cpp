#include "AppFixture.h"
#include "SamplePdf.h"

#include "../view/EventLoopWatchdog.h"

#include "app/PageThumbnails.h"
#include "app/PagesPane.h"
#include "app/PdfFindBar.h"
#include "app/PdfPanel.h"
#include "app/ProgramAids.h"

#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int patience = 20000; ///< milliseconds; only a failing test waits that long

class PdfPanelTest : public AppFixture
{
protected:
    QString sample(const char* name, int pages) const
    {
        writeSamplePdf(path(name), pages);
        return path(name);
    }

    static bool loads(PdfPanel& panel, const QString& path)
    {
        QSignalSpy loaded(&panel, &PdfPanel::loaded);
        panel.load(path);
        return QTest::qWaitFor([&] { return loaded.count() == 1; }, patience);
    }

    /// Waits until \a view shows all of its pages in sight.
    static bool isDrawn(PagesView& view)
    {
        view.grab(); // which paints, and so asks for what is missing
        return QTest::qWaitFor([&] { return view.isDrawn(); }, patience);
    }

    static bool isSearched(PdfPanel& panel)
    {
        return QTest::qWaitFor([&] { return !panel.findBar().isSearching(); }, patience);
    }

    static void type(PdfPanel& panel, const QString& text)
    {
        auto* field = panel.findBar().findChild<QLineEdit*>();
        field->selectAll();
        QTest::keyClicks(field, text);
    }

    /// How many pixels \a view shows that \a counts.
    static int pixels(PagesView& view, const std::function<bool(QColor)>& counts)
    {
        const QImage image = view.viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += counts(image.pixelColor(x, y)) ? 1 : 0;
        return count;
    }

    PdfPanel panel{folders.plugins, questions};
};

TEST_F(PdfPanelTest, BelongsToADocumentThatMayHaveOne)
{
    DocumentWindow& window = open(write("paper.tex", "text"));
    press(window, {u"F9"_s});
    PdfPanel& own = window.programs().pdfPanel();
    ASSERT_TRUE(own.isVisible());
    EXPECT_EQ(own.windowTitle(), u"Preview"_s);
    EXPECT_FALSE(own.note().isEmpty());
    QTest::keyClick(own.windowHandle(), Qt::Key_F9);
    EXPECT_FALSE(window.programs().isPDFPreviewVisible());
    // One that lies beside the document is taken when there is none.
    sample("paper.pdf", 2);
    window.programs().showPDFPreview();
    EXPECT_TRUE(QTest::qWaitFor([&] { return own.hasPdf(); }, patience));
    window.programs().showPDFPreview();
    EXPECT_FALSE(window.programs().isPDFPreviewVisible());

    DocumentWindow& other = open(write("code.c", "int i;"));
    EXPECT_FALSE(command(other, u"View/PDF Preview"_s)->isEnabled());
}

TEST_F(PdfPanelTest, ShowsTheSamePlaceOfTheNextRun)
{
    panel.present();
    ASSERT_TRUE(loads(panel, sample("paper.pdf", 5)));
    ASSERT_TRUE(panel.hasPdf()) << panel.note().toStdString();
    EXPECT_TRUE(panel.note().isEmpty());
    PagesView& view = panel.pages().view();
    EXPECT_EQ(view.pageCount(), 5);
    EXPECT_EQ(view.fit(), PagesView::Fit::Width);
    EXPECT_TRUE(isDrawn(view));
    view.zoomIn();
    view.goToPage(3);
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->value() + 120);
    const PagesView::Place before = view.place();
    const auto expectPlace = [&] {
        EXPECT_EQ(view.place().page, before.page);
        EXPECT_NEAR(view.place().corner.y(), before.corner.y(), 1);
        EXPECT_EQ(view.place().zoom, before.zoom);
    };
    ASSERT_TRUE(loads(panel, sample("paper.pdf", 6)));
    EXPECT_EQ(view.pageCount(), 6);
    expectPlace();
    // Also when a run in between made none.
    ASSERT_TRUE(loads(panel, write("paper.pdf", "broken")));
    EXPECT_FALSE(panel.hasPdf());
    ASSERT_TRUE(loads(panel, sample("paper.pdf", 6)));
    expectPlace();
    ASSERT_TRUE(loads(panel, sample("paper.pdf", 2)));
    EXPECT_EQ(view.currentPage(), 1);
    ASSERT_TRUE(loads(panel, sample("other.pdf", 6)));
    EXPECT_EQ(view.currentPage(), 0);
}

TEST_F(PdfPanelTest, SavesWhatIsShownWhateverBecameOfTheFile)
{
    ASSERT_TRUE(loads(panel, sample("paper.pdf", 2)));
    const QByteArray shown = bytesOf(path("paper.pdf"));
    write("paper.pdf", "overwritten");
    questions.savePath = path("copy.pdf");
    panel.savePDF();
    EXPECT_TRUE(QTest::qWaitFor([&] { return bytesOf(path("copy.pdf")) == shown; }, patience));
    questions.savePath = path("no such folder/copy.pdf");
    panel.savePDF();
    EXPECT_TRUE(QTest::qWaitFor([&] { return questions.told.size() == 1; }, patience));
}

TEST_F(PdfPanelTest, SaysWhyAFileCannotBeShown)
{
    // The user's password is none that is tried: what /U holds follows from no key.
    const QByteArray secret("(0123456789abcdef0123456789abcdef)");
    const QByteArray encrypted =
        "%PDF-1.4\n1 0 obj <</Type/Catalog/Pages 2 0 R>> endobj\n"
        "2 0 obj <</Type/Pages/Kids[3 0 R]/Count 1>> endobj\n"
        "3 0 obj <</Type/Page/Parent 2 0 R/MediaBox[0 0 99 99]>> endobj\n"
        "4 0 obj <</Filter/Standard/V 1/R 2/Length 40/P -4/O" +
        secret + "/U" + secret +
        ">> endobj\n"
        "trailer <</Root 1 0 R/Size 5/Encrypt 4 0 R/ID[<00><00>]>>\n%%EOF\n";
    const struct
    {
        QByteArray bytes;
        QString said;
    } cases[] = {{"", u"damaged"_s},
                 {"no PDF", u"damaged"_s},
                 {"%PDF-1.5\n1 0 obj <<", u"damaged"_s},
                 {encrypted, u"password"_s}};
    for (const auto& [bytes, said] : cases) {
        ASSERT_TRUE(loads(panel, write("paper.pdf", bytes)));
        EXPECT_FALSE(panel.hasPdf());
        EXPECT_TRUE(panel.note().contains(said)) << panel.note().toStdString();
    }
    ASSERT_TRUE(loads(panel, path("missing.pdf")));
    EXPECT_TRUE(panel.note().contains(u"missing.pdf"_s));

    PdfPanel without(folder.path(), questions);
    ASSERT_TRUE(loads(without, sample("good.pdf", 1)));
    EXPECT_FALSE(without.hasPdf());
    EXPECT_TRUE(without.note().contains(u"not installed"_s));
}

TEST_F(PdfPanelTest, FindsAndMarksAndGoesOn)
{
    panel.present();
    ASSERT_TRUE(loads(panel, sample("paper.pdf", 120)));
    PagesView& view = panel.pages().view();
    view.goToPage(20);
    QTest::keyClick(panel.windowHandle(), Qt::Key_F, Qt::ControlModifier);
    type(panel, u"NUMBER 1"_s);
    ASSERT_TRUE(isSearched(panel));
    // 1, 10 to 19, 100 to 119 are found; the search goes on from the page in sight.
    const auto expectAt = [&](const QString& said, int page) {
        EXPECT_EQ(panel.findBar().state(), said);
        EXPECT_TRUE(QTest::qWaitFor([&] { return view.currentPage() + 1 == page; }, patience));
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return view.currentPage() == 99; }, patience));
    EXPECT_EQ(panel.findBar().state(), u"12 of 32"_s);
    const auto isOrange = [](QColor colour) { return colour.red() > 240 && colour.blue() < 120; };
    ASSERT_TRUE(isDrawn(view));
    EXPECT_GT(pixels(view, isOrange), 0);
    QTest::keyClick(panel.windowHandle(), Qt::Key_F3, Qt::ShiftModifier);
    expectAt(u"11 of 32"_s, 19);
    QTest::keyClick(panel.windowHandle(), Qt::Key_F3);
    QTest::keyClick(panel.windowHandle(), Qt::Key_F3);
    expectAt(u"13 of 32"_s, 101);

    // Another run's PDF is searched too, and the place stays.
    ASSERT_TRUE(loads(panel, sample("paper.pdf", 110)));
    ASSERT_TRUE(isSearched(panel));
    EXPECT_TRUE(panel.findBar().state().endsWith(u"of 22"_s))
        << panel.findBar().state().toStdString();
    EXPECT_EQ(view.currentPage(), 100);
    type(panel, u"nowhere"_s);
    ASSERT_TRUE(isSearched(panel));
    EXPECT_EQ(panel.findBar().state(), u"Not found"_s);
    QTest::keyClick(panel.windowHandle(), Qt::Key_Escape);
    EXPECT_TRUE(panel.isVisible());
    EXPECT_FALSE(panel.findBar().isVisible());
    EXPECT_EQ(pixels(view, isOrange), 0);
    QTest::keyClick(panel.windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(PdfPanelTest, StaysFluidWithManyPages)
{
    const QString many = sample("many.pdf", 3000);
    EventLoopWatchdog watchdog;
    panel.present();
    ASSERT_TRUE(loads(panel, many));
    panel.pages().setThumbnailsVisible(true);
    PagesView& view = panel.pages().view();
    PageThumbnails& thumbnails = panel.pages().thumbnails();
    EXPECT_TRUE(isDrawn(view));
    EXPECT_TRUE(isDrawn(thumbnails));
    EXPECT_GT(pixels(thumbnails, [](QColor colour) { return colour == QColor(Qt::white); }),
              10'000);

    QTest::keyClick(panel.windowHandle(), Qt::Key_L, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), u"2500\r"_s);
    EXPECT_EQ(view.currentPage(), 2499);
    EXPECT_TRUE(isDrawn(view));
    EXPECT_TRUE(isDrawn(thumbnails));
    QTest::mouseClick(thumbnails.viewport(), Qt::LeftButton, {},
                      {thumbnails.viewport()->width() / 2, thumbnails.viewport()->height() - 60});
    EXPECT_NE(view.currentPage(), 2499);
    QTest::keyClick(panel.windowHandle(), Qt::Key_PageDown, Qt::ControlModifier);
    QTest::keyClick(panel.windowHandle(), Qt::Key_End);
    EXPECT_EQ(view.currentPage(), 2999);
    for (int i = 0; i < 12; ++i)
        QTest::keyClick(panel.windowHandle(), Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_TRUE(isDrawn(view));
}

} // namespace
} // namespace quillory::test
