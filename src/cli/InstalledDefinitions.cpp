#include "cli/InstalledDefinitions.h"

#include "cli/CommandArguments.h"
#include "syntax/PropertyListFolder.h"

#include <QCoreApplication>
#include <QFileInfo>

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

Definition definitionFor(const ApplicationFolders& folders, const std::optional<QString>& chosen,
                         const QString& path)
{
    const DefinitionList list = installedDefinitions(folders);
    const auto at = [&](qsizetype index) { return list.arrangedObjects()[size_t(index)]; };
    if (!chosen) {
        const qsizetype index = list.indexForExtension(QFileInfo(path).suffix().toLower());
        return at(index < 0 ? list.indexOfPlainText() : index);
    }
    if (const qsizetype index = list.indexForTitle(*chosen); index >= 0)
        return at(index);
    if (std::optional<PropertyList> dictionary = dictionaryIn(*chosen))
        return {std::move(*dictionary), *chosen};
    throw Refusal{ExitStatus::Usage,
                  QStringLiteral("“%1” is neither the title of an installed definition nor a "
                                 "file; “quillory-cli definitions” lists the titles")
                      .arg(*chosen)};
}

std::optional<PropertyList> dictionaryIn(const QString& path)
{
    if (!QFileInfo(path).isFile())
        return {};
    PropertyListFile file = propertyListAt(path);
    if (!file.problem.isEmpty())
        throw Refusal{ExitStatus::Failure, QStringLiteral("%1: %2").arg(path, file.problem)};
    return std::move(file.dictionary);
}

} // namespace quillory
