#include "commands/ExternalPrograms.h"

#include "../view/EventLoopWatchdog.h"
#include "editing/QPTextView.h"
#include "foundation/Background.h"
#include "text/TextStorage.h"
#include "text/UndoManager.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <fcntl.h>
#include <gtest/gtest.h>

namespace quillory {
namespace {

const QString unknownError =
    QStringLiteral("Error! Unknown error. Please ensure that you have installed all required "
                   "tools/packages, that the launch path is set correctly and so on…");

/// A document's programs over a folder of their own.
class ExternalProgramsTest : public ::testing::Test
{
protected:
    std::unique_ptr<ExternalPrograms> newPrograms()
    {
        auto made = std::make_unique<ExternalPrograms>(editor, path("caches/Quillory"),
                                                       [this] { return file; });
        QObject::connect(made.get(), &ExternalPrograms::alertRequested,
                         [this](const QString& title, const QString& message) {
                             alerts += title + u' ' + message;
                         });
        return made;
    }

    static CommandLine sh(const QString& body)
    {
        return {QStringLiteral("/bin/sh"), {QStringLiteral("-c"), body}};
    }
    static CommandLine sh(const char* body) { return sh(QString::fromUtf8(body)); }

    /// A process that nobody has waited for yet is none.
    static bool isAlive(const QString& pid)
    {
        QFile stat(QStringLiteral("/proc/%1/stat").arg(pid));
        return stat.open(QIODevice::ReadOnly) && !stat.readAll().contains(") Z ");
    }

    QString path(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }

    QString script(const char* name, const QByteArray& body) const
    {
        QFile written(path(name));
        EXPECT_TRUE(written.open(QIODevice::WriteOnly));
        written.write("#!/bin/sh\n" + body);
        written.close();
        written.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path(name);
    }

    void start(const CommandLine& command)
    {
        programs->performTerminalCommand(command, false, [this](const TextSnapshot& text) {
            output = text;
            ++outputs;
        });
    }

    /// Runs it to its end; the answer is its output, where it has one to tell.
    QString run(const CommandLine& command)
    {
        outputs = 0;
        start(command);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !programs->isRunning(); }, 60'000));
        return outputs == 1 ? output.string() : QStringLiteral("(no output)");
    }

