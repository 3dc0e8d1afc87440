#include "AppFixture.h"

#include "../view/EventLoopWatchdog.h"

#include "app/LoadFlow.h"
#include "app/Recovery.h"
#include "app/RereadFlow.h"
#include "app/ViewAppearance.h"
#include "app/WindowPresentation.h"
#include "app/WindowRestoration.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

namespace quillory {
namespace {

using test::AppFixture;

constexpr int patience = 20000; // milliseconds
constexpr StringEncoding macRoman{30};

class WindowRestorationTest : public AppFixture
{
protected:
    WindowRestorationTest()
    {
        folders.state = folder.filePath(QStringLiteral("state"));
        defaults.setValue(keys::restoresWindows, true);
        defaults.setValue(keys::dontAsk, true);
    }

    /// One run of the program.
    struct Program
    {
        explicit Program(WindowRestorationTest& test)
            : controller(test.environment, test.questions, test.state),
              recovery(controller, test.environment),
              restoration(controller, test.environment, test.questions)
        {
            restoration.setRecovery(recovery);
        }

        void start(bool behind = false)
        {
            QSignalSpy restored(&restoration, &WindowRestoration::restored);
            restoration.start(behind);
            EXPECT_TRUE(!restoration.isRestoring() || restored.wait(patience));
            QCoreApplication::processEvents();
        }

        DocumentWindow& open(const QString& path)
        {
            controller.open({{path, {}}});
            EXPECT_TRUE(QTest::qWaitFor([&] { return controller.windowShowing(path); }, patience));
            DocumentWindow& window = *controller.windowShowing(path);
            EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
            return window;
        }

        bool quit()
        {
            QSignalSpy finished(&controller, &DocumentController::finished);
            controller.quit();
            const bool isOver = !finished.isEmpty() || finished.wait(2000);
            // The windows hold their journals until they are gone.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            return isOver;
        }

        DocumentController controller;
        Recovery recovery;
        WindowRestoration restoration;
    };

    QByteArray numbered(int lines) const
    {
        QByteArray text;
        for (int i = 0; i < lines; ++i)
            text += "line " + QByteArray::number(i) + "\n";
        return text;
    }
    static TextOffset topOf(DocumentWindow& window)
    {
        return window.view().textViewport().rows().front().row.range.location;
    }
};

TEST_F(WindowRestorationTest, WindowsComeBackAsTheyWere)
{
    const QString a = write("a.txt", numbered(500));
    const QString b = write("b.txt", "two words\n");
    const QString c = write("c.txt", "caf\xe9\n");
    const QString readable = QStringLiteral("cafÈ\n");
    std::vector<Selection> selections{{30, 20}, {3000, 3005}};
    TextOffset top = 0;
    int topY = 0;
    QRect frame;
    {
        Program program(*this);
        program.start();
        DocumentWindow& first = program.open(a);
        first.setGeometry(120, 90, 420, 310);
        first.document().setDefinitionWithTitle(QStringLiteral("HTML"));
        first.document().textView().setSelections(selections, 0);
        first.view().scrollBy(0, 1234);
        first.appearance().zoomBy(3);
        first.presentation().toggleFloatingWindow();
        DocumentWindow& second = program.open(b);
        second.showMaximized();
        DocumentWindow& third = program.open(c);
        ASSERT_NE(textOf(third), readable);
        third.rereading().reopen(macRoman);
        ASSERT_TRUE(QTest::qWaitFor([&] { return textOf(third) == readable; }, patience));
        third.document().textView().setSelection({1, 3});
        first.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&first));
        QCoreApplication::processEvents();
        top = topOf(first);
        topY = first.view().textViewport().rows().front().y;
        frame = QRect(first.pos(), first.size());
        ASSERT_GT(top, 0);
        ASSERT_TRUE(program.quit());
    }
    EXPECT_TRUE(questions.asked.isEmpty());

