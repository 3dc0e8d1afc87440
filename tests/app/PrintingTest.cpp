#include "PrintFixture.h"

#include "app/ProgressBar.h"
#include "document/Document.h"
#include "view/Contrast.h"

#include <QFontDatabase>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <map>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

class PrintingTest : public PrintFixture
{
protected:
    struct Word
    {
        double left;
        double top;
        double right;
        double bottom;
        QString text;
    };

    /// Of a page of the file, which is counted from 1; in points from the corner of the paper.
    std::vector<Word> words(int page) const
    {
        static const QRegularExpression pattern(
            u"xMin=\"(.+?)\" yMin=\"(.+?)\" xMax=\"(.+?)\" yMax=\"(.+?)\">(.*?)</word"_s);
        const QString number = QString::number(page);
        const QString boxes =
            outputOf(u"pdftotext"_s, {u"-bbox"_s, u"-f"_s, number, u"-l"_s, number, pdf, u"-"_s});
        std::vector<Word> words;
        for (auto all = pattern.globalMatch(boxes); all.hasNext();) {
            const QRegularExpressionMatch match = all.next();
            words.push_back({match.captured(1).toDouble(), match.captured(2).toDouble(),
                             match.captured(3).toDouble(), match.captured(4).toDouble(),
                             match.captured(5)});
        }
        return words;
    }
};

