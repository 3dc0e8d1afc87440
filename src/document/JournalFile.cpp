#include "document/JournalFile.h"

#include "document/FileTransfer.h"
#include "document/RecoveryStore.h"
#include "document/TemporaryFile.h"

#include <QFile>
#include <fcntl.h>

namespace quillory {

namespace {

constexpr mode_t fileMode = 0600;
constexpr qsizetype bufferSize = 1 << 20; ///< bytes
constexpr QLatin1StringView extension(".journal");

/// Puts the records of a batch one after the other, and knows which is the last.
class BatchEncoder
{
public:
    BatchEncoder(const JournalBatch& batch, JournalChecksum& last) : m_batch(batch), m_last(last)
    {
        m_records = batch.form ? 1 : 0;
        for (const JournalBatch::Edit& edit : batch.edits)
            m_records += piecesOf(edit);
    }

    /// Calls \a take with some records at a time; ends with what that answers when it is false.
    template<class Take>
    FileStatus encode(Take&& take)
    {
        if (m_batch.start)
            put(JournalRecordKind::Start, encoded(*m_batch.start),
                m_records == 0 || m_batch.start->length == 0);
        if (m_batch.form)
            put(JournalRecordKind::Form, encoded(*m_batch.form), --m_records == 0);
        for (const JournalBatch::Edit& edit : m_batch.edits) {
            for (TextOffset done = 0, pieces = piecesOf(edit); pieces > 0; --pieces) {
                put(JournalRecordKind::Edit, piece(edit, done).encoded(), --m_records == 0);
                done += longestJournalPiece;
                if (m_bytes.size() < bufferSize)
                    continue;
                const FileStatus taken = take(std::exchange(m_bytes, QByteArray()));
                if (!taken)
                    return taken;
            }
        }
        return take(m_bytes);
    }

private:
    static qsizetype piecesOf(const JournalBatch::Edit& edit)
    {
        return std::max<qsizetype>(1, (edit.change.insertedLength + longestJournalPiece - 1) /
                                          longestJournalPiece);
    }

    static JournalPiece piece(const JournalBatch::Edit& edit, TextOffset done)
    {
        const TextRange replaced = edit.change.replaced;
        JournalPiece piece;
        piece.replaced = {replaced.location + done, done == 0 ? replaced.length : 0};
        piece.context = JournalPiece::contextOf(edit.text, piece.replaced.location);
        piece.inserted =
            edit.text.string({piece.replaced.location,
                              std::min(edit.change.insertedLength - done, longestJournalPiece)});
        return piece;
    }

    void put(JournalRecordKind kind, const QByteArray& body, bool endsBatch)
    {
        appendJournalRecord(m_bytes, m_last, kind, endsBatch, body);
    }

