#pragma once

#include "foundation/PropertyList.h"

#include <QStringList>
#include <vector>

namespace quillory {

/// A property-list file of a folder; its dictionary, or what is wrong with it.
struct PropertyListFile
{
    QString path;
    PropertyList dictionary;
    QString problem; ///< in words for the user; empty where the dictionary was read
};

/// Larger files are not read: nobody writes such a list, and reading one would stop the program.
inline constexpr qint64 largestPropertyListFile = qint64(32) * 1024 * 1024; // bytes

/// The paths of the files with the extension "plist" below \a folder, at any depth, by their code
/// units. Folders that are symbolic links are not entered. None where there is no such folder.
QStringList propertyListPathsBelow(const QString& folder);

/// The same files, read.
std::vector<PropertyListFile> propertyListsBelow(const QString& folder);

PropertyListFile propertyListAt(const QString& path);

} // namespace quillory
