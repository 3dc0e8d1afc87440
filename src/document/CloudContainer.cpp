#include "document/CloudContainer.h"

#include "foundation/Background.h"
#include "foundation/UserDefaults.h"

#include <QDir>
#include <QFileInfo>

namespace quillory {

CloudContainer CloudContainer::ofThisSession()
{
    const QString folder = qEnvironmentVariable("QUILLORY_CLOUD_CONTAINER");
    return CloudContainer(QDir::isAbsolutePath(folder) ? QDir::cleanPath(folder) : QString());
}

bool CloudContainer::isAvailable() const
{
    return !m_folder.isEmpty() && QFileInfo(m_folder).isDir();
}

bool CloudContainer::holds(const QString& path) const
{
    if (!isAvailable() || path.isEmpty())
        return false;
    const QString folder = QFileInfo(m_folder).canonicalFilePath();
    return QFileInfo(path).canonicalFilePath().startsWith(folder + u'/');
}

void threadedIcloudCheck(const CloudContainer& container, UserDefaults& defaults, QObject* context)
{
    runInBackground(
        context, [container] { return container.isAvailable(); },
        [&defaults](bool isThere) {
            // Every document asks; only what is new is written to the file.
            if (!defaults.isWritten(keys::isiCloudAvailable) ||
                defaults.value(keys::isiCloudAvailable) != isThere)
                defaults.setValue(keys::isiCloudAvailable, isThere);
        });
}

} // namespace quillory
