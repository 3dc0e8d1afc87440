#pragma once

#include "document/CloudEntry.h"

#include <QObject>
#include <atomic>
#include <memory>
#include <vector>

namespace quillory {

/// Lists the files of a shared folder, and of the folders in it, on another thread.
class CloudListing : public QObject
{
    Q_OBJECT

public:
    explicit CloudListing(QObject* parent = nullptr) : QObject(parent) {}
    ~CloudListing() override { cancel(); }

    /// Lists \a folder anew; a listing that is under way is given up. Files without an extension
    /// are passed over, the path of every other is logged, and those that cloudEntry() makes
    /// nothing of are left out. Symbolic links are followed, each folder is gone through once.
    void queryiCloud(const QString& folder);
    /// Gives the listing up; what was found stays.
    void cancel();

    bool isRunning() const { return m_cancelled != nullptr; }
    /// What was found by now: the newest first once finished(), until then as it came.
    const std::vector<CloudEntry>& iCloudArray() const { return m_iCloudArray; }

Q_SIGNALS:
    void started();
    /// From \a first on, iCloudArray() has more.
    void found(qsizetype first);
    /// Not after cancel(). \a isFolder: what was to be listed can be.
    void finished(bool isFolder);

private:
    using Flag = std::shared_ptr<std::atomic_bool>;

    void take(const Flag& flag, std::vector<CloudEntry> entries);
    void finish(const Flag& flag, bool isFolder);

    std::vector<CloudEntry> m_iCloudArray;
    Flag m_cancelled; ///< of the listing under way
};

} // namespace quillory
