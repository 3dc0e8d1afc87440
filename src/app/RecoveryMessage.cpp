#include "app/RecoveryMessage.h"

#include "app/DocumentWindow.h"
#include "app/FileComparison.h"
#include "app/MessageArea.h"
#include "app/RereadFlow.h"
#include "app/SaveFlow.h"
#include "app/UserQuestions.h"
#include "document/Document.h"
#include "document/RecoveredDocument.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>

namespace quillory {

namespace {

using File = RecoveredDocument::File;
using State = RecoveredDocument::State;
using Subject = MessageArea::Subject;

QString tr(const char* text)
{
    return QCoreApplication::translate("RecoveryMessage", text);
}

QString timeOf(const RecoveredDocument& recovered)
{
    return QLocale().toString(recovered.time.toLocalTime(), QLocale::ShortFormat);
}

QString textOf(const DocumentWindow& window, const RecoveredDocument& recovered)
{
    if (recovered.state == State::Pieces)
        return tr("The file that was edited here on %1 is not the same any more, so that the edits "
                  "cannot be put in their places. This is what was typed, piece by piece. It comes "
                  "back at each start until you discard it.")
            .arg(timeOf(recovered));
    QString text = tr("“%1” was brought back with the edits since %2, which were not saved.")
                       .arg(window.document().displayName(), timeOf(recovered));
    if (recovered.isCut)
        text += u' ' + tr("Their end was damaged: this is the longest part that could be read.");
    if (recovered.file == File::Changed)
        text += u' ' + tr("The file has changed since; it stays as it is until you save.");
    else if (recovered.file == File::Gone)
        text += u' ' + tr("The file is not there any more.");
    return text;
}

/// The window shows the file again, where there is one, and closes where there is none.
void discard(DocumentWindow& window, const RecoveredDocument& recovered,
             const std::shared_ptr<FileHandle>& journal, const QString& id)
{
    window.messages().clear(Subject::Recovery);
    if (journal) {
        const DocumentEnvironment& environment = window.environment();
        (void)environment.fileOps.remove(JournalFile::pathOf(environment.recovery, id));
    }
    if (recovered.file == File::Unchanged || recovered.file == File::Changed) {
        window.rereading().reload();
        return;
    }
    window.journal().discard();
    window.document().undoManager().markClean();
    window.close();
}

} // namespace

void showRecoveryMessage(DocumentWindow& window, const RecoveredDocument& recovered,
                         const QString& id)
{
    // Pieces are not the document of the journal, so the journal waits here.
    const bool isPieces = recovered.state == State::Pieces;
    const std::shared_ptr<FileHandle> waiting = isPieces ? recovered.journal : nullptr;
    RecoveredDocument told = recovered;
    told.document = {};
    told.journal.reset();
    if (isPieces)
        told.file = File::None;
    const auto ask = [&window, told, waiting, id] {
        window.questions().confirm(
            &window,
            {tr("Discard what was brought back?"),
             waiting ? tr("What was typed is gone then.")
             : told.file == File::None || told.file == File::Gone
                 ? tr("No file holds this text.")
                 : tr("The window shows the file as it is; Undo brings the edits back."),
             tr("Discard")},
            [&window, told, waiting, id](bool agreed) {
                if (agreed)
                    discard(window, told, waiting, id);
            });
    };
    const auto keep = [&window] { window.messages().clear(Subject::Recovery); };
    std::vector<Message::WayOut> waysOut;
    if (!isPieces)
        waysOut.push_back({tr("&Keep"), keep});
    if (told.file == File::Changed || told.file == File::Unchanged)
        waysOut.push_back(
            {tr("&Compare"), [&window, keep, ask] {
                 compareWithFile(
                     window, {{tr("&Keep"), tr("Go on with the text that was brought back"), keep},
                              {tr("&Discard…"), tr("Go back to the file"), ask}});
             }});
    waysOut.push_back({tr("&Discard…"), ask});
    window.messages().show(Subject::Recovery,
                           {Message::Kind::Warning, textOf(window, recovered), waysOut});
}

void showDamagedJournals(DocumentWindow& window, const QVector<RecoveredDocument>& damaged)
{
    QStringList sentences;
    for (const RecoveredDocument& each : damaged) {
        const QString name = QFileInfo(each.document.path).fileName();
        sentences.append(
            (name.isEmpty() ? tr("Edits that were not saved could not be brought back")
                            : tr("The last edits of “%1” could not be brought back").arg(name)) +
            tr(", since their journal is damaged. It is kept as “%1”.").arg(each.keptAside));
    }
    window.messages().show(Subject::DamagedJournals,
                           {Message::Kind::Warning, sentences.join(u' ')});
}

void watchJournal(DocumentWindow& window)
{
    EditJournal& journal = window.journal();
    QObject::connect(&journal, &EditJournal::failed, &window, [&window](const QString& cause) {
        window.messages().show(
            Subject::Journal,
            {Message::Kind::Problem,
             tr("Quillory cannot keep your edits safe: %1. A crash would lose what is not saved.")
                 .arg(cause),
             {{tr("&Save"), [&window] { window.saving().save(); }}}});
    });
    QObject::connect(&journal, &EditJournal::recovered, &window,
                     [&window] { window.messages().clear(Subject::Journal); });
}

} // namespace quillory
