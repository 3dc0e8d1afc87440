#include "commands/ExternalPrograms.h"

#include "editing/QPTextView.h"
#include "foundation/Background.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace quillory {

namespace {

QString readable(const CommandLine& command)
{
    return (QStringList(command.program) + command.arguments).join(u' ');
}

/// What came of starting a program that nobody waits for.
struct FreeStanding
{
    bool started = false;
    QString app; ///< the folder's "App" item, where there is one
};

FreeStanding startFreeStanding(const ProgramStart& start)
{
    FreeStanding result;
    if (start.command.program.startsWith(u'/') && QFileInfo(start.workingDirectory).isDir()) {
        QProcess process;
        process.setProgram(start.command.program);
        process.setArguments(start.command.arguments);
        process.setWorkingDirectory(start.workingDirectory);
        process.setProcessEnvironment(start.environment);
        process.setStandardInputFile(QProcess::nullDevice());
        result.started = process.startDetached();
    }
    const QString app = start.workingDirectory + QStringLiteral("/App");
    if (QFileInfo::exists(app))
        result.app = app;
    return result;
}

} // namespace

ExternalPrograms::ExternalPrograms(QPTextView& editor, const QString& cachesFolder,
                                   std::function<File()> file)
    : m_editor(editor), m_file(std::move(file)), m_texts(cachesFolder)
{}

ExternalPrograms::~ExternalPrograms() = default;

QString ExternalPrograms::temporaryPath(const QString& mainExtension) const
{
    return m_texts.temporaryPath(mainExtension);
}

void ExternalPrograms::writeTemporaryFile(const TextSnapshot& text, const QString& mainExtension,
                                          const std::function<void(const Result<QString>&)>& done)
{
    m_texts.write(text, m_file().encoding, mainExtension, done);
}

void ExternalPrograms::performTerminalCommand(const CommandLine& command, bool, const Output& done)
{
    run(startOf(command, QString()), [done](const ProgramOutcome& outcome) {
        if (outcome.ending == ProgramOutcome::Ending::Ran)
            done(outcome.output);
    });
}

void ExternalPrograms::performRunCommand(const CommandLine& command,
                                         const QString& andWorkingDicrectory, bool mayOpenApp)
{
    const ProgramStart start =
        startOf(command, andWorkingDicrectory.isEmpty() ? QDir::homePath() : andWorkingDicrectory);
    runInBackground(
        this, [start] { return startFreeStanding(start); },
        [this, mayOpenApp](const FreeStanding& result) {
            if (!result.started)
                tellUnknownError();
            if (mayOpenApp && !result.app.isEmpty())
                Q_EMIT openRequested(result.app);
        });
}

void ExternalPrograms::performLaTeXCommand(const CommandLine& command,
                                           const QString& andWorkingDicrectory,
                                           const QString& andPDFTitle)
{
    qInfo().noquote() << QStringLiteral("LaTeXcommand: %1").arg(readable(command));
    qInfo().noquote() << QStringLiteral("pdfTitle: %1").arg(andPDFTitle);
    if (andWorkingDicrectory.isEmpty() || andPDFTitle.isEmpty()) {
        Q_EMIT alertRequested(tr("Error!"), tr("The PDF is made beside the document's file, so "
                                               "save the document first."));
        return;
    }
    ProgramStart start = startOf(command, andWorkingDicrectory);
    start.product = andPDFTitle + QStringLiteral(".pdf");
    run(start, [this, pdf = start.product](const ProgramOutcome& outcome) {
        if (outcome.ending == ProgramOutcome::Ending::Ran)
            showTypeset(pdf, outcome);
    });
}

void ExternalPrograms::cancel()
{
    endRun();
}

ProgramStart ExternalPrograms::startOf(const CommandLine& command, const QString& folder) const
{
    const File file = m_file();
    const QFileInfo info(file.path);
    ProgramStart start{
        command, folder, QProcessEnvironment::systemEnvironment(), file.encoding, {}};
    const auto set = [&](const char* name, const QString& value) {
        start.environment.insert(QLatin1String(name), file.path.isEmpty() ? QString() : value);
    };
    set("QUILLORY_FILE", file.path);
    set("QUILLORY_NAME", info.completeBaseName());
    set("QUILLORY_FOLDER", info.path());
    return start;
}

void ExternalPrograms::run(const ProgramStart& start, const Then& then)
{
    if (m_run) {
        Q_EMIT m_editor.beep();
        return;
    }
    m_run = std::make_unique<ProgramRun>(start);
    m_hasLocked = m_editor.isEditable();
    m_editor.setEditable(false);
    connect(
        m_run.get(), &ProgramRun::finished, this,
        [this, then, most = start.mostOutput](const ProgramOutcome& outcome) {
            endRun();
            if (outcome.ending == ProgramOutcome::Ending::FailedToStart)
                tellUnknownError();
            if (outcome.ending == ProgramOutcome::Ending::WroteTooMuch)
                Q_EMIT alertRequested(
                    tr("Error!"),
                    tr("The program was ended, since it wrote more than %1 MB.").arg(most >> 20));
            then(outcome);
        });
    Q_EMIT editableChanged();
    Q_EMIT started(readable(start.command));
}

/// Gives up the run, if it still goes on, and lets the text be edited again.
void ExternalPrograms::endRun()
{
    if (!m_run)
        return;
    // It may be what calls.
    m_run->disconnect(this);
    m_run.release()->deleteLater();
    if (m_hasLocked)
        m_editor.setEditable(true);
    Q_EMIT editableChanged();
    Q_EMIT finished();
}

void ExternalPrograms::tellUnknownError()
{
    Q_EMIT alertRequested(
        tr("Error!"),
        tr("Unknown error. Please ensure that you have installed all required tools/packages, that "
           "the launch path is set correctly and so on…"));
}

void ExternalPrograms::showTypeset(const QString& pdf, const ProgramOutcome& outcome)
{
    Q_EMIT typesettingFinished(outcome);
    if (!outcome.hasProduct)
        return;
    if (m_file().canUsePDFPreview)
        Q_EMIT pdfPreviewRequested(pdf);
    else
        Q_EMIT openRequested(pdf);
}

} // namespace quillory