    Program program(*this);
    program.start();
    ASSERT_EQ(program.controller.windows().size(), 3U);
    DocumentWindow& first = *program.controller.windowShowing(a);
    EXPECT_EQ(&first, program.controller.windows().front());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&first));
    QTest::qWait(100);
    EXPECT_EQ(QRect(first.pos(), first.size()), frame);
    EXPECT_EQ(first.document().textView().selections(), selections);
    EXPECT_EQ(first.document().textView().primarySelection(), selections[0]);
    EXPECT_EQ(topOf(first), top);
    EXPECT_EQ(first.view().textViewport().rows().front().y, topY);
    EXPECT_EQ(first.appearance().zoom(), 3);
    EXPECT_TRUE(first.presentation().isFloating());
    EXPECT_EQ(first.document().record().definitionTitle, u"HTML");
    EXPECT_FALSE(first.document().isDocumentEdited());
    EXPECT_TRUE(program.controller.windowShowing(b)->isMaximized());
    DocumentWindow& third = *program.controller.windowShowing(c);
    const Selection selection{1, 3};
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return third.document().textView().primarySelection() == selection; }, patience));
    EXPECT_EQ(textOf(third), readable);
    EXPECT_EQ(third.document().record().encoding, macRoman);
    EXPECT_EQ(third.document().encodingsArrayController().selected()->number, macRoman);
    EXPECT_FALSE(third.document().isDocumentEdited());
    EXPECT_FALSE(third.document().undoManager().canUndo());
}

TEST_F(WindowRestorationTest, NothingIsLostWithoutAGoodEnd)
{
    const QString a = write("a.txt", numbered(10));
    QFile session(folders.sessionFile());
    {
        Program program(*this);
        program.start();
        DocumentWindow& window = program.open(a);
        ASSERT_TRUE(QTest::qWaitFor([&] { return session.exists(); }, patience));
        window.document().textView().setSelection({5, 5});
        window.resize(500, 300);
        QTest::qWait(1500);
        // As after a kill: what the end writes does not count.
        ASSERT_TRUE(session.copy(path("kept")));
    }
    ASSERT_TRUE(session.remove());
    ASSERT_TRUE(QFile::rename(path("kept"), folders.sessionFile()));
    Program program(*this);
    program.start();
    DocumentWindow* window = program.controller.windowShowing(a);
    ASSERT_TRUE(window);
    EXPECT_EQ(window->document().textView().primarySelection(), Selection::caret(5));
}

TEST_F(WindowRestorationTest, FilesThatAreGoneAreToldOnceAndOthersPulledIn)
{
    const QString a = write("a.txt", numbered(1000));
    {
        Program program(*this);
        program.start();
        DocumentWindow& window = program.open(a);
        window.document().textView().setSelection({9000, 9010});
        window.view().scrollBy(0, 100000);
        for (const char* name : {"b", "c"})
            program.open(write(name, "x"));
        ASSERT_TRUE(program.quit());
    }
    QFile::remove(path("b"));
    QFile::remove(path("c"));
    write("a.txt", "short\r\n");
    Program program(*this);
    program.start();
    ASSERT_EQ(program.controller.windows().size(), 1U);
    DocumentWindow& window = *program.controller.windowShowing(a);
    EXPECT_EQ(window.document().textView().primarySelection(), Selection::caret(7));
    EXPECT_EQ(topOf(window), 0);
    // The file has its own line breaks since.
    EXPECT_EQ(window.document().record().lbFormat, 3);
    EXPECT_FALSE(window.document().isDocumentEdited());
    ASSERT_EQ(questions.told.size(), 1);
    EXPECT_TRUE(questions.told[0].contains(path("b")) && questions.told[0].contains(path("c")));
}

TEST_F(WindowRestorationTest, FileThatIsAskedForComesAsItWasButWhereItWasAskedFor)
{
    const QString a = write("a.txt", numbered(500));
    const QString b = write("b.txt", "b");
    {
        Program program(*this);
        program.start();
        program.open(a).document().textView().setSelection({70, 70});
        program.open(b);
        ASSERT_TRUE(program.quit());
    }
    Program program(*this);
    QSignalSpy restored(&program.restoration, &WindowRestoration::restored);
    program.restoration.start(true);
    program.controller.open({{a, TextPlace{300, 1}}});
    ASSERT_TRUE(restored.wait(patience));
    ASSERT_EQ(program.controller.windows().size(), 2U);
    DocumentWindow& window = *program.controller.windowShowing(a);
    const TextSnapshot text = window.document().completeString();
    EXPECT_EQ(window.document().textView().primarySelection().head, text.lineStart(LineIndex(299)));
}

