#include "cli/InstalledDefinitions.h"

#include "syntax/PropertyListFolder.h"

#include <QCoreApplication>

namespace quillory {

ApplicationFolders installedFolders()
{
    return ApplicationFolders::fromEnvironment(QProcessEnvironment::systemEnvironment(),
                                               QCoreApplication::applicationDirPath());
}

QString installedFolder(const ApplicationFolders& folders, const QString& kind)
{
    const QString own = folders.applicationSupport + u'/' + kind;
    return propertyListsBelow(own).empty() ? folders.resources + u'/' + kind : own;
}

DefinitionList installedDefinitions(const ApplicationFolders& folders)
{
    const QString kind = QStringLiteral("Definitions");
    DefinitionList list;
    list.load(installedFolder(folders, kind), folders.resources + u'/' + kind);
    return list;
}

} // namespace quillory
