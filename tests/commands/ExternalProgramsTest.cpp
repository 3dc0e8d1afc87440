#include "commands/ExternalPrograms.h"

#include "editing/QPTextView.h"
#include "text/TextStorage.h"
#include "text/UndoManager.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
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
    ExternalProgramsTest()
    {
        QObject::connect(&*programs, &ExternalPrograms::alertRequested,
                         [this](const QString& title, const QString& message) {
                             alerts += title + u' ' + message;
                         });
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

    /// Runs it to its end; the answer is its output, or null where it has none to tell.
    QString run(const CommandLine& command)
    {
        outputs = 0;
        start(command);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !programs->isRunning(); }, 60'000));
        return outputs == 1 ? QLatin1StringView("") + output.string() : QString();
    }

    QTemporaryDir folder;
    TextStorage storage;
    UndoManager undo{storage};
    QPTextView editor{storage, undo, nullptr};
    ExternalPrograms::File file;
    std::unique_ptr<ExternalPrograms> programs = std::make_unique<ExternalPrograms>(
        editor, path("caches/Quillory"), [this] { return file; });
    QStringList alerts;
    TextSnapshot output;
    int outputs = 0;
};

TEST_F(ExternalProgramsTest, OutputIsWhatBothStreamsHold)
{
    const auto sh = [](const char* body) {
        return CommandLine{QStringLiteral("/bin/sh"),
                           {QStringLiteral("-c"), QString::fromUtf8(body)}};
    };
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
        {sh("sleep 30 & echo done"), QStringLiteral("done\n")},
    };
    for (const auto& [command, expected] : cases) {
        EXPECT_EQ(run(command), expected) << command.arguments.join(u' ').toStdString();
        EXPECT_TRUE(editor.isEditable());
    }
    EXPECT_TRUE(alerts.isEmpty());
}

} // namespace
} // namespace quillory
