#include "PrintFixture.h"

#include "../view/EventLoopWatchdog.h"

#include "app/PageSetupDialog.h"
#include "app/PagesPane.h"
#include "app/PrintPages.h"
#include "app/PrintPreview.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QCheckBox>
#include <QComboBox>
#include <QPainter>
#include <QToolButton>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

class PrintPreviewTest : public PrintFixture
{
protected:
    static PrintPreview& show(DocumentWindow& window)
    {
        choose(window, u"File/Print Preview…"_s);
        return *window.printing().preview();
    }

    static bool areAllFound(PrintPreview& preview)
    {
        return QTest::qWaitFor([&] { return preview.isComplete(); }, patience);
    }

    static bool isDrawn(PrintPreview& preview)
    {
        PagesView& view = preview.pages().view();
        view.grab(); // which paints, and so asks for what is missing
        return QTest::qWaitFor([&] { return view.pageCount() > 0 && view.isDrawn(); }, patience);
    }

    static int darkPixels(PrintPreview& preview)
    {
        const QImage image = preview.pages().view().viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                count += qGray(image.pixel(x, y)) < 100 ? 1 : 0;
        return count;
    }
};

TEST_F(PrintPreviewTest, ShowsThePagesThatPrintingMakes)
{
    DocumentWindow& window = open(write("rows.txt", rows(300)));
    PrintPreview& preview = show(window);
    ASSERT_TRUE(areAllFound(preview));
    EXPECT_TRUE(preview.windowTitle().contains(u"rows.txt"_s));
    ASSERT_TRUE(isDrawn(preview));
    EXPECT_GT(darkPixels(preview), 500);
    savePages(window);
    PagesView& view = preview.pages().view();
    EXPECT_EQ(QString::number(view.pageCount()), fact(u"Pages"_s));
    EXPECT_EQ(view.fit(), PagesView::Fit::Page);
    QTest::keyClick(preview.windowHandle(), Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(view.currentPage(), 1);

    // What is edited is in it when one comes back to it.
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const int before = view.pageCount();
    window.document().textView().selectAll();
    press(window, {u"Ctrl+C"_s, u"Right"_s, u"Ctrl+V"_s});
    preview.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&preview));
    ASSERT_TRUE(areAllFound(preview));
    EXPECT_GE(view.pageCount(), 2 * before - 1);
    EXPECT_EQ(view.currentPage(), 1);

    QTest::keyClick(preview.windowHandle(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window.printing().preview(); }));
}

TEST_F(PrintPreviewTest, ChangesPaperAndOptionsOfWhatIsPrinted)
{
    DocumentWindow& window = open(write("code.c", rows(300)));
    PrintPreview& preview = show(window);
    ASSERT_TRUE(areAllFound(preview));
    const int upright = preview.pages().view().pageCount();
    for (QToolButton* button : preview.findChildren<QToolButton*>())
        if (button->text() == u"Page Setup…"_s)
            button->click();
    auto* dialog = preview.findChild<PageSetupDialog*>();
    ASSERT_TRUE(dialog);
    const QList<QComboBox*> choices = dialog->findChildren<QComboBox*>();
    choices[0]->setCurrentText(u"A5"_s);
    choices[1]->setCurrentIndex(1);
    dialog->accept();
    ASSERT_TRUE(areAllFound(preview));
    EXPECT_GT(preview.pages().view().pageCount(), upright);
    for (QCheckBox* box : preview.findChildren<QCheckBox*>()) {
        EXPECT_FALSE(box->isChecked()) << "off unless asked for";
        if (box->text() == u"Line &numbers"_s)
            box->click();
    }
    ASSERT_TRUE(areAllFound(preview));
    savePages(window);
    EXPECT_TRUE(fact(u"Page size"_s).startsWith(u"595 x 42"_s))
        << fact(u"Page size"_s).toStdString();
    EXPECT_EQ(QString::number(preview.pages().view().pageCount()), fact(u"Pages"_s));
    EXPECT_EQ(pages().value(0).split(u'\n').value(0).simplified(), u"1 row 1"_s);
}

TEST_F(PrintPreviewTest, FollowsTheFooterOfThePreferences)
{
    DocumentWindow& window = open(write("few.txt", rows(2)));
    PrintPreview& preview = show(window);
    ASSERT_TRUE(areAllFound(preview));
    ASSERT_TRUE(isDrawn(preview));
    const int without = darkPixels(preview);
    defaults.setValue(keys::footerIncludeTitle, true);
    defaults.setValue(keys::footerTitle, QString(u"W"_s.repeated(60)));
    notifications.post(notifications::preferencesDidChange);
    EXPECT_TRUE(QTest::qWaitFor([&] { return darkPixels(preview) > without + 200; }, patience));
}

TEST_F(PrintPreviewTest, ShowsTheFirstPagesOfManyAtOnce)
{
    DocumentWindow& window = open(write("many.txt", rows(200'000)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, patience));
    EventLoopWatchdog watchdog;
    PrintPreview& preview = show(window);
    ASSERT_TRUE(QTest::qWaitFor([&] { return darkPixels(preview) > 500; }, patience));
    EXPECT_FALSE(preview.isComplete()) << "all pages were found before the first was drawn";
    ASSERT_TRUE(areAllFound(preview));
    EXPECT_GT(preview.pages().view().pageCount(), 2000);
    QTest::keyClick(preview.windowHandle(), Qt::Key_End);
    ASSERT_TRUE(isDrawn(preview));

    // One that is closed, or whose document is, while pages are still looked for.
    window.document().textView().setSelectedRange({0, 0});
    press(window, {u"'x'"_s});
    show(window).close();
    show(window);
    window.document().undoManager().undo();
    window.close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return controller.windows().empty(); }, patience));
    // What draws the pages ends with the window.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST(PrintPages, DrawAPageTheSameInParts)
{
    QPPrintableTextView::Job job;
    job.text.text = TextSnapshot(u"Some words, Ärger, 漢字 and שלום 🙂\n"_s.repeated(200));
    job.range = job.text.text.range();
    job.font = QFont(u"DejaVu Sans Mono"_s);
    job.font.setPointSizeF(10);
    int found = 0;
    PrintPages pages(job, PrintSetup::usualLayout(), [&](int count, bool) { found = count; });
    pages.prepare([] { return true; });
    EXPECT_GT(found, 2);
    const QImage whole = pages.render(1, 1.3, {0, 0, 700, 1000});
    QImage parts(whole.size(), whole.format());
    QPainter painter(&parts);
    for (const QRect& part : {QRect(0, 0, 311, 333), QRect(311, 0, 389, 333),
                              QRect(0, 333, 311, 667), QRect(311, 333, 389, 667)})
        painter.drawImage(part.topLeft(), pages.render(1, 1.3, part));
    painter.end();
    EXPECT_EQ(parts, whole);
}

} // namespace
} // namespace quillory::test
