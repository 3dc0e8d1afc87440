#include "document/CloudListing.h"

#include "foundation/Background.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QPointer>
#include <algorithm>
#include <dirent.h>
#include <functional>
#include <iterator>
#include <set>
#include <sys/stat.h>

namespace quillory {

namespace {

constexpr size_t largestBatch = 256;
constexpr qint64 batchTime = 100; ///< milliseconds between two batches at most

using Batch = std::vector<CloudEntry>;

/// Goes through a folder, entry by entry.
class FolderWalk
{
public:
    FolderWalk(const std::atomic_bool& cancelled, std::function<void(Batch)> deliver)
        : m_cancelled(cancelled), m_deliver(std::move(deliver))
    {
        m_sinceBatch.start();
    }

    /// False where \a folder is none that can be read.
    bool run(const QByteArray& folder)
    {
        // A link to a folder that this one lies in would lead back here by way of all else in it.
        QByteArray above =
            QFile::encodeName(QFileInfo(QFile::decodeName(folder)).canonicalFilePath());
        while (above.size() > 1) {
            above.truncate(std::max<qsizetype>(1, above.lastIndexOf('/')));
            isNew(above);
        }
        const bool isFolder = isNew(folder) && list(folder);
        while (!m_folders.empty() && !m_cancelled) {
            const QByteArray next = std::move(m_folders.back());
            m_folders.pop_back();
            list(next);
        }
        flush();
        return isFolder;
    }

private:
    bool isNew(const QByteArray& folder)
    {
        struct stat status = {};
        return ::stat(folder.constData(), &status) == 0 && isNew(status);
    }

    bool isNew(const struct stat& status)
    {
        return m_known.insert({status.st_dev, status.st_ino}).second;
    }

    bool list(const QByteArray& folder)
    {
        DIR* const entries = ::opendir(folder.constData());
        if (!entries)
            return false;
        while (!m_cancelled) {
            const dirent* const entry = ::readdir(entries);
            if (!entry)
                break;
            const QByteArray name(entry->d_name);
            if (name != "." && name != "..")
                visit(folder + '/' + name, name);
        }
        ::closedir(entries);
        return true;
    }

    void visit(const QByteArray& path, const QByteArray& name)
    {
        if (!extensionOf(name).isEmpty())
            qInfo("file: %s", path.constData());
        struct stat status = {};
        if (::stat(path.constData(), &status) != 0)
            return;
        if (S_ISDIR(status.st_mode)) {
            if (isNew(status))
                m_folders.push_back(path);
        } else if (S_ISREG(status.st_mode)) {
            if (std::optional<CloudEntry> entry = cloudEntry(path))
                m_batch.push_back(std::move(*entry));
        }
        if (m_batch.size() >= largestBatch || m_sinceBatch.hasExpired(batchTime))
            flush();
    }

    void flush()
    {
        if (!m_batch.empty() && !m_cancelled)
            m_deliver(std::exchange(m_batch, {}));
        m_sinceBatch.restart();
    }

    const std::atomic_bool& m_cancelled;
    std::function<void(Batch)> m_deliver;
    std::vector<QByteArray> m_folders;         ///< still to be gone through
    std::set<std::pair<dev_t, ino_t>> m_known; ///< folders
    Batch m_batch;
    QElapsedTimer m_sinceBatch;
};

} // namespace

void CloudListing::queryiCloud(const QString& folder)
{
    cancel();
    m_iCloudArray.clear();
    const Flag flag = m_cancelled = std::make_shared<std::atomic_bool>(false);
    Q_EMIT started();
    // The events reach the application's thread in the order in which they were posted.
    const auto later = [guard = QPointer<CloudListing>(this)](auto call) {
        QMetaObject::invokeMethod(
            qApp,
            [guard, call = std::move(call)]() mutable {
                if (guard)
                    call(*guard);
            },
            Qt::QueuedConnection);
    };
    backgroundPool().start([flag, later, path = QFile::encodeName(QDir::cleanPath(folder))] {
        const WaitingInPool waiting;
        FolderWalk walk(*flag, [&](Batch batch) {
            later([flag, batch = std::move(batch)](CloudListing& listing) mutable {
                listing.take(flag, std::move(batch));
            });
        });
        const bool isFolder = walk.run(path);
        later([flag, isFolder](CloudListing& listing) { listing.finish(flag, isFolder); });
    });
}

void CloudListing::cancel()
{
    if (m_cancelled)
        *m_cancelled = true;
    m_cancelled.reset();
}

void CloudListing::take(const Flag& flag, std::vector<CloudEntry> entries)
{
    if (flag != m_cancelled)
        return;
    const auto first = std::ssize(m_iCloudArray);
    m_iCloudArray.insert(m_iCloudArray.end(), std::move_iterator(entries.begin()),
                         std::move_iterator(entries.end()));
    Q_EMIT found(first);
}

void CloudListing::finish(const Flag& flag, bool isFolder)
{
    if (flag != m_cancelled)
        return;
    m_cancelled.reset();
    std::stable_sort(m_iCloudArray.begin(), m_iCloudArray.end(),
                     [](const CloudEntry& a, const CloudEntry& b) { return a.date > b.date; });
    Q_EMIT finished(isFolder);
}

} // namespace quillory
