#include "cli/Cli.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace quillory {

namespace {

constexpr QLatin1StringView commandName("print");

/// The editor, which knows fonts: beside this program, where it is built or, else, on the path.
QString editorPath()
{
    const QString folder = QCoreApplication::applicationDirPath();
    for (const char* place : {"/quillory", "/../app/quillory"}) {
        QString path = folder + QLatin1StringView(place);
        if (QFileInfo(path).isExecutable())
            return path;
    }
    return QStandardPaths::findExecutable(QStringLiteral("quillory"));
}

} // namespace

ExitStatus runPrint(const QStringList& arguments, const CliStreams& streams)
{
    QStringList options;
    QStringList files;
    bool optionsEnded = false;
    for (const QString& argument : arguments) {
        if (optionsEnded || !argument.startsWith(QLatin1StringView("--")))
            files += argument;
        else if (argument == QLatin1StringView("--"))
            optionsEnded = true;
        else if (argument == QLatin1StringView("--line-numbers") ||
                 argument == QLatin1StringView("--colours"))
            options += argument;
        else
            return usageError(streams, commandName, QStringLiteral("unknown option ") + argument);
    }
    if (files.size() != 2)
        return usageError(streams, commandName, QStringLiteral("name a file and a PDF file"));
    const QString editor = editorPath();
    if (editor.isEmpty()) {
        streams.error << "quillory-cli print: the program quillory, which prints, is not "
                         "installed\n";
        return ExitStatus::Failure;
    }
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(editor, options + QStringList{QStringLiteral("--print-to"), files[1],
                                                QStringLiteral("--"), files[0]});
    if (!process.waitForFinished(-1)) {
        streams.error << "quillory-cli print: " << editor << ": " << process.errorString() << '\n';
        return ExitStatus::Failure;
    }
    const bool printed = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return printed ? ExitStatus::Success : ExitStatus::Failure;
}

} // namespace quillory
