#include "foundation/ApplicationFolders.h"

#include <QDir>
#include <QFileInfo>

namespace quillory {
namespace {

QString userFolder(const QProcessEnvironment& environment, const QString& variable,
                   const QString& belowHome)
{
    const QString base = environment.value(variable);
    if (QDir::isAbsolutePath(base))
        return QDir::cleanPath(base + QStringLiteral("/Quillory"));
    const QString home = environment.value(QStringLiteral("HOME"));
    return QDir::cleanPath((QDir::isAbsolutePath(home) ? home : QDir::homePath()) + u'/' +
                           belowHome + QStringLiteral("/Quillory"));
}

bool holdsResources(const QString& folder)
{
    return QFileInfo::exists(folder + QStringLiteral("/Encodings.plist"));
}

QString resourcesFolder(const QProcessEnvironment& environment, const QString& executableFolder)
{
    const QString named = environment.value(QStringLiteral("QUILLORY_RESOURCES"));
    if (!named.isEmpty())
        return QDir(named).absolutePath();
    QString installed = QDir::cleanPath(executableFolder + QStringLiteral("/../share/quillory"));
    if (holdsResources(installed))
        return installed;
    // A program of a build tree lies in build/PRESET/src/ROOM.
    QDir folder(executableFolder);
    for (int level = 0; level < 5; ++level) {
        if (const QString found = folder.filePath(QStringLiteral("resources"));
            holdsResources(found))
            return QDir::cleanPath(found);
        if (!folder.cdUp())
            break;
    }
    return QStringLiteral(QUILLORY_INSTALLED_RESOURCES);
}

QString pluginsFolder(const QString& executableFolder)
{
    const QString installed =
        QDir::cleanPath(executableFolder + QStringLiteral("/../lib/quillory"));
    return QFileInfo::exists(installed) ? installed : executableFolder;
}

} // namespace

ApplicationFolders ApplicationFolders::fromEnvironment(const QProcessEnvironment& environment,
                                                       const QString& executableFolder)
{
    const auto folder = [&environment](const char* variable, const char* belowHome) {
        return userFolder(environment, QLatin1String(variable), QLatin1String(belowHome));
    };
    const QString runtime = environment.value(QStringLiteral("XDG_RUNTIME_DIR"));
    return {
        .applicationSupport = folder("XDG_DATA_HOME", ".local/share"),
        .caches = folder("XDG_CACHE_HOME", ".cache"),
        .configuration = folder("XDG_CONFIG_HOME", ".config"),
        .state = folder("XDG_STATE_HOME", ".local/state"),
        .runtime =
            QDir::isAbsolutePath(runtime) ? runtime + QStringLiteral("/Quillory") : QString(),
        .resources = resourcesFolder(environment, executableFolder),
        .plugins = pluginsFolder(executableFolder),
    };
}

} // namespace quillory
