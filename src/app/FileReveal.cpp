#include "app/FileReveal.h"

#include "foundation/Background.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace quillory {

namespace {

const QString service = QStringLiteral("org.freedesktop.FileManager1");
const QString object = QStringLiteral("/org/freedesktop/FileManager1");
constexpr int patience = 5000; ///< milliseconds; the file manager may have to be started

void openFolderOf(const QString& path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).path()));
}

void askFileManager(const QString& path, QObject* context)
{
    QDBusMessage request =
        QDBusMessage::createMethodCall(service, object, service, QStringLiteral("ShowItems"));
    request << QStringList(QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)) << QString();
    auto* answer = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(request, patience), context);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, path] {
        answer->deleteLater();
        if (answer->isError())
            openFolderOf(path);
    });
}

} // namespace

void revealInFileManager(const QString& path, QObject* context)
{
    // The bus is connected to aside: whoever does that waits for its answer.
    runInBackground(
        context, [] { return QDBusConnection::sessionBus().isConnected(); },
        [path, context](bool isConnected) {
            if (isConnected)
                askFileManager(path, context);
            else
                openFolderOf(path);
        });
}

} // namespace quillory
