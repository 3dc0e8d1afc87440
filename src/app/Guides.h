#pragma once

#include <QString>

namespace quillory {

struct ApplicationFolders;

/// The path of the file called \a name among the program's guides; empty where it is not installed.
QString guidePath(const ApplicationFolders& folders, const QString& name);

} // namespace quillory
