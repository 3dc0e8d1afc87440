#include "document/DocumentWriter.h"

#include "document/DocumentType.h"
#include "document/FileBytes.h"
#include "document/RecoveryStore.h"
#include "document/SafeFileWriter.h"
#include "document/VersionStore.h"
#include "foundation/KeyedArchive.h"
#include "foundation/PropertyListReader.h"
#include "foundation/XmlPropertyListWriter.h"
#include "text/EncodingNames.h"
#include "text/EncodingTable.h"
#include "text/LineBreaks.h"
#include "text/TextEncoder.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace quillory {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("DocumentWriter", text);
}

/// One save at work: the job, the text as it goes to the disk, and what came of it.
class Save
{
public:
    Save(const SaveJob& job, FileOps& ops, RecoveryStore& recovery)
        : m_job(job), m_ops(ops), m_recovery(recovery),
          m_text(converted(job.text, LineBreakFormat(job.record.lbFormat)))
    {
        m_result.recoveryRecord = job.recoveryRecord;
        m_result.readsBack = m_text.isSameTree(job.text);
    }

    SaveResult run()
    {
        if (m_job.isIncomplete)
            refuse(SaveProblem::Incomplete,
                   tr("“%1” was not saved, since it is still being read. Save it when all of it is "
                      "there.")
                       .arg(fileName()));
        else if (m_job.isUndecoded)
            refuse(SaveProblem::NoEncoding,
                   tr("The encoding of “%1” is not known, so saving could destroy what the file "
                      "holds. Nothing was written. Choose the encoding to open it in first.")
                       .arg(fileName()));
        else if (m_job.type == DocumentType::archive)
            writeArchive();
        else if (!m_job.record.isPlistFile || m_job.record.plistKind == 0)
            writeText();
        else if (m_job.record.plistKind >= 1 && m_job.record.plistKind <= 3)
            writePropertyList();
        return m_result;
    }

private:
    QString fileName() const { return QFileInfo(m_job.path).fileName(); }

    /// Nothing is written; the text is kept aside until a save goes well.
    void refuse(SaveProblem problem, const QString& message)
    {
        m_result.problem = problem;
        m_result.message = message;
        if (!m_job.keepsText || m_job.isIncomplete)
            return;
        const StringEncoding form = findUnencodable(m_job.text, StringEncoding::utf8)
                                        ? StringEncoding::utf16
                                        : StringEncoding::utf8;
        const auto kept = m_recovery.store(
            entry(form),
            [&](const ByteSink& sink) {
                return !encode(m_job.text, form, standardLayout(form), sink);
            },
            m_job.recoveryRecord);
        if (kept)
            m_result.recoveryRecord = *kept;
    }

    RecoveryEntry entry(StringEncoding encoding) const
    {
        RecoveryEntry entry;
        entry.path = m_job.path;
        entry.encoding = encoding;
        entry.lbFormat = m_job.record.lbFormat;
        return entry;
    }

    /// False, and the user told, when the text has a character that \a encoding lacks.
    bool fits(StringEncoding encoding)
    {
        const std::optional<EncodingFailure> failure = findUnencodable(m_text, encoding);
        if (!failure)
            return true;
        const LineIndex line = m_text.lineAt(failure->offset);
        m_result.line = line;
        m_result.column = failure->offset - m_text.lineStart(line);
        m_result.offset = m_job.text.lineStart(line) + m_result.column;
        const QString name = displayName(encoding);
        refuse(SaveProblem::Unencodable,
               failure->cause == EncodingFailure::Cause::unknownEncoding
                   ? tr("“%1” was not saved: encoding number %2 is not known here. Choose another "
                        "encoding.")
                         .arg(fileName())
                         .arg(quint32(encoding))
                   : tr("“%1” was not saved: the character “%2” (U+%3) in line %4 has no place in "
                        "%5. Change it, or save as UTF-8.")
                         .arg(fileName(), QString::fromUcs4(&failure->character, 1),
                              QString::number(uint(failure->character), 16)
                                  .toUpper()
                                  .rightJustified(4, QLatin1Char('0')))
                         .arg(line.value() + 1)
                         .arg(name));
        return false;
    }

    void writeText()
    {
        const StringEncoding encoding = m_job.record.encoding;
        if (!fits(encoding))
            return;
        write([this, encoding](
                  const ByteSink& sink) { return !encode(m_text, encoding, m_job.layout, sink); },
              encoding);
    }