TEST_F(PrintingTest, PrintsEachLineOnceAndInOrderWithTheFooter)
{
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

TEST_F(PrintingTest, PrintsTheFooterInEachStyle)
{
    DocumentWindow& window = open(write("rows.txt", rows(150)));
    defaults.setValue(keys::footerIncludeTitle, true);
    defaults.setValue(keys::footerTitle, u"Notes"_s);
    defaults.setValue(keys::footerIncludeAuthor, true);
    defaults.setValue(keys::footerAuthor, u"Ann"_s);
    defaults.setValue(keys::prefsPrintNumbers, 1);
    const struct
    {
        int style;
        QString second;
    } cases[] = {
        {0, u"2"_s}, {1, u"-- 2 --"_s}, {2, u"Page 2"_s}, {3, u"Page 2 of 3"_s}, {7, QString()}};
    for (const bool skipsFirst : {false, true}) {
        defaults.setValue(keys::prefsSkip1Page, skipsFirst);
        for (const auto& [style, second] : cases) {
            defaults.setValue(keys::prefsPrintNumbersTag, style);
            savePages(window);
            const QStringList printed = pages();
            ASSERT_EQ(printed.size(), 3);
            EXPECT_EQ(printed[0].contains(u"Notes"_s), !skipsFirst);
            EXPECT_EQ(printed[1].trimmed().section(u'\n', -1).trimmed(),
                      u"Notes | Ann | %1"_s.arg(second).trimmed());
        }
    }
}

TEST_F(PrintingTest, PrintsTheFooterInItsFontAndPlace)
{
    DocumentWindow& window = open(write("few.txt", "text\n"));
    defaults.setValue(keys::footerIncludeTitle, true);
    defaults.setValue(keys::footerTitle, u"Footer"_s);
    defaults.setValue(keys::plainFontName, u"DejaVu Serif"_s);
    defaults.setValue(keys::convertedFontName, u"DejaVu Sans"_s);
    const auto fonts = [&] { return outputOf(u"pdffonts"_s, {pdf}); };
    savePages(window);
    const QString plain = fonts();
    defaults.setValue(keys::convertMarkdown, true);
    savePages(window);
    EXPECT_NE(plain.contains(u"Serif"_s), fonts().contains(u"Serif"_s))
        << plain.toStdString() << fonts().toStdString();

    double lower = 0;
    for (const int numbers : {0, 1}) {
        defaults.setValue(keys::prefsPrintNumbers, numbers);
        savePages(window);
        const double height = fact(u"Page size"_s).section(u' ', 2, 2).toDouble();
        const double width = fact(u"Page size"_s).section(u' ', 0, 0).toDouble();
        const std::vector<Word> all = words(1);
        ASSERT_GE(all.size(), 3U);
        const Word& first = all[1]; // behind the text
        const Word& last = all.back();
        EXPECT_EQ(first.text, u"Footer"_s);
        EXPECT_NEAR((first.left + last.right) / 2, width / 2, 4);
        // The middle of the line is half of 50, or of 70, above the lower edge.
        const double middle = (first.top + first.bottom) / 2;
        EXPECT_NEAR(height - middle, numbers == 1 ? 35 : 25, 2);
        if (numbers == 0)
            lower = middle;
        else
            EXPECT_NEAR(lower - middle, 10, 0.5);
    }
}

TEST_F(PrintingTest, CutsNothingAtTheBordersOfPages)
{
    // Each line is longer than a row, and made of words that say where they belong.
    QByteArray text;
    QStringList expected;
    for (int line = 0; line < 60; ++line) {
        for (int i = 0; i < 60; ++i) {
            const QString word = u"w%1x%2"_s.arg(line).arg(i);
            text += (i % 7 == 3 ? "\t" : " ") + word.toUtf8();
            expected += word;
        }
        text += '\n';
    }
    DocumentWindow& window = open(write("long.txt", text));
    savePages(window);
    const int count = fact(u"Pages"_s).toInt();
    ASSERT_GT(count, 3);
    const double height = fact(u"Page size"_s).section(u' ', 2, 2).toDouble();
    const double width = fact(u"Page size"_s).section(u' ', 0, 0).toDouble();
    constexpr QMarginsF margins = QPPrintableTextView::margins;
    QStringList printed;
    for (int page = 1; page <= count; ++page)
        for (const Word& word : words(page)) {
            printed += word.text;
            EXPECT_GE(word.left, margins.left() - 0.5);
            EXPECT_LE(word.right, width - margins.right() + 0.5) << word.text.toStdString();
            EXPECT_GE(word.top, margins.top() - 2);
            EXPECT_LE(word.bottom, height - margins.bottom() + 2);
        }
    EXPECT_EQ(printed, expected);
}

TEST_F(PrintingTest, PrintsWhatIsWrittenInAnyScript)
{
    const QStringList lines{u"Ärger ŻÓŁW"_s, u"漢字かな交じり文"_s, u"שלום עולם"_s,
                            u"e\u0301tude"_s};
    QString text;
    for (int i = 0; i < 40; ++i)
        text += lines.join(u'\n') + u'\n';
    DocumentWindow& window = open(write("scripts.txt", text.toUtf8()));
    savePages(window);
    const QStringList printed = pages();
    ASSERT_GT(printed.size(), 1);
    const QString all = printed.join(QString());
    EXPECT_EQ(all.count(u"Ärger ŻÓŁW"_s), 40);
    EXPECT_EQ(all.normalized(QString::NormalizationForm_C).count(u"étude"_s), 40);
    if (!QFontDatabase::families(QFontDatabase::Japanese).isEmpty()) {
        EXPECT_EQ(all.count(u"漢字かな交じり文"_s), 40);
    }
    // It is for the reader to put stretches from right to left in order.
    if (!QFontDatabase::families(QFontDatabase::Hebrew).isEmpty()) {
        EXPECT_EQ(all.count(u"שלום"_s) + all.count(u"םולש"_s), 40);
    }
}

TEST_F(PrintingTest, PrintsADarkThemesColoursReadably)
{
    QByteArray code("int main() { return 42; } // a comment\n\"a string\"\n");
    DocumentWindow& window = open(write("code.c", code.repeated(20)));
    for (int theme = 0; theme < 5; ++theme) {
        defaults.setValue(keys::selectedTheme, theme);
        notifications.post(notifications::preferencesDidChange);
        QPPrintableTextView::Job job = printJob(window.document(), defaults);
        job.colours = true;
        QPPrintableTextView view(job);
        ASSERT_TRUE(view.paginate(PrintSetup::usualLayout(), [](double) { return true; }));
        QImage image(1800, 400, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.scale(10, 10);
        painter.translate(-QPPrintableTextView::margins.left(),
                          -QPPrintableTextView::margins.top());
        view.paintPage(painter, 1);
        painter.end();
        // In the middle of a stroke the colour stands as it is.
        std::map<QRgb, int> colours;
        const auto isFlat = [&](int x, int y) {
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx)
                    if (image.pixel(x + dx, y + dy) != image.pixel(x, y))
                        return false;
            return true;
        };
        for (int y = 1; y + 1 < image.height(); ++y)
            for (int x = 1; x + 1 < image.width(); ++x)
                if (isFlat(x, y))
                    ++colours[image.pixel(x, y)];
        colours.erase(qRgb(255, 255, 255));
        int coloured = 0;
        for (const auto& [colour, pixels] : colours) {
            if (pixels < 30)
                continue;
            EXPECT_GE(contrast(QColor(colour), Qt::white), 4.4)
                << QColor(colour).name().toStdString() << " of theme " << theme;
            coloured += colour == qRgb(0, 0, 0) ? 0 : 1;
        }
        EXPECT_GT(coloured, 0) << theme;
    }
}

TEST_F(PrintingTest, CanBeCancelledAndLeavesWhatWasThere)
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

TEST_F(PrintingTest, SaysThatAFileCannotBeWritten)
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
