#pragma once

#include <QObject>
#include <QString>

namespace quillory {

class UserDefaults;

/// The folder that a synchronising service keeps for this program's documents. A Linux desktop
/// offers none by itself, so there is one only where QUILLORY_CLOUD_CONTAINER names it.
class CloudContainer
{
public:
    /// \a folder is absolute; empty for none.
    explicit CloudContainer(QString folder) : m_folder(std::move(folder)) {}

    /// The one that the environment names.
    static CloudContainer ofThisSession();

    /// The folder is there. Asks the file system.
    bool isAvailable() const;
    /// Where the documents lie in it; it need not exist.
    QString documentsFolder() const { return m_folder + QStringLiteral("/Documents"); }
    /// The file at \a path lies in the container, however it is called.
    bool holds(const QString& path) const;

private:
    QString m_folder;
};

/// Finds out, on another thread, whether there is a container, and notes it in \a defaults under
/// "isiCloudAvailable", unless \a context is gone by then.
void threadedIcloudCheck(const CloudContainer& container, UserDefaults& defaults, QObject* context);

} // namespace quillory
