#include "document/GradualRead.h"

#include "document/GradualDecoder.h"
#include "text/GrowingBytes.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace quillory {

namespace {

bool isLargeFile(const QString& path, ByteCount least)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISREG(status.st_mode) &&
           status.st_size >= least.value();
}

/// bestUse() for bytes that are not read yet.
ByteUse bestUseOf(const ReadableFile& file, qsizetype size)
{
    constexpr qsizetype samples = 64;
    constexpr qsizetype sampleBytes = 1024;
    QByteArray bytes;
    std::array<char, sampleBytes> sample;
    for (qsizetype i = 0; i < samples; ++i) {
        const ssize_t count =
            pread(file.descriptor(), sample.data(), sampleBytes, off_t(size / samples * i));
        bytes.append(sample.data(), count == sampleBytes ? sampleBytes : 0);
    }
    return bytes.size() == samples * sampleBytes ? bestUse(bytes) : ByteUse::Copied;
}

} // namespace

GradualRead::GradualRead(const QString& path, const Options& options)
    : m_path(path), m_options(options), m_file(path)
{
    if (options.read)
        m_file.setReadCall(options.read);
}

std::shared_ptr<GradualRead> GradualRead::begin(const QString& path, const Options& options)
{
    if (!isLargeFile(path, options.least))
        return nullptr;
    std::shared_ptr<GradualRead> read(new GradualRead(path, options));
    return read->m_file.isOpen() && read->readBeginning() ? read : nullptr;
}

bool GradualRead::readBeginning()
{
    if (!m_file.getStatus(m_status) || !S_ISREG(m_status.st_mode))
        return false;
    m_attribute = m_file.encodingAttribute();
    m_first = QByteArray(m_options.beginning.value(), Qt::Uninitialized);
    const qsizetype count = m_file.read(m_first.data(), m_first.size());
    if (count != m_first.size())
        return false;
    m_used = uncutBeginning(m_first, m_attribute);
    // The bytes are few, and looking at them does not keep the file's own alive.
    m_beginning = readText(m_path, {0, ByteBuffer(m_first.first(m_used)), m_status, m_attribute});
    // What only the whole file can say.
    m_beginning.lineBreaks = {};
    m_beginning.encodesBack = true;
    return true;
}

qsizetype GradualRead::expectedLineCount() const
{
    const qsizetype known = m_beginning.text ? m_beginning.text->lineCount() : 1;
    return m_used > 0 ? qsizetype(double(known) * double(m_status.st_size) / double(m_used)) : 1;
}

GradualRead::Outcome GradualRead::finish(const std::atomic_bool& cancelled,
                                         const std::function<void(const Progress&)>& report)
{
    try {
        return readRest(cancelled, report);
    } catch (const std::bad_alloc&) {
        return failure(ENOMEM);
    }
}

GradualRead::Outcome GradualRead::failure(int error) const
{
    return {readText(m_path, {error, {}, m_status, m_attribute}), 0};
}

GradualRead::Outcome GradualRead::readRest(const std::atomic_bool& cancelled,
                                           const std::function<void(const Progress&)>& report)
{
    GrowingBytes bytes(ByteCount(m_status.st_size));
    std::copy(m_first.cbegin(), m_first.cend(), bytes.end());
    bytes.grow(m_first.size());
    m_first.clear();
    posix_fadvise(m_file.descriptor(), 0, 0, POSIX_FADV_SEQUENTIAL);
    TextSnapshot shown = m_beginning.text.value_or(TextSnapshot());
    GradualDecoder decoder(m_beginning.text ? m_beginning.record.encoding : StringEncoding::none,
                           m_beginning.layout, shown, m_used, bestUseOf(m_file, m_status.st_size));
    QElapsedTimer sinceReport;
    sinceReport.start();
    for (bool atEnd = false; !atEnd;) {
        const qsizetype wanted = std::min(m_options.part.value(), bytes.room().value());
        const qsizetype count = m_file.read(bytes.end(), wanted, &cancelled);
        if (count < 0)
            return failure(int(-count));
        bytes.grow(count);
        atEnd = bytes.room().value() == 0 || count < wanted;
        decoder.take(bytes.filled(), atEnd);
        if (!atEnd && sinceReport.elapsed() >= m_options.interval.count()) {
            const TextSnapshot& text = decoder.text();
            report({text.slice(TextRange::between(shown.length(), text.length())),
                    double(bytes.filled().size().value()) / double(m_status.st_size)});
            shown = text;
            sinceReport.start();
        }
    }
    if (cancelled)
        return failure(ECANCELED);
    if (bytes.room().value() > 0) {
        Outcome outcome = failure(EIO);
        outcome.result.message =
            QCoreApplication::translate("GradualRead", "“%1” could not be read: another program "
                                                       "shortened it meanwhile. Open it again.")
                .arg(m_path);
        return outcome;
    }
    Outcome outcome;
    outcome.result = readText(m_path, {0, bytes.filled(), m_status, m_attribute}, decoder.finish());
    if (outcome.result.text) {
        outcome.kept = commonPrefixLength(shown, *outcome.result.text);
        // Freeing what the text does not need takes time, which is plenty here.
        outcome.result.record.dataFromFile = ByteBuffer();
    }
    return outcome;
}

} // namespace quillory
