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

} // namespace quillory
