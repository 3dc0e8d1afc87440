#include "document/CloudEntry.h"

#include "document/DocumentType.h"
#include "foundation/KeyedArchive.h"
#include "text/TextDecoder.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr qsizetype longestPreview = 150; ///< UTF-16 code units
constexpr qint64 head = 4096;             ///< bytes of a text that are read, far more than shown
constexpr qint64 largestArchive = qint64(16) << 20; ///< bytes; a larger one is shown without text

/// Closes what it opened. Never waits for the other end of a pipe.
class Descriptor
{
public:
    explicit Descriptor(const QByteArray& path)
        : m_number(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
    {}
    ~Descriptor()
    {
        if (m_number >= 0)
            ::close(m_number);
    }
    Q_DISABLE_COPY_MOVE(Descriptor)

    bool getFileStatus(struct stat& status) const
    {
        return m_number >= 0 && ::fstat(m_number, &status) == 0 && S_ISREG(status.st_mode);
    }

    /// The first bytes, \a most at most; none when they cannot be read.
    std::optional<QByteArray> read(qint64 most) const
    {
        QByteArray bytes(most, Qt::Uninitialized);
        qint64 size = 0;
        while (size < most) {
            const ssize_t count = ::pread(m_number, bytes.data() + size, size_t(most - size), size);
            if (count < 0 && errno != EINTR)
                return std::nullopt;
            if (count == 0)
                break;
            size += std::max<ssize_t>(0, count);
        }
        bytes.truncate(size);
        return bytes;
    }

private:
    int m_number;
};

/// The beginning of a UTF-8 text; none of binary data, which zero bytes tell too.
std::optional<QString> beginningOfText(const Descriptor& file)
{
    std::optional<QByteArray> bytes = file.read(head);
    if (!bytes || bytes->contains('\0'))
        return std::nullopt;
    if (bytes->size() == head) // the last character may be cut
        bytes->truncate(wholeCharacters(*bytes, StringEncoding::utf8));
    const auto text = decode(ByteBuffer(*bytes), StringEncoding::utf8);
    return text ? std::optional(text->string()) : std::nullopt;
}

std::optional<QString> beginningOfArchive(const Descriptor& file, qint64 size)
{
    if (size > largestArchive)
        return QString();
    const std::optional<QByteArray> bytes = file.read(size);
    if (!bytes)
        return std::nullopt;
    const auto archive = decodeKeyedArchive(*bytes);
    if (!archive)
        return std::nullopt;
    const auto stored = [&](const char* key) { return archive->value(QLatin1StringView(key)); };
    const auto text = decode(ByteBuffer(stored("text").toData()),
                             StringEncoding(quint32(stored("encoding").toInteger())));
    if (!text)
        return std::nullopt;
    return text->slice({0, std::min<TextOffset>(text->length(), longestPreview + 1)}).string();
}

} // namespace

QByteArray extensionOf(const QByteArray& name)
{
    const qsizetype dot = name.lastIndexOf('.');
    return dot > 0 ? name.mid(dot + 1) : QByteArray();
}

QString cloudPreview(QString text)
{
    if (text.size() > longestPreview) {
        text.truncate(longestPreview - 1);
        if (text.back().isHighSurrogate())
            text.chop(1);
        text += u'…';
    }
    text.replace(QStringLiteral("\n\n"), QStringLiteral(" "));
    return text.replace(u'\n', u' ');
}

std::optional<CloudEntry> cloudEntry(const QByteArray& path)
{
    const QByteArray name = path.mid(path.lastIndexOf('/') + 1);
    const QByteArray extension = extensionOf(name);
    const Descriptor file(path);
    struct stat status = {};
    if (extension.isEmpty() || !file.getFileStatus(status))
        return std::nullopt;
    CloudEntry entry;
    entry.extension = QFile::decodeName(extension);
    const bool isArchive =
        entry.extension.compare(u"edit", Qt::CaseInsensitive) == 0 ||
        entry.extension.compare(DocumentType::archiveExtension, Qt::CaseInsensitive) == 0;
    const std::optional<QString> text =
        isArchive ? beginningOfArchive(file, status.st_size) : beginningOfText(file);
    if (!text)
        return std::nullopt;
    entry.title = QFile::decodeName(name.chopped(extension.size() + 1));
    entry.body = cloudPreview(*text);
    entry.date = QDateTime::fromMSecsSinceEpoch(qint64(status.st_mtim.tv_sec) * 1000 +
                                                status.st_mtim.tv_nsec / 1'000'000);
    entry.url = QUrl::fromLocalFile(QFile::decodeName(path));
    return entry;
}

} // namespace quillory
