#include "AppFixture.h"
#include "SamplePdf.h"

#include "../view/EventLoopWatchdog.h"

#include "app/LogWindow.h"
#include "app/PdfPanel.h"
#include "app/ProgramAids.h"
#include "app/ProgressSheet.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int patience = 20000; ///< milliseconds; only a failing test waits that long

class ProgramsTest : public AppFixture
{
protected:
    static CommandLine sh(const QString& body) { return {u"/bin/sh"_s, {u"-c"_s, body}}; }

    static void run(DocumentWindow& window, const QString& body)
    {
        window.document().programs().performTerminalCommand(
            sh(body), false,
            [&window](const TextSnapshot& output) { window.programs().showInLog(output); });
    }

    static bool waitForEnd(DocumentWindow& window)
    {
        return QTest::qWaitFor([&] { return !window.document().programs().isRunning(); }, patience);
    }
};

TEST_F(ProgramsTest, SheetTellsOfALongRunAndEscapeEndsIt)
{
    DocumentWindow& window = open(write("text", QByteArray("line\n").repeated(1000)));
    ProgressSheet& sheet = window.programs().sheet();
    run(window, u"sleep 300"_s);
    EXPECT_TRUE(sheet.isHidden());
    ASSERT_TRUE(QTest::qWaitFor([&] { return sheet.isVisible(); }, patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return sheet.timeText() == u"0:02"_s; }, patience));
    press(window, {u"'x'"_s, u"Ctrl+Z"_s, u"PgDown"_s});
    EXPECT_TRUE(textOf(window).startsWith(u"line"_s));
    EXPECT_GT(window.view().visibleRange().location, 0);
    EXPECT_FALSE(command(window, u"File/Revert to Saved"_s)->isEnabled());
    press(window, {u"Esc"_s});
    EXPECT_FALSE(window.document().programs().isRunning());
    EXPECT_TRUE(sheet.isHidden());
    press(window, {u"'x'"_s});
    EXPECT_TRUE(textOf(window).contains(u'x'));

    // One that is over soon shows no sheet.
    run(window, u"echo done"_s);
    ASSERT_TRUE(waitForEnd(window));
    QTest::qWait(ProgressSheet::patience + 200);
    EXPECT_TRUE(sheet.isHidden());
    EXPECT_EQ(window.programs().log().text().string(), u"done\n"_s);
}

TEST_F(ProgramsTest, LogIsReadSearchedCopiedAndCleared)
{
    DocumentWindow& window = open(write("text", "text"));
    press(window, {u"F8"_s});
    EXPECT_TRUE(window.programs().isLogVisible());
    LogWindow& log = window.programs().log();
    run(window, u"seq -s ' ' 10000"_s);
    ASSERT_TRUE(waitForEnd(window));
    auto* text = log.findChild<TextViewWidget*>();
    QCoreApplication::processEvents();
    text->horizontalScrollBar()->setValue(500);
    ASSERT_GT(text->horizontalScrollBar()->value(), 0);
    log.logTextView().setSelectedRange({log.text().length(), 0});
    run(window, u"printf 'one\\nTwo\\nthree two\\n'"_s);
    ASSERT_TRUE(waitForEnd(window));
    QTest::qWait(50);
    EXPECT_EQ(text->horizontalScrollBar()->value(), 0);
    EXPECT_EQ(log.logTextView().selectedRange(), (TextRange{0, 0}));
    ASSERT_TRUE(QTest::qWaitForWindowActive(&log));
    const auto key = [&log](const QString& keys) {
        const QKeyCombination combination = QKeySequence::fromString(keys)[0];
        QTest::keyClick(log.windowHandle(), combination.key(), combination.keyboardModifiers());
        QCoreApplication::processEvents();
    };
    const auto selects = [&log](TextRange range) {
        return QTest::qWaitFor([&] { return log.logTextView().selectedRange() == range; }, 2000);
    };
    key(u"X"_s); // it is only for reading
    EXPECT_EQ(log.text().string(), u"one\nTwo\nthree two\n"_s);

    key(u"Ctrl+F"_s);
    auto* field = log.findChild<QLineEdit*>();
    ASSERT_TRUE(field->hasFocus());
    QTest::keyClicks(field, u"two"_s);
    key(u"Return"_s);
    EXPECT_TRUE(selects({4, 3}));
    key(u"F3"_s);
    EXPECT_TRUE(selects({14, 3}));
    key(u"F3"_s);
    EXPECT_TRUE(selects({4, 3})) << "around the end";
    key(u"Shift+F3"_s);
    EXPECT_TRUE(selects({14, 3})) << "around the beginning";
    key(u"Esc"_s);
    EXPECT_TRUE(log.isVisible());
    key(u"Ctrl+C"_s);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"two"_s);
    log.logTextView().setSelectedRange({0, 0});
    for (QToolButton* button : log.findChildren<QToolButton*>()) {
        if (button->text() == u"Copy"_s)
            QTest::mouseClick(button, Qt::LeftButton);
    }
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"one\nTwo\nthree two\n"_s);
    log.clear();
    EXPECT_TRUE(log.text().isEmpty());
    key(u"F8"_s);
    EXPECT_FALSE(window.programs().isLogVisible());
}

