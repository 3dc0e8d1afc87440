#include "AppFixture.h"

#include "app/WebPreview.h"
#include "document/Document.h"
#include "support/EnvironmentVariable.h"
#include "support/RecordingServer.h"
#include "view/EventLoopWatchdog.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <csignal>
#include <unistd.h>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int patience = 60000; ///< milliseconds; only a failing test waits that long

/// The preview of documents, in its real program. Pages tell what they find by their titles.
class WebPreviewTest : public AppFixture
{
protected:
    void SetUp() override
    {
        if (!QFileInfo(folders.plugins + u"/quillory-preview"_s).isExecutable())
            GTEST_SKIP() << "the web preview is not built";
        if (::geteuid() == 0) // the engine's sandbox is not for root
            withoutSandbox.emplace("QTWEBENGINE_DISABLE_SANDBOX", "1");
    }

    DocumentWindow& openPage(const QByteArray& html) { return open(write("page.html", html)); }

    static bool titleBecomes(DocumentWindow& window, const QString& title)
    {
        const bool became =
            QTest::qWaitFor([&] { return window.preview().title() == title; }, patience);
        EXPECT_EQ(window.preview().title().toStdString(), title.toStdString());
        return became;
    }

    static bool showsAndLoads(DocumentWindow& window)
    {
        QSignalSpy loaded(&window.preview(), &WebPreview::loaded);
        window.preview().showPreview();
        return QTest::qWaitFor([&] { return loaded.count() > 0; }, patience);
    }

    /// The processes below \a process, itself left out.
    static QList<pid_t> descendants(qint64 process)
    {
        QProcess ps;
        ps.start(u"ps"_s, {u"-eo"_s, u"pid=,ppid="_s});
        ps.waitForFinished();
        QMultiHash<pid_t, pid_t> children;
        const QList<QByteArray> lines = ps.readAllStandardOutput().split('\n');
        for (const QByteArray& line : lines) {
            const QList<QByteArray> fields = line.simplified().split(' ');
            children.insert(fields.value(1).toInt(), fields.value(0).toInt());
        }
        QList<pid_t> found = children.values(pid_t(process));
        for (qsizetype i = 0; i < found.size(); ++i)
            found += children.values(found[i]);
        return found;
    }

    QStringList pagesOnDisk() const
    {
        return QDir(folders.caches)
            .entryList({u"*.html"_s, u".text*"_s}, QDir::Files | QDir::Hidden);
    }

    static bool isGone(pid_t process) { return ::kill(process, 0) != 0; }

    std::optional<EnvironmentVariable> withoutSandbox;
};

TEST_F(WebPreviewTest, ShowsTheTextAsItIsAndFollowsIt)
{
    write("script.js", "document.title += ' beside'");
    DocumentWindow& window =
        openPage("<title>one</title><body>text<script src=script.js></script></body>");
    WebPreview& preview = window.preview();
    EXPECT_EQ(preview.title(), u"Preview"_s);
    EXPECT_FALSE(preview.program().isRunning());
    window.document().changeTracking().createPreviewRequested(); // hidden, it costs nothing
    EXPECT_FALSE(preview.program().isRunning());

    choose(window, u"View/Preview"_s);
    EXPECT_TRUE(command(window, u"View/Preview"_s)->isChecked());
    ASSERT_TRUE(titleBecomes(window, u"one beside"_s));
    EXPECT_FALSE(preview.canGoBack());

    window.goToOffset(7);
    press(window, {u"'two '"_s});
    ASSERT_TRUE(titleBecomes(window, u"two one beside"_s));

    // Hidden, it stays as it is, and shown again it is the same program with the text of now.
    const qint64 process = preview.program().processId();
    choose(window, u"View/Preview"_s);
    EXPECT_FALSE(preview.isVisible());
    press(window, {u"'three '"_s});
    QTest::qWait(1500);
    EXPECT_EQ(preview.title(), u"two one beside"_s);
    choose(window, u"View/Preview"_s);
    ASSERT_TRUE(titleBecomes(window, u"two three one beside"_s));
    EXPECT_EQ(preview.program().processId(), process);

    // One file is shown and one may still be read.
    EXPECT_LE(pagesOnDisk().size(), 2);
}

TEST_F(WebPreviewTest, MarkdownIsRendered)
{
    DocumentWindow& window = open(write("text.md", "# Some *title*\n\n- [x] done\n"));
    choose(window, u"View/Preview"_s);
    EXPECT_TRUE(titleBecomes(window, u"Some title"_s));
    EXPECT_FALSE(command(open(write("text.txt", "text")), u"View/Preview"_s)->isEnabled());
}

TEST_F(WebPreviewTest, RelativeLinksLeadToTheBaseAddress)
{
    QDir(folder.path()).mkdir(u"other"_s);
    write("other/script.js", "document.title = 'other'");
    DocumentWindow& window = openPage("<title>x</title><script src=script.js></script>");
    window.document().record().baseURL = folder.filePath(u"other/"_s);
    window.preview().showPreview();
    EXPECT_TRUE(titleBecomes(window, u"other"_s));
}

