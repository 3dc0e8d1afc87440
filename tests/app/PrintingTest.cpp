#include "AppFixture.h"

#include "app/DocumentWindow.h"
#include "app/PrintFlow.h"
#include "app/ProgressBar.h"
#include "document/Document.h"

#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

namespace quillory::test {
namespace {

class PrintingTest : public AppFixture
{
protected:
    /// Chooses File > Save as PDF and waits until the file is there.
    void savePages(DocumentWindow& window)
    {
        questions.savePath = pdf;
        choose(window, QStringLiteral("File/Save as PDF…"));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window.printing().isPrinting(); }, 30000));
    }

    /// The text of the PDF file, a page a string.
    QStringList pages() const
    {
        QProcess process;
        process.start(QStringLiteral("pdftotext"),
                      {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
        process.waitForFinished();
        QStringList pages = QString::fromUtf8(process.readAllStandardOutput()).split(u'\f');
        pages.removeLast(); // each page ends with a form feed
        return pages;
    }

    static bool canRead()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty();
    }

    const QString pdf = folder.filePath(QStringLiteral("out.pdf"));
};

TEST_F(PrintingTest, printsEachLineOnceAndInOrderWithTheFooter)
{
    if (!canRead())
        GTEST_SKIP() << "pdftotext (poppler-utils) is not installed";
    QByteArray text;
    QStringList expected;
    for (int i = 1; i <= 300; ++i) {
        const QString line = QStringLiteral("row-%1 ż ü").arg(i, 3, 10, QLatin1Char('0'));
        text += line.toUtf8() + '\n';
        expected += line;
    }
    defaults.setValue(keys::footerIncludeTitle, true);
    defaults.setValue(keys::footerTitle, QStringLiteral("Notes"));
    defaults.setValue(keys::prefsPrintNumbers, 1);
    defaults.setValue(keys::prefsPrintNumbersTag, 3);
    defaults.setValue(keys::prefsSkip1Page, true);
    DocumentWindow& window = open(write("rows.txt", text));
    savePages(window);

    const QStringList printed = pages();
    ASSERT_GT(printed.size(), 3);
    QStringList rows;
    for (qsizetype i = 0; i < printed.size(); ++i) {
        QStringList page = printed[i].split(u'\n', Qt::SkipEmptyParts);
        const QString footer =
            QStringLiteral("Notes | Page %1 of %2").arg(i + 1).arg(printed.size());
        if (i > 0) {
            ASSERT_FALSE(page.isEmpty());
            EXPECT_EQ(page.takeLast().trimmed(), footer);
        }
        for (const QString& row : page)
            rows += row.trimmed();
    }
    EXPECT_EQ(rows, expected);
    EXPECT_EQ(defaults.value(keys::previewPageInt), printed.size());
}

TEST_F(PrintingTest, canBeCancelledAndLeavesWhatWasThere)
{
    DocumentWindow& window = open(write("long.txt", QByteArray("some words\n").repeated(400000)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, 30000));
    write("out.pdf", "before");
    questions.savePath = pdf;
    choose(window, QStringLiteral("File/Save as PDF…"));
    ASSERT_TRUE(window.printing().isPrinting());
    EXPECT_FALSE(command(window, QStringLiteral("File/Print…"))->isEnabled());
    auto* bar = window.findChild<ProgressBar*>();
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar->percent() > 0; }, 30000));
    EXPECT_TRUE(bar->isVisible());
    // The text can be edited meanwhile.
    press(window, {QStringLiteral("'x'")});
    QTest::mouseClick(bar->findChild<QPushButton*>(), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.printing().isPrinting(); }, 30000));
    EXPECT_FALSE(bar->isVisible());
    EXPECT_EQ(bytesOf(pdf), "before");
}

TEST_F(PrintingTest, saysThatAFileCannotBeWritten)
{
    DocumentWindow& window = open(write("a.txt", "a\n"));
    questions.savePath = path("no such folder/out.pdf");
    choose(window, QStringLiteral("File/Save as PDF…"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.printing().isPrinting(); }, 30000));
    EXPECT_TRUE(
        message(window, MessageArea::Subject::Export).contains(QStringLiteral("was not written")));
}

} // namespace
} // namespace quillory::test