    QTemporaryDir folder;
    TextStorage storage;
    UndoManager undo{storage};
    QPTextView editor{storage, undo, nullptr};
    ExternalPrograms::File file;
    QStringList alerts;
    TextSnapshot output;
    int outputs = 0;
    std::unique_ptr<ExternalPrograms> programs = newPrograms();
};

TEST_F(ExternalProgramsTest, OutputIsWhatBothStreamsHold)
{
    const struct
    {
        CommandLine command;
        QString output;
    } cases[] = {
        {{QStringLiteral("/usr/bin/printf"), {QStringLiteral("hello")}}, QStringLiteral("hello")},
        {sh("echo b >&2; echo a"), QStringLiteral("a\nb\n")},
        {{QStringLiteral("/bin/true"), {}}, QStringLiteral("")},
        {sh("echo failed; exit 3"), QStringLiteral("failed\n")},
        {sh("echo killed; kill -9 $$"), QStringLiteral("killed\n")},
        // Nobody is asked for input, and what it starts may go on.
        {sh("wc -c"), QStringLiteral("0\n")},
        {sh("sleep 5 & echo done"), QStringLiteral("done\n")},
    };
    for (const auto& [command, expected] : cases) {
        EXPECT_EQ(run(command), expected) << command.arguments.join(u' ').toStdString();
        EXPECT_TRUE(editor.isEditable());
    }
    EXPECT_TRUE(alerts.isEmpty());
}

TEST_F(ExternalProgramsTest, WhatCannotBeRunIsToldAndChangesNothing)
{
    QFile text(path("text"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    for (const QString& program :
         {QStringLiteral("/no/such/program"), QStringLiteral("printf"), QStringLiteral("./printf"),
          QString(), path("text"), folder.path()}) {
        alerts.clear();
        run({program, {QStringLiteral("x")}});
        EXPECT_EQ(outputs, 0) << program.toStdString();
        EXPECT_EQ(alerts, QStringList(unknownError)) << program.toStdString();
        EXPECT_TRUE(editor.isEditable());
    }
}

TEST_F(ExternalProgramsTest, MuchOutputOnBothStreamsStopsNeitherSide)
{
    constexpr qsizetype each = 100'000'000;
    EventLoopWatchdog watchdog;
    start(sh("head -c 100000000 /dev/zero | tr '\\0' a; head -c 100000000 /dev/zero | tr '\\0' b "
             ">&2"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return outputs == 1; }, 60'000));
    ASSERT_EQ(output.length(), 2 * each);
    EXPECT_EQ(output.at(each - 1), u'a');
    EXPECT_EQ(output.at(each), u'b');
}

TEST_F(ExternalProgramsTest, OutputWithoutEndIsGivenUp)
{
    ProgramStart endless{.command = {QStringLiteral("/usr/bin/yes"), {}},
                         .workingDirectory = {},
                         .environment = QProcessEnvironment::systemEnvironment(),
                         .product = {},
                         .mostOutput = 1'000'000};
    std::optional<ProgramOutcome> outcome;
    const ProgramRun program(endless);
    QObject::connect(&program, &ProgramRun::finished,
                     [&](const ProgramOutcome& result) { outcome = result; });
    ASSERT_TRUE(QTest::qWaitFor([&] { return outcome.has_value(); }));
    EXPECT_EQ(outcome->ending, ProgramOutcome::Ending::WroteTooMuch);
    EXPECT_TRUE(outcome->output.isEmpty());
}

TEST_F(ExternalProgramsTest, OutputThatIsNotUtf8LosesNothing)
{
    const struct
    {
        const char* written;
        StringEncoding encoding;
        QString output;
    } cases[] = {
        {"gr\\303\\274n", StringEncoding::isoLatin1, QStringLiteral("gr\u00fcn")},
        {"gr\\374n", StringEncoding::isoLatin1, QStringLiteral("gr\u00fcn")},
        {"gr\\374n", StringEncoding::utf8, QStringLiteral("gr\ufffdn")},
        {"\\303", StringEncoding::utf8, QStringLiteral("\ufffd")},
    };
    for (const auto& [written, encoding, expected] : cases) {
        file.encoding = encoding;
        EXPECT_EQ(run({QStringLiteral("/usr/bin/printf"), {QString::fromUtf8(written)}}), expected)
            << written;
    }
}

TEST_F(ExternalProgramsTest, ProgramsFindTheDocumentAndNothingElse)
{
    const CommandLine command = sh("echo \"$QUILLORY_FILE|$QUILLORY_NAME|$QUILLORY_FOLDER\"");
    EXPECT_EQ(run(command), QStringLiteral("||\n"));
    file.path = QStringLiteral("/some where/my.paper.tex");
    EXPECT_EQ(run(command), QStringLiteral("/some where/my.paper.tex|my.paper|/some where\n"));

    const int leaking = ::open("/dev/null", O_RDONLY); // as a careless library opens it
    ASSERT_GT(leaking, 2);
    EXPECT_EQ(run(sh(QStringLiteral("test -e /proc/self/fd/%1 || echo closed").arg(leaking))),
              QStringLiteral("closed\n"));
    ::close(leaking);
    EXPECT_EQ(run(sh("readlink /proc/self/fd/0; read -r p c s g o session rest </proc/$$/stat; "
                     "test $session = $$ && echo own")),
              QStringLiteral("/dev/null\nown\n"));
}

TEST_F(ExternalProgramsTest, TextIsLockedAndOneProgramRunsAtATime)
{
    storage.replaceCharactersInRange({}, TextSnapshot(u"text"));
    QSignalSpy beeps(&editor, &QPTextView::beep);
    QSignalSpy begun(&*programs, &ExternalPrograms::started);
    start(sh("sleep 0.3; echo first"));
    EXPECT_EQ(begun.count(), 1);
    EXPECT_TRUE(programs->isRunning());
    editor.insertText(QStringLiteral("x"));
    EXPECT_EQ(editor.string().string(), QStringLiteral("text"));
    beeps.clear();
    start(sh("echo second"));
    EXPECT_EQ(beeps.count(), 1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !programs->isRunning(); }));
    EXPECT_EQ(output.string(), QStringLiteral("first\n"));
    EXPECT_EQ(outputs, 1);
    editor.insertText(QStringLiteral("x"));
    EXPECT_EQ(editor.string().length(), 5);

    // A text that may not be edited anyway stays so.
    editor.setEditable(false);
    EXPECT_EQ(run(sh("echo third")), QStringLiteral("third\n"));
    EXPECT_FALSE(editor.isEditable());
}

TEST_F(ExternalProgramsTest, CancellingAndClosingEndTheProgramAndItsChildren)
{
    // The second of them does not do what it is asked, nor does its child.
    const char* bodies[] = {"sleep 300 & echo $! $$ >$0; wait",
                            "trap '' TERM; sleep 300 & echo $! $$ >$0; while :; do wait; done"};
    for (const char* body : bodies) {
        for (const bool closes : {false, true}) {
            outputs = 0;
            QFile::remove(path("pids"));
            CommandLine command = sh(body);
            command.arguments += path("pids");
            start(command);
            QStringList pids;
            ASSERT_TRUE(QTest::qWaitFor([&] {
                QFile told(path("pids"));
                pids = told.open(QIODevice::ReadOnly)
                           ? QString::fromLatin1(told.readAll()).simplified().split(u' ')
                           : QStringList();
                return pids.size() == 2;
            }));
            EXPECT_TRUE(isAlive(pids[0]) && isAlive(pids[1]));
            QElapsedTimer waited;
            waited.start();
            if (closes)
                programs.reset();
            else
                programs->cancel();
            EXPECT_LT(waited.elapsed(), 200);
            EXPECT_TRUE(editor.isEditable() || closes);
            EXPECT_TRUE(QTest::qWaitFor([&] { return !isAlive(pids[0]) && !isAlive(pids[1]); },
                                        ProgramRun::grace + 2000))
                << body;
            backgroundPool().waitForDone();
            EXPECT_FALSE(QFile::exists(QStringLiteral("/proc/") + pids[1])) << "a zombie";
            EXPECT_EQ(outputs, 0);
            editor.setEditable(true);
            programs = newPrograms();
        }
    }
    EXPECT_TRUE(alerts.isEmpty());
}

TEST_F(ExternalProgramsTest, FreeStandingProgramsAreStartedInTheFolder)
{
    QSignalSpy opened(&*programs, &ExternalPrograms::openRequested);
    QSignalSpy begun(&*programs, &ExternalPrograms::started);
    const QString program = script("build it", "pwd >where.tmp; mv where.tmp where; sleep 2 &");
    ASSERT_TRUE(QDir().mkpath(path("folder")));
    const auto where = [this] {
        QFile told(path("folder/where"));
        return told.open(QIODevice::ReadOnly) ? told.readAll() : QByteArray();
    };
    programs->performRunCommand({program, {}}, path("folder"), true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return where() == path("folder").toUtf8() + '\n'; }));
    backgroundPool().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(opened.count(), 0); // there is no App
    EXPECT_EQ(begun.count(), 0);
    EXPECT_TRUE(editor.isEditable());