TEST_F(WindowRestorationTest, QuittingAsksForWhatWouldBeLost)
{
    const QString a = write("a.txt", "a");
    const QString b = write("b.txt", "b");
    Program program(*this);
    program.start();
    program.open(a);
    DocumentWindow& edited = program.open(b);
    defaults.setValue(keys::restoresWindows, false);
    press(edited, {QStringLiteral("'x'")});
    EXPECT_FALSE(program.quit());
    EXPECT_EQ(questions.asked, QStringList(QStringLiteral("save b.txt")));
    EXPECT_EQ(program.controller.windows().size(), 2U);
}

TEST_F(WindowRestorationTest, WhatWasStillToComeComesWhenQuittingIsCancelled)
{
    {
        Program program(*this);
        program.start();
        for (const char* name : {"a", "b", "c"})
            program.open(write(name, "x"));
        ASSERT_TRUE(program.quit());
    }
    Program program(*this);
    program.restoration.setException(
        [](const DocumentWindow& window) { return window.document().path().isEmpty(); });
    QSignalSpy restored(&program.restoration, &WindowRestoration::restored);
    program.restoration.start(false);
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return program.controller.windows().size() == 1; }, patience));
    press(*program.controller.newDocument(), {QStringLiteral("'x'")});
    program.controller.quit();
    EXPECT_EQ(questions.asked.size(), 1);
    ASSERT_TRUE(restored.size() == 1 || restored.wait(patience));
    EXPECT_EQ(program.controller.windows().size(), 4U);
}

TEST_F(WindowRestorationTest, WindowThatIsWaitedForDoesNotComeBack)
{
    const QString a = write("a.txt", "a");
    const QString b = write("b.txt", "b");
    {
        Program program(*this);
        program.start();
        program.open(a);
        DocumentWindow& waitedFor = program.open(b);
        bool waits = true;
        program.restoration.setException(
            [&](const DocumentWindow& window) { return waits && &window == &waitedFor; });
        QObject::connect(&program.controller, &DocumentController::settled, &program.restoration,
                         [&waits] { waits = false; });
        press(waitedFor, {QStringLiteral("'x'")});
        questions.beforeClosing = UserQuestions::BeforeClosing::Discard;
        ASSERT_TRUE(program.quit());
    }
    Program program(*this);
    program.start();
    ASSERT_EQ(program.controller.windows().size(), 1U);
    EXPECT_TRUE(program.controller.windowShowing(a));
}

TEST_F(WindowRestorationTest, TextsThatAreNotSavedComeBackWithoutAQuestion)
{
    const QString a = write("a.txt", "a\n");
    const QString b = write("b.txt", "b\n");
    {
        Program program(*this);
        program.start();
        press(program.open(a), {QStringLiteral("'more '")});
        program.open(b);
        DocumentWindow& untitled = *program.controller.newDocument();
        untitled.setGeometry(200, 100, 500, 300);
        press(untitled, {QStringLiteral("'a note'")});
        ASSERT_TRUE(program.quit());
    }
    EXPECT_TRUE(questions.asked.isEmpty());
    EXPECT_EQ(bytesOf(a), "a\n");

    Program program(*this);
    program.start();
    ASSERT_EQ(program.controller.windows().size(), 3U);
    DocumentWindow& named = *program.controller.windowShowing(a);
    EXPECT_EQ(textOf(named), u"more a\n");
    EXPECT_TRUE(named.document().isDocumentEdited());
    EXPECT_EQ(named.document().textView().primarySelection(), Selection::caret(5));
    const auto& windows = program.controller.windows();
    const auto untitled = std::find_if(windows.begin(), windows.end(), [](DocumentWindow* window) {
        return window->document().path().isEmpty();
    });
    ASSERT_NE(untitled, windows.end());
    EXPECT_EQ(textOf(**untitled), u"a note");
    EXPECT_EQ((*untitled)->size(), QSize(500, 300));
    // Nothing of it is news.
    EXPECT_EQ(message(named, MessageArea::Subject::Recovery), QString());
}

