#pragma once

#include "foundation/ApplicationFolders.h"
#include "syntax/DefinitionList.h"

namespace quillory {

/// The folders of whoever runs the program.
ApplicationFolders installedFolders();

/// Where lists of a kind ("Definitions" or "Themes") are read from: the user's folder or, where it
/// holds none since the editor was never started, the shipped one.
QString installedFolder(const ApplicationFolders& folders, const QString& kind);

/// The definitions that the editor would offer; nothing is selected.
DefinitionList installedDefinitions(const ApplicationFolders& folders);

/// The one that \a chosen names, by its title or its file; without a choice the one for the file at
/// \a path. Throws a Refusal.
Definition definitionFor(const ApplicationFolders& folders, const std::optional<QString>& chosen,
                         const QString& path);

/// The dictionary in the file that an option names; none where there is no such file. Throws a
/// Refusal where it holds none.
std::optional<PropertyList> dictionaryIn(const QString& path);

} // namespace quillory
