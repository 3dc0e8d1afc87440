#include "document/FileWatch.h"

#include "document/FileHandle.h"
#include "document/FileTransfer.h"
#include "document/SystemFileOps.h"
#include "foundation/Background.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr int settling = 100; // milliseconds after the last thing that was told
/// Of longer files, in bytes, times and sizes alone tell whether they changed.
constexpr qint64 longestDigested = 16 << 20;

std::optional<struct stat> statusOf(const QString& path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return status;
}

bool isSameFile(const FileIdentity& known, const struct stat& status)
{
    return known.inode != 0 && known.device == status.st_dev && known.inode == status.st_ino;
}

/// Where in the folder of \a path the file that was there is now; empty where it is not.
QString newPathOf(const QString& path, const FileIdentity& known)
{
    QDirIterator it(QFileInfo(path).path(), QDir::Files | QDir::Hidden | QDir::System);
    while (it.hasNext()) {
        QString each = it.next();
        const auto status = statusOf(each);
        if (status && isSameFile(known, *status))
            return each;
    }
    return {};
}

/// Of the bytes at \a path while they are what \a identity tells; empty where they cannot be read.
QByteArray digestOf(const QString& path, const FileIdentity& identity)
{
    if (identity.size > longestDigested)
        return {};
    SystemFileOps ops;
    const auto file = FileHandle::open(ops, QFile::encodeName(path), O_RDONLY | O_NONBLOCK);
    if (!file)
        return {};
    const auto summary = summaryOf(bytesOf(ops, file->descriptor()));
    const auto status = statusOf(path);
    return summary && status && identity.matches(*status) ? summary->digest : QByteArray();
}

} // namespace

struct FileWatch::Finding
{
    bool exists = false;
    bool holdsTheSame = false;
    FileIdentity now;
    QString newPath; ///< of a file that is not there any more
};

FileWatch::FileWatch(QObject* parent) : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &FileWatch::look);
    for (const auto signal :
         {&QFileSystemWatcher::fileChanged, &QFileSystemWatcher::directoryChanged}) {
        connect(&m_watcher, signal, this, [this] { schedule(settling); });
    }
}

void FileWatch::watch(const QString& path, const FileIdentity& known)
{
    m_path = path;
    m_known = known;
    m_missing = m_toldGone = false;
    ++m_generation;
    rewatch();
    schedule(settling);
}

void FileWatch::schedule(int milliseconds)
{
    if (!m_path.isEmpty())
        m_timer.start(milliseconds);
}

/// The kernel's watch is on the file, and ends when another one takes its place.
void FileWatch::rewatch()
{
    QStringList wanted;
    if (!m_path.isEmpty())
        wanted = {m_path, QFileInfo(m_path).path()};
    const QStringList had = m_watcher.files() + m_watcher.directories();
    for (const QString& path : had) {
        if (!wanted.contains(path))
            m_watcher.removePath(path);
    }
    for (const QString& path : wanted) {
        if (!had.contains(path))
            m_watcher.addPath(path);
    }
}

FileWatch::Finding FileWatch::examine(const QString& path, const FileIdentity& known)
{
    Finding finding;
    const auto status = statusOf(path);
    if (!status) {
        finding.newPath = newPathOf(path, known);
        return finding;
    }
    finding.exists = true;
    finding.now = FileIdentity::of(*status);
    finding.holdsTheSame = known.matches(*status);
    if (finding.holdsTheSame && !known.digest.isEmpty()) {
        finding.now.digest = known.digest;
        return finding;
    }
    const bool mayBeTheSame = known.size == status->st_size && !known.digest.isEmpty();
    if (!finding.holdsTheSame && !mayBeTheSame)
        return finding;
    finding.now.digest = digestOf(path, finding.now);
    finding.holdsTheSame |= mayBeTheSame && finding.now.digest == known.digest;
    return finding;
}

void FileWatch::look()
{
    if (m_path.isEmpty())
        return;
    m_lookAgain = m_looking;
    if (m_looking)
        return;
    m_looking = true;
    runInBackground(
        this, [path = m_path, known = m_known] { return examine(path, known); },
        [this, generation = m_generation](const Finding& finding) {
            m_looking = false;
            if (generation == m_generation)
                take(finding);
            if (std::exchange(m_lookAgain, false) || generation != m_generation)
                look();
        });
}

void FileWatch::take(const Finding& finding)
{
    rewatch();
    if (finding.exists) {
        m_missing = false;
        m_known = finding.now;
        const bool wasGone = std::exchange(m_toldGone, false);
        if (!finding.holdsTheSame)
            Q_EMIT changed();
        else if (wasGone)
            Q_EMIT restored();
    } else if (!m_missing) {
        // It may be about to be written anew.
        m_missing = true;
        schedule(patience);
    } else if (!finding.newPath.isEmpty()) {
        m_path = finding.newPath;
        m_missing = false;
        rewatch();
        Q_EMIT renamed(m_path);
    } else if (!m_toldGone) {
        m_toldGone = true;
        Q_EMIT gone();
    }
}

} // namespace quillory