    void writeArchive()
    {
        const DocumentRecord& record = m_job.record;
        if (!fits(record.encoding)) {
            m_result.answer = false;
            return;
        }
        const auto archive = encodeKeyedArchive({
            {QStringLiteral("text"), *encoded(m_text, record.encoding)},
            {QStringLiteral("encoding"), quint32(record.encoding)},
            {QStringLiteral("lbFormat"), record.lbFormat},
            {QStringLiteral("definitionTitle"), record.definitionTitle},
            {QStringLiteral("baseURL"), record.baseURL},
        });
        writeBytes(*archive, StringEncoding::none);
        m_result.answer = m_result.written;
    }

    /// Whatever form the list had on disk, it is written as XML.
    void writePropertyList()
    {
        if (!fits(StringEncoding::utf8)) {
            m_result.answer = false;
            return;
        }
        m_result.readsBack = false; // the list is written anew
        const QByteArray bytes = *encoded(m_text, StringEncoding::utf8);
        const auto stored = readPropertyList(bytes);
        if (!stored) {
            const Failure& failure = stored.failure();
            m_result.line = LineIndex(std::max<qsizetype>(0, failure.line - 1));
            m_result.column = std::max<qsizetype>(0, failure.column - 1);
            refuse(SaveProblem::UnparsablePropertyList,
                   tr("“%1” was not saved, since it is no property list any more. %2. Mend it, or "
                      "save it elsewhere as text.")
                       .arg(fileName(), failure.description()));
            return;
        }
        const auto xml = writeXmlPropertyList(stored->list);
        if (!xml) {
            refuse(SaveProblem::UnparsablePropertyList,
                   tr("“%1” was not saved: %2.").arg(fileName(), xml.failure().description()));
            return;
        }
        writeBytes(*xml, StringEncoding::utf8);
    }

    void writeBytes(const QByteArray& bytes, StringEncoding encoding)
    {
        write([bytes](const ByteSink& sink) { return sink(bytes); }, encoding);
    }

    /// False, and the user told, when an automatic save must not go on.
    bool mayWriteQuietly()
    {
        if (m_job.isAutomatic && (!m_ops.mayWrite(QFile::encodeName(m_job.path)) ||
                                  SafeFileWriter::isWriteProtected(m_ops, m_job.path))) {
            m_result.problem = SaveProblem::NotQuiet;
            return false;
        }
        if (!m_job.versions)
            return true;
        const auto kept = m_job.versions->keep(m_job.path, m_job.encodingOnDisk);
        m_result.versionDigest = *kept;
        m_result.isVersionLost = !kept;
        if (kept || !m_job.isAutomatic)
            return true;
        // A file that is gone, or changes all the time, is told of elsewhere; one that is too
        // large for the store is saved by command only.
        const bool isTold =
            kept.error() == ENOENT || kept.error() == ECANCELED || kept.error() == EFBIG;
        m_result.problem = isTold ? SaveProblem::NotQuiet : SaveProblem::NoVersion;
        m_result.message =
            tr("“%1” is not saved automatically any more, since what it held could not be kept in "
               "“%2”: %3. Save it yourself, or make room there.")
                .arg(fileName(), m_job.versions->folder(),
                     FileError{kept.error(), FileStep::StoreRecovery, {}}.cause());
        return false;
    }

    /// \a encoding is that of the text in what \a source gives.
    void write(const ByteSource& source, StringEncoding encoding)
    {
        if (!mayWriteQuietly())
            return;
        SafeWriteRequest request;
        request.path = m_job.path;
        request.source = source;
        request.expected = m_job.expected;
        request.entry = entry(encoding);
        request.recoveryRecord = m_job.recoveryRecord;
        request.keepsText = m_job.keepsText;
        if (m_job.hasEncodingAttribute)
            request.attributes[textEncodingAttribute] = attributeForEncoding(encoding);
        const SafeWriteResult written = SafeFileWriter(m_ops, m_recovery).write(request);
        m_result.written = written.isWritten();
        m_result.damaged = written.disk == DiskState::Damaged;
        m_result.message = written.message;
        m_result.identity = written.identity;
        m_result.recoveryRecord = written.recoveryRecord;
        if (written.outcome == SafeWriteResult::Outcome::ChangedByOther)
            m_result.problem = SaveProblem::ChangedByOther;
        else if (!written.isWritten())
            m_result.problem = SaveProblem::Disk;
    }

    const SaveJob& m_job;
    FileOps& m_ops;
    RecoveryStore& m_recovery;
    const TextSnapshot m_text; ///< with the line breaks of its format
    SaveResult m_result;
};

} // namespace

SaveResult SaveJob::run(FileOps& ops, RecoveryStore& recovery) const
{
    SaveResult result = Save(*this, ops, recovery).run();
    if (versions)
        versions->prune(QDateTime::currentDateTimeUtc());
    return result;
}

} // namespace quillory