TEST_F(ProgramsTest, LogOfAVeryLongOutputStopsNothing)
{
    DocumentWindow& window = open(write("text", "text"));
    EventLoopWatchdog watchdog;
    run(window, u"yes 'a line of output' | head -c 200000000; echo the end"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.programs().isLogVisible(); }, 60'000));
    LogWindow& log = window.programs().log();
    EXPECT_EQ(log.text().length(), 200'000'008);
    QTest::qWait(100);
    log.openFind();
    log.findChild<QLineEdit*>()->setText(u"THE END"_s);
    log.findNext();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            return log.logTextView().selectedRange() == TextRange{200'000'000, 7};
        },
        patience));
    log.clear();
    QTest::qWait(100);
}

TEST_F(ProgramsTest, FailedTypesettingOffersTheLog)
{
    DocumentWindow& window = open(write("paper.tex", "\\begin{document}"));
    const auto typeset = [&](const QString& body) {
        window.document().programs().performLaTeXCommand(sh(body), folder.path(), path("paper"));
        return waitForEnd(window);
    };
    ASSERT_TRUE(typeset(u"seq -s ' ' 300; exit 1"_s));
    EXPECT_TRUE(message(window, MessageArea::Subject::Programs).startsWith(u"No PDF was made"_s));
    EXPECT_FALSE(window.programs().isLogVisible());
    EXPECT_TRUE(pressWayOut(window, u"Show Log"_s));
    EXPECT_TRUE(window.programs().isLogVisible());
    EXPECT_TRUE(window.programs().log().text().string().endsWith(u" 300\n"_s));
    QTest::qWait(50);
    TextViewport& shown = window.programs().log().findChild<TextViewWidget*>()->textViewport();
    EXPECT_EQ(shown.x(), 0);
    EXPECT_EQ(shown.y(), 0);

    writeSamplePdf(path("made.pdf"), 2);
    ASSERT_TRUE(typeset(u"cp made.pdf paper.pdf"_s));
    EXPECT_TRUE(message(window, MessageArea::Subject::Programs).isEmpty());
    PdfPanel& panel = window.programs().pdfPanel();
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel.hasPdf(); }, patience));
    EXPECT_TRUE(window.programs().isPDFPreviewVisible());

    ASSERT_TRUE(typeset(u"exit 1"_s));
    EXPECT_TRUE(message(window, MessageArea::Subject::Programs).contains(u"older"_s));
    ASSERT_TRUE(typeset(u"cp made.pdf paper.pdf; exit 1"_s));
    EXPECT_TRUE(message(window, MessageArea::Subject::Programs).contains(u"errors"_s));
}

} // namespace
} // namespace quillory::test
