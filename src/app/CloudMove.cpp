#include "app/CloudMove.h"

#include "app/CloudBrowser.h"
#include "app/DocumentController.h"
#include "app/SaveFlow.h"
#include "app/Shell.h"
#include "app/UserQuestions.h"
#include "document/CloudContainer.h"
#include "document/Document.h"
#include "document/FileMove.h"
#include "foundation/Background.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <cstring>

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

void finishMove(DocumentWindow& window, const QString& destination, const FileStatus& moved)
{
    if (!moved) {
        window.questions().tell(&window,
                                tr("“%1” cannot be moved.").arg(window.document().displayName()),
                                tr("It stays where it is, since “%1” cannot be made: %2.")
                                    .arg(QDir::toNativeSeparators(destination),
                                         QString::fromLocal8Bit(std::strerror(moved.error()))),
                                [] {});
        return;
    }
    window.document().acceptFileOnDisk();
    window.document().followRename(destination);
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
    window.saving().whenIdle([&window, folder] {
        const QString path = window.document().path();
        const QString destination = folder + u'/' + QFileInfo(path).fileName();
        FileOps& ops = window.environment().fileOps;
        runInBackground(
            &window,
            [&ops, path, folder, destination] {
                QDir().mkpath(folder);
                return moveFile(ops, path, destination);
            },
            [&window, destination](const FileStatus& moved) {
                finishMove(window, destination, moved);
            });
    });
}

} // namespace quillory
