#include "AppFixture.h"

#include "../view/EventLoopWatchdog.h"

#include "app/LoadFlow.h"
#include "app/ProgressBar.h"
#include "app/SaveFlow.h"
#include "app/StatusLine.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <cerrno>
#include <unistd.h>

namespace quillory::test {
namespace {

QString qs(const char* text)
{
    return QString::fromUtf8(text);
}

/// A disk that gives so many bytes and then waits, or fails.
struct SlowDisk
{
    std::atomic<qint64> allowed = 0;
    std::atomic<qint64> served = 0;
    std::atomic_int error = 0;
    std::atomic_bool open = false;

    ssize_t read(int descriptor, char* target, size_t size)
    {
        while (!open && served >= allowed && error == 0)
            QThread::msleep(1);
        if (served >= allowed && error != 0) {
            errno = error;
            return -1;
        }
        const size_t most = open ? size : std::min(size, size_t(allowed - served));
        const ssize_t count = ::read(descriptor, target, most);
        served += count;
        return count;
    }
};

class LoadingTest : public AppFixture
{
protected:
    static constexpr qsizetype beginning = 4000;
    static constexpr qsizetype part = 1000;

    LoadingTest()
    {
        GradualRead::Options options;
        options.least = ByteCount(2 * beginning);
        options.beginning = ByteCount(beginning);
        options.part = ByteCount(part);
        options.interval = std::chrono::milliseconds(0);
        options.read = [disk = slowDisk](int descriptor, char* target, size_t size) {
            return disk->read(descriptor, target, size);
        };
        slowDisk->allowed = beginning;
        controller.loader().setOptions(options);
    }

    ~LoadingTest() override { slowDisk->open = true; }

    static QByteArray lines(int count)
    {
        QByteArray bytes;
        for (int i = 1; i <= count; ++i)
            bytes += QByteArray::number(i).rightJustified(9, '0') + '\n';
        return bytes;
    }

    DocumentWindow& begin(const OpenTarget& target, DocumentWindow* from = nullptr)
    {
        controller.open({target}, from);
        if (controller.windows().empty())
            qFatal("no window shows the beginning");
        DocumentWindow& window = *controller.windows().back();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        EXPECT_TRUE(window.document().isLoading());
        return window;
    }

    /// Lets the disk give \a length bytes, and waits for about as many units of text.
    void growTo(DocumentWindow& window, qsizetype length)
    {
        constexpr qsizetype lag = 6 * part; // what is still being decoded while the disk waits
        slowDisk->allowed = length;
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return window.document().completeString().length() >= length - lag; }, 20'000));
    }

    void finish(DocumentWindow& window)
    {
        slowDisk->open = true;
        EXPECT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, 20'000));
        QCoreApplication::processEvents();
    }

    static ProgressBar& bar(DocumentWindow& window) { return *window.findChild<ProgressBar*>(); }

    static void waitForBar(DocumentWindow& window)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return bar(window).isVisible(); }, 20'000));
    }

    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    std::shared_ptr<SlowDisk> slowDisk = std::make_shared<SlowDisk>();
};

TEST_F(LoadingTest, showsTheBeginningAtOnceAndLetsItBeRead)
{
    const QByteArray bytes = lines(5000);
    const QString file = write("large.txt", bytes);
    DocumentWindow& window = begin({file, {}});
    const TextSnapshot& text = window.document().completeString();
    EXPECT_GT(text.length(), beginning / 2);
    EXPECT_EQ(window.windowTitle(), qs("large.txt[*] — Quillory"));
    waitForBar(window);
    const int left = window.view().viewport()->x();

    QTest::keyClick(&window.view(), Qt::Key_Right, Qt::ShiftModifier);
    window.document().textView().setSelectedRange({10, 9});
    press(window, {qs("Ctrl+C")});
    EXPECT_EQ(QGuiApplication::clipboard()->text(), qs("000000002"));
    window.view().verticalScrollBar()->setValue(window.view().verticalScrollBar()->maximum() / 2);
    QCoreApplication::processEvents();
    const int top = window.view().verticalScrollBar()->value();
    EXPECT_GT(top, 0);

    growTo(window, bytes.size() / 2);
    EXPECT_NEAR(bar(window).percent(), 50, 15); // told now and then
    EXPECT_GT(text.length(), bytes.size() / 3) << "the text grows";
    EXPECT_EQ(window.view().verticalScrollBar()->value(), top);
    finish(window);
    EXPECT_FALSE(bar(window).isVisible());
    EXPECT_EQ(textOf(window), QString::fromLatin1(bytes));
    EXPECT_EQ(window.view().verticalScrollBar()->value(), top);
    EXPECT_EQ(window.view().viewport()->x(), left) << "there was room for the last number";
    EXPECT_EQ(window.document().textView().selectedRange(), (TextRange{10, 9}));
    EXPECT_EQ(controller.recentDocuments(), QStringList{file});
}