TEST_F(WebPreviewTest, NothingReachesTheNetworkOrOtherFiles)
{
    RecordingServer server;
    write("../outside.js", "document.title = 'outside'");
    DocumentWindow& window =
        openPage("<title>quiet</title><img src='" + server.url(u"image"_s).toUtf8() +
                 "'><script src='../outside.js'></script><script>fetch('" +
                 server.url(u"fetch"_s).toUtf8() + "').then(() => document.title = 'out');" +
                 "navigator.sendBeacon('" + server.url(u"beacon"_s).toUtf8() + "', 'a')</script>");
    ASSERT_TRUE(showsAndLoads(window));
    QTest::qWait(1500);
    EXPECT_EQ(server.connections, 0);
    EXPECT_TRUE(titleBecomes(window, u"quiet"_s));
}

TEST_F(WebPreviewTest, LargePagesAreShownAndTooLargeOnesAreNot)
{
    DocumentWindow& window =
        openPage(QByteArray("<p>lorem ipsum <b>dolor</b> sit amet, and so on\n").repeated(50'000) +
                 "<script>document.title = document.body.textContent.length > "
                 "1900000 ? 'all' : 'part'</script>");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, patience));
    window.preview().showPreview();
    ASSERT_TRUE(titleBecomes(window, u"all"_s));

    DocumentWindow& huge = open(write("huge.html", QByteArray("x <b>y</b>\n").repeated(5'000'000)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !huge.document().isLoading(); }, patience));
    const EventLoopWatchdog watchdog;
    huge.preview().showPreview();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return message(huge, MessageArea::Subject::Preview).contains(u"too long"_s); },
        patience));
    press(huge, {u"'typed on'"_s});
    QTest::qWait(600);
    huge.document().textView().setSelectedRange(
        {1000, huge.document().completeString().length() - 1000});
    press(huge, {u"Delete"_s});
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return message(huge, MessageArea::Subject::Preview).isEmpty(); }, patience))
        << "the page is shown again, and the message still there";
}

TEST_F(WebPreviewTest, TheEditorGoesOnWhenTheProgramEnds)
{
    DocumentWindow& window = openPage("<title>one</title>");
    window.preview().showPreview();
    ASSERT_TRUE(titleBecomes(window, u"one"_s));
    const auto process = pid_t(window.preview().program().processId());
    const QList<pid_t> others = descendants(process);
    EXPECT_FALSE(others.isEmpty());
    ::kill(process, SIGKILL);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return message(window, MessageArea::Subject::Preview).contains(u"ended"_s); },
        patience));
    EXPECT_FALSE(window.preview().isVisible());
    for (const pid_t other : others)
        EXPECT_TRUE(QTest::qWaitFor([&] { return isGone(other); }, patience)) << other;
    press(window, {u"'<title>two</title>'"_s});
    ASSERT_TRUE(pressWayOut(window, u"Try Again"_s));
    EXPECT_TRUE(titleBecomes(window, u"two"_s));
    EXPECT_EQ(message(window, MessageArea::Subject::Preview), QString());
}

TEST_F(WebPreviewTest, APageThatCrashesComesBack)
{
    DocumentWindow& window = openPage("<title>one</title>");
    window.preview().showPreview();
    ASSERT_TRUE(titleBecomes(window, u"one"_s));
    const auto process = pid_t(window.preview().program().processId());
    for (const pid_t child : descendants(process)) {
        QFile file(u"/proc/%1/cmdline"_s.arg(child));
        if (file.open(QFile::ReadOnly) && file.readAll().contains("--type=renderer"))
            ::kill(child, SIGKILL);
    }
    QTest::qWait(500);
    press(window, {u"'<title>two</title>'"_s});
    EXPECT_TRUE(titleBecomes(window, u"two"_s));
    EXPECT_EQ(pid_t(window.preview().program().processId()), process);
}

TEST_F(WebPreviewTest, TheProgramEndsWithTheDocument)
{
    DocumentWindow* window = &openPage("<title>one</title>");
    window->preview().showPreview();
    ASSERT_TRUE(titleBecomes(*window, u"one"_s));
    QList<pid_t> processes = descendants(window->preview().program().processId());
    processes += pid_t(window->preview().program().processId());
    const EventLoopWatchdog watchdog;
    window->close();
    for (const pid_t process : processes)
        EXPECT_TRUE(QTest::qWaitFor([&] { return isGone(process); }, patience)) << process;
    EXPECT_EQ(pagesOnDisk(), QStringList());
}

/// Stands in for a program that is missing or cannot run.
class BrokenPreviewTest : public AppFixture
{
protected:
    void expectProblem(const QString& part)
    {
        DocumentWindow& window = open(write("page.html", "<p>text</p>"));
        window.preview().showPreview();
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return message(window, MessageArea::Subject::Preview).contains(part); },
            patience))
            << message(window, MessageArea::Subject::Preview).toStdString();
        EXPECT_FALSE(window.preview().isVisible());
        press(window, {u"'typed'"_s});
        EXPECT_TRUE(textOf(window).startsWith(u"typed"_s));
    }

    void install(const QByteArray& script)
    {
        folders.plugins = folder.path();
        QFile file(write("quillory-preview", script));
        ASSERT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    }
};

TEST_F(BrokenPreviewTest, MissingPrograms)
{
    folders.plugins = folder.path();
    expectProblem(u"not installed"_s);
}

TEST_F(BrokenPreviewTest, ProgramsThatCannotBeRun)
{
    install("no program");
    expectProblem(u"cannot be"_s);
}

TEST_F(BrokenPreviewTest, ProgramsThatEndAtOnceSayWhy)
{
    install("#!/bin/sh\necho 'no display' >&2\nexit 1\n");
    expectProblem(u"no display"_s);
}

} // namespace
} // namespace quillory::test
