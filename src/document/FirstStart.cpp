#include "document/FirstStart.h"

#include "foundation/ApplicationFolders.h"
#include "foundation/UserDefaults.h"

#include <QDir>
#include <QFile>

namespace quillory {

namespace {

/// Into a file that the user may write to, also where the shipped one is for reading alone. A file
/// that is there stays.
void copyFile(const QString& source, const QString& target)
{
    if (QFile::copy(source, target))
        QFile::setPermissions(target, QFile::permissions(target) | QFileDevice::WriteOwner);
}

QStringList listsIn(const QString& folder)
{
    return QDir(folder).entryList({QStringLiteral("*.plist")}, QDir::Files);
}

void copyFolder(const QString& source, const QString& target)
{
    QDir().mkpath(target);
    for (const QString& name : listsIn(source))
        copyFile(source + u'/' + name, target + u'/' + name);
}

} // namespace

void populateApplicationSupport(const ApplicationFolders& folders, UserDefaults& defaults)
{
    const QString target = folders.applicationSupport;
    const QString source = folders.resources;
    const bool isFirst = !defaults.value(keys::firstStartEver);
    for (const QString& folder : {QStringLiteral("/Definitions"), QStringLiteral("/Themes")}) {
        if (isFirst || listsIn(target + folder).isEmpty())
            copyFolder(source + folder, target + folder);
    }
    if (!isFirst)
        return;
    copyFile(source + QStringLiteral("/Encodings.plist"),
             target + QStringLiteral("/Encodings.plist"));
    defaults.setValue(keys::firstStartEver, true);
}

} // namespace quillory