    ASSERT_TRUE(QDir().mkpath(path("folder/App")));
    programs->performRunCommand({program, {}}, path("folder"), false);
    backgroundPool().waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(opened.count(), 0); // not allowed
    EXPECT_TRUE(alerts.isEmpty());

    programs->performRunCommand({QStringLiteral("/no/such"), {}}, path("folder"), true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return opened.count() == 1; }));
    EXPECT_EQ(opened.value(0).value(0).toString(), path("folder/App"));
    EXPECT_EQ(alerts, QStringList(unknownError));
}

const QString pdflatex = QStringLiteral("/usr/bin/pdflatex");

/// With a document beside which PDFs are made.
class LaTeXTest : public ExternalProgramsTest
{
protected:
    LaTeXTest()
    {
        QObject::connect(&*programs, &ExternalPrograms::typesettingFinished,
                         [this](const ProgramOutcome& outcome) { finished.push_back(outcome); });
    }

    void typeset(const CommandLine& command)
    {
        finished.clear();
        shown.clear();
        opened.clear();
        programs->performLaTeXCommand(command, folder.path(), path("my paper"));
        EXPECT_TRUE(QTest::qWaitFor([this] { return !programs->isRunning(); }, 60'000));
    }

    std::vector<ProgramOutcome> finished;
    QSignalSpy shown{&*programs, &ExternalPrograms::pdfPreviewRequested};
    QSignalSpy opened{&*programs, &ExternalPrograms::openRequested};
};

TEST_F(LaTeXTest, PdfIsShownWhateverTheProgramAnswers)
{
    const QString pdf = path("my paper.pdf");
    typeset(sh("echo no; exit 1"));
    ASSERT_EQ(finished.size(), 1U);
    EXPECT_FALSE(finished[0].hasProduct);
    EXPECT_EQ(finished[0].exitStatus, 1);
    EXPECT_EQ(finished[0].output.string(), QStringLiteral("no\n"));
    EXPECT_EQ(shown.count() + opened.count(), 0);

    typeset(sh("echo new >'my paper.pdf'"));
    ASSERT_EQ(finished.size(), 1U);
    EXPECT_TRUE(finished[0].isProductNew);
    ASSERT_EQ(opened.count(), 1);
    EXPECT_EQ(opened[0][0].toString(), pdf);

    file.canUsePDFPreview = true;
    typeset(sh("exit 2"));
    ASSERT_EQ(finished.size(), 1U);
    EXPECT_TRUE(finished[0].hasProduct);
    EXPECT_FALSE(finished[0].isProductNew);
    ASSERT_EQ(shown.count(), 1);
    EXPECT_EQ(shown[0][0].toString(), pdf);
    EXPECT_EQ(opened.count(), 0);
    EXPECT_TRUE(alerts.isEmpty());

    typeset({QStringLiteral("latex"), {}});
    EXPECT_TRUE(finished.empty());
    EXPECT_EQ(alerts, QStringList(unknownError));
    // Without a file there is no folder to make the PDF in.
    programs->performLaTeXCommand({pdflatex, {}}, QString(), QString());
    EXPECT_FALSE(programs->isRunning());
    EXPECT_EQ(alerts.size(), 2);
}

QStringList noted;

TEST_F(LaTeXTest, EveryRunIsNotedInTheDiagnosticLog)
{
    noted.clear();
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& line) { noted += line; });
    programs->performLaTeXCommand({QStringLiteral("/bin/true"), {QStringLiteral("a b")}},
                                  folder.path(), path("paper"));
    qInstallMessageHandler(before);
    EXPECT_EQ(noted, QStringList({QStringLiteral("LaTeXcommand: /bin/true a b"),
                                  QStringLiteral("pdfTitle: ") + path("paper")}));
}

