#include "syntax/PropertyListFolder.h"

#include "foundation/PropertyListReader.h"

#include <QCoreApplication>
#include <QDirIterator>

namespace quillory {

QStringList propertyListPathsBelow(const QString& folder)
{
    QStringList paths;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (path.endsWith(QLatin1StringView(".plist")))
            paths.append(path);
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::vector<PropertyListFile> propertyListsBelow(const QString& folder)
{
    const QStringList paths = propertyListPathsBelow(folder);
    std::vector<PropertyListFile> lists;
    lists.reserve(size_t(paths.size()));
    for (const QString& path : paths)
        lists.push_back(propertyListAt(path));
    return lists;
}

PropertyListFile propertyListAt(const QString& path)
{
    const auto failed = [&](const QString& problem) { return PropertyListFile{path, {}, problem}; };
    if (QFileInfo(path).size() > largestPropertyListFile)
        return failed(QCoreApplication::translate("PropertyListFolder", "it is too large"));
    const Result<StoredPropertyList> stored = readPropertyListFile(path);
    if (!stored)
        return failed(stored.failure().description());
    if (!stored->list.as<PropertyList::Dictionary>())
        return failed(QCoreApplication::translate("PropertyListFolder", "it is no dictionary"));
    return {path, stored->list, {}};
}

} // namespace quillory
