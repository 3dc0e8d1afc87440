#include "document/SessionFile.h"

#include "foundation/Background.h"
#include "foundation/BinaryPropertyListWriter.h"
#include "foundation/PropertyListReader.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// What is wrong; nothing where all is well.
QString replaceFile(const QString& path, const std::vector<SavedWindow>& windows)
{
    const Result<QByteArray> bytes = writeBinaryPropertyList(encodeSession(windows));
    if (!bytes)
        return bytes.failure().message;
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.setPermissions(ownerOnly);
    file.write(*bytes);
    return file.commit() ? QString() : file.errorString();
}

void tell(const QString& path, const QString& problem)
{
    if (!problem.isEmpty())
        qWarning("quillory: the windows cannot be kept in %s: %s", qUtf8Printable(path),
                 qUtf8Printable(problem));
}

} // namespace

SessionFile::SessionFile(QString path) : m_path(std::move(path)) {}

SessionFile::~SessionFile()
{
    if (m_lock >= 0)
        close(m_lock);
}

bool SessionFile::claim()
{
    if (m_lock >= 0)
        return true;
    QDir().mkpath(QFileInfo(m_path).path());
    const QByteArray name = QFile::encodeName(m_path + QStringLiteral(".lock"));
    m_lock = open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (m_lock >= 0 && flock(m_lock, LOCK_EX | LOCK_NB) != 0) {
        close(m_lock);
        m_lock = -1;
    }
    return m_lock >= 0;
}

std::vector<SavedWindow> SessionFile::read() const
{
    if (!QFileInfo::exists(m_path))
        return {};
    const Result<StoredPropertyList> stored = readPropertyListFile(m_path);
    const Result<std::vector<SavedWindow>> windows =
        stored ? decodeSession(stored->list) : Result<std::vector<SavedWindow>>(stored.failure());
    if (windows)
        return *windows;
    const QString aside = m_path + QStringLiteral(".damaged");
    QFile::remove(aside);
    QFile::rename(m_path, aside);
    qWarning("quillory: the windows of the last session cannot be read, their list is kept as %s: "
             "%s",
             qUtf8Printable(aside), qUtf8Printable(windows.failure().description()));
    return {};
}

void SessionFile::write(const std::vector<SavedWindow>& windows)
{
    if (m_writing) {
        m_next = windows;
        return;
    }
    m_writing = true;
    runInBackground(
        this,
        [path = m_path, windows, order = m_order, number = ++m_asked] {
            const std::lock_guard lock(order->mutex);
            if (number < order->done)
                return QString();
            order->done = number;
            return replaceFile(path, windows);
        },
        [this](const QString& problem) {
            tell(m_path, problem);
            m_writing = false;
            if (const auto next = std::exchange(m_next, std::nullopt))
                write(*next);
            else
                Q_EMIT written();
        });
}

void SessionFile::writeAtOnce(const std::vector<SavedWindow>& windows)
{
    m_next.reset();
    const std::lock_guard lock(m_order->mutex);
    m_order->done = ++m_asked;
    tell(m_path, replaceFile(m_path, windows));
}

void SessionFile::remove()
{
    m_next.reset();
    const std::lock_guard lock(m_order->mutex);
    m_order->done = ++m_asked;
    QFile::remove(m_path);
}

} // namespace quillory