TEST_F(LaTeXTest, RealLaTeXMakesAPdf)
{
    if (!QFile::exists(pdflatex))
        GTEST_SKIP() << "There is no " << pdflatex.toStdString()
                     << ": install texlive-latex-base to see a real document typeset.";
    file.canUsePDFPreview = true;
    const auto write = [this](const QByteArray& body) {
        QFile source(path("my paper.tex"));
        ASSERT_TRUE(source.open(QIODevice::WriteOnly));
        source.write("\\documentclass{article}\\begin{document}" + body + "\\end{document}\n");
    };
    const CommandLine command{pdflatex,
                              {QStringLiteral("-no-shell-escape"),
                               QStringLiteral("-interaction=nonstopmode"), path("my paper.tex")}};
    write("Hello, world.");
    typeset(command);
    ASSERT_EQ(finished.size(), 1U);
    EXPECT_EQ(finished[0].exitStatus, 0) << finished[0].output.string().toStdString();
    EXPECT_TRUE(finished[0].isProductNew);
    ASSERT_EQ(shown.count(), 1);
    QFile pdf(shown[0][0].toString());
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(5) == "%PDF-");

    write("\\undefinedcommand");
    typeset(command);
    ASSERT_EQ(finished.size(), 1U);
    EXPECT_NE(finished[0].exitStatus, 0);
    EXPECT_TRUE(finished[0].output.string().contains(u"Undefined control sequence"));
}

} // namespace
} // namespace quillory
