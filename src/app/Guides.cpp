#include "app/Guides.h"

#include "foundation/ApplicationFolders.h"

#include <QDir>
#include <QFileInfo>

namespace quillory {

QString guidePath(const ApplicationFolders& folders, const QString& name)
{
    // Beside the resources of an installation, or of the sources.
    for (const char* folder : {"/../doc/quillory/", "/../docs/"}) {
        QString path = QDir::cleanPath(folders.resources + QLatin1StringView(folder) + name);
        if (QFileInfo::exists(path))
            return path;
    }
    return {};
}

} // namespace quillory