TEST_F(LoadingTest, isNeitherEditedNorSavedMeanwhile)
{
    const QByteArray bytes = lines(5000);
    const QString file = write("large.txt", bytes);
    DocumentWindow& window = begin({file, {}});
    waitForBar(window);
    const QString before = textOf(window);
    const char* disabled[]{"File/Save",
                           "File/Save As…",
                           "File/Save a Copy…",
                           "File/Revert to Saved",
                           "File/Reopen with Encoding",
                           "Edit/Undo",
                           "Edit/Redo",
                           "Edit/Cut",
                           "Edit/Paste",
                           "Edit/Delete",
                           "Format/Document Settings…",
                           "Format/Encoding",
                           "Format/Line Breaks",
                           "Format/Byte-Order Mark"};
    window.document().textView().setSelectedRange({0, 5});
    QSignalSpy beeps(&window.document().textView(), &QPTextView::beep);
    for (const char* name : disabled)
        EXPECT_FALSE(command(window, qs(name))->isEnabled()) << name;
    press(window, {qs("'typed'"), qs("Del"), qs("Backspace"), qs("Ctrl+X"), qs("Ctrl+V"),
                   qs("Ctrl+Z"), qs("Return"), qs("Ctrl+S"), qs("Ctrl+Shift+S")});
    EXPECT_GE(beeps.count(), 8);
    EXPECT_EQ(textOf(window), before);
    window.saving().save();
    questions.savePath = path("other.txt");
    window.saving().saveAs();
    window.saving().saveCopy();
    window.saving().overwrite();
    waitUntilIdle(window);
    EXPECT_FALSE(message(window, MessageArea::Subject::Saving).isEmpty());
    EXPECT_FALSE(QFile::exists(path("other.txt")));
    EXPECT_EQ(bytesOf(file), bytes);
    EXPECT_FALSE(window.isWindowModified());
    EXPECT_EQ(window.document().path(), file);

    finish(window);
    for (const char* name : {"File/Save", "File/Save As…", "Format/Encoding", "Edit/Paste"})
        EXPECT_TRUE(command(window, qs(name))->isEnabled()) << name;
    press(window, {qs("'x'")});
    EXPECT_TRUE(window.isWindowModified());
    save(window);
    EXPECT_EQ(bytesOf(file), 'x' + bytes.mid(5));
}

TEST_F(LoadingTest, endsWithoutATrace)
{
    const QString file = write("large.txt", lines(5000));
    const std::pair<const char*, std::function<void(DocumentWindow&)>> ways[]{
        {"button",
         [](DocumentWindow& window) {
             QTest::mouseClick(bar(window).findChild<QPushButton*>(), Qt::LeftButton);
         }},
        {"Escape", [](DocumentWindow& window) { press(window, {qs("Esc")}); }},
        {"close", [](DocumentWindow& window) { press(window, {qs("Ctrl+W")}); }},
        {"quit", [](DocumentWindow& window) { press(window, {qs("Ctrl+Q")}); }},
    };
    for (const auto& [name, end] : ways) {
        slowDisk->served = 0;
        slowDisk->open = false;
        slowDisk->allowed = beginning + 3 * part;
        QSignalSpy finished(&controller, &DocumentController::finished);
        const QPointer<DocumentWindow> window = &begin({file, {}});
        waitForBar(*window);
        end(*window);
        settle();
        EXPECT_TRUE(window.isNull()) << name << ", though the disk has not answered";
        EXPECT_TRUE(controller.windows().empty());
        EXPECT_GE(finished.count(), 1);
        slowDisk->open = true;
        QTest::qWait(20);
        EXPECT_TRUE(controller.windows().empty());
        EXPECT_TRUE(controller.recentDocuments().isEmpty());
        EXPECT_EQ(questions.told + questions.asked, QStringList());
        EXPECT_FALSE(controller.hasFailed());
    }
}

TEST_F(LoadingTest, goesBackToTheUntouchedDocumentThatItReplaced)
{
    const QString file = write("large.txt", lines(5000));
    openNew();
    DocumentWindow& untouched = openNew();
    const QString title = untouched.windowTitle();
    EXPECT_EQ(title, qs("Untitled 2[*] — Quillory"));
    DocumentWindow& window = begin({file, {}}, &untouched);
    settle();
    EXPECT_EQ(controller.windows().size(), 2u);
    press(window, {qs("Esc")});
    settle();
    ASSERT_EQ(controller.windows().size(), 2u);
    EXPECT_EQ(controller.windows().back()->windowTitle(), title);
    EXPECT_TRUE(controller.windows().back()->isUntouched());
}