TEST_F(WindowRestorationTest, TextOfALargeFileComesBackWhateverBecameOfThat)
{
    const QByteArray bytes = QByteArray("0123456789abcde\n").repeated(100'000);
    for (const bool isTold : {true, false}) {
        SCOPED_TRACE(isTold);
        const QString a = write("a.txt", bytes);
        {
            Program program(*this);
            program.start();
            DocumentWindow& window = program.open(a);
            QTest::qWait(300);
            press(window, {QStringLiteral("'x'")});
            write("a.txt", "theirs\n");
            if (isTold) {
                ASSERT_TRUE(QTest::qWaitFor(
                    [&] { return !message(window, MessageArea::Subject::FileOnDisk).isEmpty(); },
                    patience));
                ASSERT_TRUE(pressWayOut(window, QStringLiteral("Keep Mine")));
            }
            ASSERT_TRUE(program.quit());
        }
        EXPECT_TRUE(questions.asked.isEmpty());
        EXPECT_EQ(bytesOf(a), "theirs\n");
        Program program(*this);
        program.start();
        ASSERT_EQ(program.controller.windows().size(), 1U);
        DocumentWindow& window = *program.controller.windows().front();
        EXPECT_EQ(window.document().path(), a);
        EXPECT_EQ(textOf(window), QString(u'x' + QString::fromLatin1(bytes)));
        window.document().undoManager().markClean();
        program.controller.quitForGood();
    }
}

TEST_F(WindowRestorationTest, WhatIsClosedOrSwitchedOffDoesNotComeBack)
{
    const QString a = write("a.txt", "a");
    const QString b = write("b.txt", "b");
    const auto windowsOfNextStart = [&] {
        Program program(*this);
        program.start();
        return program.controller.windows().size();
    };
    {
        Program program(*this);
        program.start();
        program.open(a);
        program.open(b).close();
        ASSERT_TRUE(program.quit());
    }
    EXPECT_EQ(windowsOfNextStart(), 1U);
    {
        Program program(*this);
        program.start();
        QSignalSpy finished(&program.controller, &DocumentController::finished);
        program.controller.quitForGood();
        EXPECT_FALSE(finished.isEmpty());
    }
    EXPECT_EQ(windowsOfNextStart(), 0U);
    {
        Program program(*this);
        program.start();
        program.open(a);
        defaults.setValue(keys::restoresWindows, false);
        ASSERT_TRUE(program.quit());
    }
    defaults.setValue(keys::restoresWindows, true);
    EXPECT_EQ(windowsOfNextStart(), 0U);
}

TEST_F(WindowRestorationTest, AnotherProgramOverTheSameFolderKeepsAway)
{
    const QString a = write("a.txt", "a");
    Program program(*this);
    program.start();
    program.open(a);
    program.restoration.save();
    {
        Program other(*this);
        other.start();
        EXPECT_FALSE(other.restoration.keepsWindows());
        EXPECT_TRUE(other.controller.windows().empty());
        other.restoration.save();
        Program neverStarted(*this);
        neverStarted.restoration.save();
    }
    EXPECT_TRUE(QFile::exists(folders.sessionFile()));
    ASSERT_TRUE(program.quit());
    EXPECT_TRUE(QFile::exists(folders.sessionFile()));
}

TEST_F(WindowRestorationTest, LargeFilesAndManyWindowsDoNotStandInTheWay)
{
    constexpr int windows = 20;
    const QByteArray line = "a line of a long text, which is read a little at a time\n";
    const QString large = write("large.txt", line.repeated(int(100'000'000 / line.size())));
    TextOffset top = 0;
    {
        Program program(*this);
        program.start();
        for (int i = 0; i < windows; ++i)
            program.open(write(qPrintable(QString::number(i)), "text\n"));
        DocumentWindow& window = program.open(large);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, patience));
        window.goToLine(1'000'000);
        QCoreApplication::processEvents();
        top = topOf(window);
        ASSERT_GT(top, 0);
        EventLoopWatchdog watchdog;
        ASSERT_TRUE(program.quit());
    }
    EventLoopWatchdog watchdog;
    Program program(*this);
    program.start();
    EXPECT_EQ(program.controller.windows().size(), size_t(windows + 1));
    DocumentWindow& window = *program.controller.windowShowing(large);
    EXPECT_EQ(&window, program.controller.windows().front());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, patience));
    EXPECT_TRUE(QTest::qWaitFor([&] { return topOf(window) == top; }, patience)) << topOf(window);
    EXPECT_EQ(window.document().textView().selectedRange().location,
              window.document().completeString().lineStart(LineIndex(999'999)));
}

} // namespace
} // namespace quillory
