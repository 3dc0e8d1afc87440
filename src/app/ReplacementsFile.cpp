#include "app/ReplacementsFile.h"

#include "app/DocumentController.h"
#include "app/DocumentWindow.h"
#include "document/DocumentEnvironment.h"
#include "foundation/ApplicationFolders.h"

#include <QDir>
#include <QFile>

namespace quillory {

void editTextReplacements(DocumentWindow& window)
{
    const ApplicationFolders& folders = window.environment().folders;
    const QString path = folders.replacementsFile();
    // What fails here is told when the file is opened.
    QDir().mkpath(folders.applicationSupport);
    if (QFile::copy(folders.resources + QStringLiteral("/Replacements.plist"), path))
        QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::WriteOwner);
    window.controller().open({{path, {}}}, &window);
}

} // namespace quillory