    const JournalBatch& m_batch;
    JournalChecksum& m_last;
    qsizetype m_records = 0; ///< still to come, after the start
    QByteArray m_bytes;
};

FileStatus writeAll(FileOps& ops, int descriptor, QByteArrayView bytes, qint64& offset)
{
    while (!bytes.isEmpty()) {
        const auto written = ops.write(descriptor, bytes.data(), bytes.size(), offset);
        if (!written)
            return FileStatus::failed(written.error());
        if (*written == 0)
            return FileStatus::failed(EIO);
        bytes = bytes.sliced(*written);
        offset += *written;
    }
    return Nothing();
}

} // namespace

TextOffset JournalBatch::length() const
{
    TextOffset sum = 0;
    for (const Edit& edit : edits)
        sum += edit.change.insertedLength;
    return sum;
}

JournalFile::JournalFile(FileOps& ops, RecoveryStore& store, QString id)
    : m_ops(ops), m_store(store), m_id(std::move(id))
{}

JournalFile::JournalFile(FileOps& ops, RecoveryStore& store, QString id, FileHandle file,
                         JournalEnd end)
    : m_ops(ops), m_store(store), m_id(std::move(id)), m_file(std::move(file)), m_end(end),
      m_hasRest(true)
{}

QString JournalFile::nameOf(const QString& id)
{
    return id + extension;
}

QByteArray JournalFile::pathOf(const RecoveryStore& store, const QString& id)
{
    return QFile::encodeName(store.folder()) + '/' + QFile::encodeName(nameOf(id));
}

QStringList JournalFile::idsIn(FileOps& ops, const RecoveryStore& store)
{
    QStringList ids;
    const auto names = ops.names(QFile::encodeName(store.folder()));
    for (const QByteArray& encoded : *names) {
        const QString name = QFile::decodeName(encoded);
        if (!name.startsWith(u'.') && name.endsWith(extension))
            ids.append(name.chopped(extension.size()));
    }
    ids.sort();
    return ids;
}

FileResult<FileHandle> JournalFile::openLocked(FileOps& ops, const RecoveryStore& store,
                                               const QString& id)
{
    const auto failed = [](int error) { return FileResult<FileHandle>::failed(error); };
    if (id.isEmpty() || id.contains(u'/'))
        return failed(ENOENT);
    auto file = FileHandle::open(ops, pathOf(store, id), O_RDWR | O_NOFOLLOW);
    if (!file)
        return file;
    const FileStatus locked = ops.lock(file->descriptor());
    if (!locked)
        return failed(locked.error());
    // Who wrote it may have removed it just before the lock was free.
    const auto status = ops.status(file->descriptor());
    if (!status || status->st_nlink == 0)
        return failed(status ? ENOENT : status.error());
    return file;
}

FileStatus JournalFile::append(const JournalBatch& batch, const std::atomic_bool& abandoned)
{
    if (!isMade())
        return make(batch, abandoned);
    if (m_hasRest) {
        const FileStatus cut = m_ops.truncate(m_file.descriptor(), m_end.offset);
        if (!cut)
            return cut;
        m_hasRest = false;
    }
    JournalEnd end = m_end;
    const FileStatus done = write(m_file.descriptor(), batch, end, abandoned);
    if (done)
        m_end = end;
    else
        m_hasRest = true;
    return done;
}

FileStatus JournalFile::write(int descriptor, const JournalBatch& batch, JournalEnd& end,
                              const std::atomic_bool& abandoned)
{
    BatchEncoder encoder(batch, end.checksum);
    return encoder.encode([&](const QByteArray& bytes) {
        return abandoned ? FileStatus::failed(ECANCELED)
                         : writeAll(m_ops, descriptor, bytes, end.offset);
    });
}

/// The name comes last, so that nobody ever finds one without a lock or a beginning.
FileStatus JournalFile::make(const JournalBatch& batch, const std::atomic_bool& abandoned)
{
    const FileStatus folder = m_store.makeFolder();
    if (!folder)
        return folder;
    auto file = TemporaryFile::in(m_ops, QFile::encodeName(m_store.folder()), fileMode);
    if (!file)
        return FileStatus::failed(file.error());
    JournalEnd end;
    FileStatus done = m_ops.lock(file->descriptor());
    if (done)
        done = writeAll(m_ops, file->descriptor(), journalMagic, end.offset);
    if (done)
        done = write(file->descriptor(), batch, end, abandoned);
    if (done)
        done = file->publish(pathOf(m_store, m_id), FileOps::Replacing::No);
    if (!done)
        return done;
    m_file = file->takeFile();
    m_end = end;
    return Nothing();
}

FileStatus JournalFile::sync()
{
    FileStatus done = m_ops.sync(m_file.descriptor());
    if (done && !m_isNameLasting) {
        done = m_store.prepareFolder();
        if (done)
            done = syncFolder(m_ops, QFile::encodeName(m_store.folder()));
        m_isNameLasting = bool(done);
    }
    return done;
}

void JournalFile::remove()
{
    if (isMade())
        (void)m_ops.remove(pathOf(m_store, m_id));
}

} // namespace quillory