TEST_F(LoadingTest, tellsOfAFileThatCannotBeReadToItsEnd)
{
    const QString file = write("large.txt", lines(5000));
    const QPointer<DocumentWindow> window = &begin({file, {}});
    growTo(*window, beginning + 9 * part);
    slowDisk->error = EIO;
    ASSERT_TRUE(QTest::qWaitFor([&] { return !questions.told.isEmpty(); }, 20'000));
    settle();
    EXPECT_EQ(questions.told,
              QStringList{qs("“%1” could not be read: Input/output error.").arg(file)});
    EXPECT_TRUE(window.isNull());
    EXPECT_TRUE(controller.windows().empty());
    EXPECT_TRUE(controller.hasFailed());
    EXPECT_FALSE(controller.hasOpened());
    EXPECT_TRUE(controller.recentDocuments().isEmpty());
}

TEST_F(LoadingTest, goesToALineWhenItIsThere)
{
    const QString file = write("large.txt", lines(5000));
    DocumentWindow& window = begin({file, TextPlace{3000, 4}});
    const auto caret = [&] { return window.document().textView().selectedRange().location; };
    EXPECT_EQ(caret(), 0);
    growTo(window, 20'000);
    EXPECT_EQ(caret(), 0);
    growTo(window, 38'000);
    EXPECT_EQ(caret(), 29'993);
    EXPECT_TRUE(window.document().isLoading());

    controller.open({{file, TextPlace{100, 1}}});
    EXPECT_EQ(controller.windows().size(), 1u) << "the window that loads it is raised";
    EXPECT_EQ(caret(), 990);
    controller.open({{file, TextPlace{4500, 1}}});
    EXPECT_EQ(caret(), 990);
    window.goTo({99'999, 1}); // the last one asked for, and past the end
    finish(window);
    EXPECT_EQ(caret(), 50'000);
    EXPECT_EQ(window.statusLine().positionText(), qs("Line 5,001, Column 1"));
}

TEST_F(LoadingTest, tellsTheFormOfTheWholeFileInTheEnd)
{
    const QByteArray bytes = lines(5000) + "Gr\xF6\xDF\x65 \x93und\x94\r\n";
    DocumentWindow& window = begin({write("large.txt", bytes), {}});
    EXPECT_EQ(window.statusLine().encodingText(), qs("Unicode (UTF-8)"));
    EXPECT_EQ(window.statusLine().lineBreaksText(), qs("Unix (LF)"));
    growTo(window, 30'000);
    window.goTo({2000, 1});
    const QRect caret = window.view().caretRect();
    finish(window);
    EXPECT_EQ(window.view().caretRect(), caret);
    EXPECT_EQ(window.statusLine().positionText(), qs("Line 2,000, Column 1"));
    EXPECT_TRUE(window.statusLine().encodingText().contains(qs("Windows")));
    EXPECT_TRUE(window.statusLine().lineBreaksText().startsWith(qs("Mixed")));
    EXPECT_FALSE(message(window, MessageArea::Subject::LineBreaks).isEmpty());
    EXPECT_FALSE(window.isWindowModified());
}

TEST_F(LoadingTest, opensSeveralFilesAtOnce)
{
    slowDisk->allowed = 1 << 30;
    const QByteArray bytes = lines(5000);
    controller.open({{write("a.txt", bytes), {}},
                     {write("small.txt", "small\n"), {}},
                     {write("b.txt", bytes), {}},
                     {write("c.txt", bytes), {}}});
    ASSERT_EQ(controller.windows().size(), 4u);
    for (DocumentWindow* window : controller.windows()) {
        finish(*window);
        const bool isSmall = window->document().displayName() == qs("small.txt");
        EXPECT_EQ(window->document().completeString().length(), isSmall ? 6 : bytes.size());
    }
    EXPECT_EQ(controller.recentDocuments().size(), 4);
}

TEST_F(LoadingTest, keepsTheWindowGoingWhateverTheSize)
{
    controller.loader().setOptions({});
    const QString file = write("large.txt", lines(4'000'000));
    controller.open({{write("small.txt", "small\n"), {}}}); // what the first window needs is there
    settle();
    EventLoopWatchdog watchdog;
    DocumentWindow* window = nullptr;
    watchdog.watch("opening", [&] {
        controller.open({{file, {}}});
        window = controller.windows().back();
    });
    finish(*window);
    watchdog.watch("editing", [&] { window->document().textView().insertText(qs("x")); });
    EXPECT_EQ(window->document().completeString().length(), 40'000'001);
    questions.beforeClosing = UserQuestions::BeforeClosing::Discard;
    watchdog.watch("closing", [&] {
        window->close();
        settle();
    });
    EXPECT_EQ(controller.windows().size(), 1u);
}

} // namespace
} // namespace quillory::test
