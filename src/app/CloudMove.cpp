#include "app/CloudMove.h"

#include "app/CloudBrowser.h"
#include "app/DocumentController.h"
#include "app/SaveFlow.h"
#include "app/Shell.h"
#include "app/UserQuestions.h"
#include "document/CloudContainer.h"
#include "document/Document.h"
#include "document/FileError.h"
#include "document/FileMove.h"
#include "foundation/Background.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace quillory {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("CloudMove", text);
}

CloudContainer container()
{
    return CloudContainer::ofThisSession();
}

/// Where the file went, or would have gone.
struct Move
{
    QString destination;
    FileResult<MovedFile> outcome;
};

/// Moves what \a path leads to; a symbolic link stays where it is.
Move move(FileOps& ops, const QString& path, const QString& folder)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    const QString source = canonical.isEmpty() ? path : canonical;
    QDir().mkpath(folder);
    QString destination = folder + u'/' + QFileInfo(source).fileName();
    auto outcome = moveFile(ops, source, destination);
    return {std::move(destination), outcome};
}

void finishMove(DocumentWindow& window, const Move& move)
{
    Document& document = window.document();
    if (!move.outcome) {
        window.questions().tell(
            &window, tr("“%1” cannot be moved.").arg(document.displayName()),
            tr("It stays where it is, since “%1” cannot be made: %2.")
                .arg(QDir::toNativeSeparators(move.destination),
                     FileError{move.outcome.error(), FileStep::Publish, {}}.cause()),
            [] {});
        return;
    }
    // A file that was not as the document knew it any more still is not.
    const std::optional<FileIdentity>& known = document.fileIdentity();
    if (known && known->matches(move.outcome->before)) {
        FileIdentity identity = FileIdentity::of(move.outcome->after);
        identity.digest = known->digest;
        document.setFileIdentity(identity);
    }
    document.followRename(move.destination);
    if (CloudBrowser* browser = Shell::of(window).cloudBrowser())
        browser->renew();
}

} // namespace

bool isCloudItem(const DocumentWindow& window)
{
    return container().holds(window.document().path());
}

void moveToOrFromCloud(DocumentWindow& window, int tag)
{
    if (window.document().path().isEmpty() || !container().isAvailable())
        return;
    const QString folder =
        tag == 1 ? container().documentsFolder()
                 : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    window.saving().runBetweenSaves([&window, folder](const std::function<void()>& done) {
        FileOps& ops = window.environment().fileOps;
        runInBackground(
            &window,
            [&ops, folder, path = window.document().path()] { return move(ops, path, folder); },
            [&window, done](const Move& move) {
                finishMove(window, move);
                done();
            });
    });
}

} // namespace quillory
