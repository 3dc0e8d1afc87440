#include "commands/TemporaryTexts.h"

#include "foundation/Background.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr int daysOfLeftovers = 3;
constexpr int mostKept = 16;  ///< of a document's files, for programs that still read them
constexpr int attempts = 100; ///< at a path that another editor takes first

void makeFolder(const QString& folder)
{
    QDir().mkpath(QFileInfo(folder).path());
    ::mkdir(QFile::encodeName(folder).constData(), 0700);
}

QString freePath(const QString& folder, const QString& mainExtension)
{
    static const QDateTime referenceDate(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    // It comes from a definition, and must not lead to another folder.
    QString extension = mainExtension;
    extension.replace(u'/', u'_').remove(QChar(u'\0'));
    makeFolder(folder);
    for (int counter = 1;; ++counter) {
        const qint64 seconds = referenceDate.secsTo(QDateTime::currentDateTimeUtc());
        QString path =
            QStringLiteral("%1/%2%3.%4").arg(folder).arg(seconds).arg(counter).arg(extension);
        struct stat found = {};
        if (::lstat(QFile::encodeName(path).constData(), &found) != 0)
            return path;
    }
}

QString systemMessage(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

QString encodingMessage(const EncodingFailure& failure)
{
    if (failure.cause == EncodingFailure::Cause::unencodableCharacter)
        return QCoreApplication::translate(
                   "TemporaryTexts", "The document's encoding has no “%1”, so its text cannot be "
                                     "handed over. Choose another encoding.")
            .arg(QString::fromUcs4(&failure.character, 1));
    return QCoreApplication::translate("TemporaryTexts", "The document's encoding is not known.");
}

/// All of the bytes, or an errno.
int writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(file, bytes.data(), size_t(bytes.size()));
        if (count < 0 && errno != EINTR)
            return errno;
        bytes = bytes.sliced(std::max<ssize_t>(count, 0));
    }
    return 0;
}

/// Gives the file at \a from a free path, under which it is there as a whole.
Result<QString> publish(const QByteArray& from, const QString& folder, const QString& mainExtension)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const QString path = freePath(folder, mainExtension);
        if (::link(from.constData(), QFile::encodeName(path).constData()) == 0)
            return path;
        if (errno != EEXIST)
            break;
    }
    return Failure{systemMessage(errno)};
}

Result<QString> writeFile(const TemporaryTexts::Production& produce, const QString& folder,
                          const QString& mainExtension)
{
    makeFolder(folder);
    QByteArray unfinished = QFile::encodeName(folder) + "/.text-XXXXXX";
    const int file = ::mkostemp(unfinished.data(), O_CLOEXEC); // its mode is 0600
    if (file < 0)
        return Failure{systemMessage(errno)};
    const auto removal = qScopeGuard([&] { ::unlink(unfinished.constData()); });
    int error = 0;
    const auto failure = produce([&](QByteArrayView bytes) {
        error = writeAll(file, bytes);
        return error == 0;
    });
    if (::close(file) != 0 && error == 0)
        error = errno;
    if (error != 0)
        return Failure{systemMessage(error)};
    if (failure)
        return Failure{encodingMessage(*failure)};
    return publish(unfinished, folder, mainExtension);
}

void removeLeftovers(const QString& folder)
{
    static const QRegularExpression ownName(
        QStringLiteral("^([0-9]{10,}\\.[^/]*|\\.text-[A-Za-z0-9]{6})$"));
    const QDateTime oldest = QDateTime::currentDateTimeUtc().addDays(-daysOfLeftovers);
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo& file : files) {
        if (ownName.match(file.fileName()).hasMatch() && file.lastModified() < oldest)
            QFile::remove(file.filePath());
    }
}

/// Removing a large file takes long.
void removeSoon(const QStringList& paths)
{
    backgroundPool().start([paths] {
        for (const QString& path : paths)
            QFile::remove(path);
    });
}

/// A file that goes with this, unless it was handed on.
struct OwnedFile
{
    Result<QString> path;

    explicit OwnedFile(Result<QString> written) : path(std::move(written)) {}
    OwnedFile(OwnedFile&& other) noexcept : path(std::exchange(other.path, Failure{})) {}
    OwnedFile(const OwnedFile&) = delete;
    OwnedFile& operator=(const OwnedFile&) = delete;
    OwnedFile& operator=(OwnedFile&&) = delete;
    ~OwnedFile()
    {
        if (path)
            QFile::remove(*path);
    }

    Result<QString> handOn() { return std::exchange(path, Failure{}); }
};

} // namespace

TemporaryTexts::TemporaryTexts(QString folder, QObject* parent)
    : QObject(parent), m_folder(std::move(folder))
{}

TemporaryTexts::~TemporaryTexts()
{
    removeSoon(m_written);
}

QString TemporaryTexts::temporaryPath(const QString& mainExtension) const
{
    return freePath(m_folder, mainExtension);
}

void TemporaryTexts::write(const TextSnapshot& text, StringEncoding encoding,
                           const QString& mainExtension,
                           const std::function<void(const Result<QString>&)>& done)
{
    write(
        [text, encoding](const ByteSink& sink) {
            return encode(text, encoding, standardLayout(encoding), sink);
        },
        mainExtension, done);
}

void TemporaryTexts::write(const Production& produce, const QString& mainExtension,
                           const std::function<void(const Result<QString>&)>& done)
{
    const bool prunes = !std::exchange(m_hasPruned, true);
    runInBackground(
        this,
        [produce, mainExtension, prunes, folder = m_folder] {
            if (prunes)
                removeLeftovers(folder);
            return OwnedFile(writeFile(produce, folder, mainExtension));
        },
        [this, done](OwnedFile written) {
            const Result<QString> path = written.handOn();
            if (path)
                m_written += *path;
            if (m_written.size() > mostKept)
                removeSoon({m_written.takeFirst()});
            done(path);
        });
}

void TemporaryTexts::remove(const QString& path)
{
    if (m_written.removeOne(path))
        removeSoon({path});
}

} // namespace quillory
