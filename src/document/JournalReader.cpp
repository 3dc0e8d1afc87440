#include "document/JournalReader.h"

#include "text/TextBuilder.h"

#include <QtEndian>
#include <limits>

namespace quillory {

namespace {

constexpr quint8 endMark = 0x80;

/// One record as it stands in a journal.
struct FoundRecord
{
    JournalRecordKind kind;
    bool endsBatch;
    QByteArrayView body;
    JournalEnd end;
};

JournalReader::Bytes bytesOfFile(FileOps& ops, int descriptor)
{
    return [&ops, descriptor](char* target, qint64 size, qint64 offset) {
        const auto read = ops.read(descriptor, target, size, offset);
        return read ? *read : -1;
    };
}

/// Exactly \a size bytes at \a offset; false when there are fewer.
bool readAll(const JournalReader::Bytes& bytes, char* target, qint64 size, qint64 offset)
{
    for (qint64 done = 0; done < size;) {
        const qint64 count = bytes(target + done, size - done, offset + done);
        if (count <= 0)
            return false;
        done += count;
    }
    return true;
}

bool isEdit(const FoundRecord& record)
{
    return record.kind == JournalRecordKind::Edit;
}

} // namespace

JournalReader::JournalReader(Bytes bytes) : m_bytes(std::move(bytes))
{
    check();
}

JournalReader::JournalReader(FileOps& ops, int descriptor)
    : JournalReader(bytesOfFile(ops, descriptor))
{}

/// True when the records end where the bytes do, or \a visit had enough.
template<class Visit>
bool JournalReader::forEachRecord(qint64 end, Visit&& visit) const
{
    std::array<char, journalMagic.size()> magic;
    if (!readAll(m_bytes, magic.data(), magic.size(), 0) ||
        QByteArrayView(magic.data(), magic.size()) != journalMagic)
        return false;
    FoundRecord found{};
    found.end.offset = journalMagic.size();
    QByteArray record;
    while (found.end.offset < end) {
        record.resize(journalRecordHead);
        char probe = 0;
        if (const qint64 count = m_bytes(&probe, 1, found.end.offset); count <= 0)
            return count == 0;
        if (!readAll(m_bytes, record.data(), record.size(), found.end.offset))
            return false;
        const quint32 size = qFromLittleEndian<quint32>(record.constData());
        if (size < 1 || size > quint32(largestJournalPayload))
            return false;
        record.resize(journalRecordHead + qsizetype(size));
        if (!readAll(m_bytes, record.data() + journalRecordHead, size,
                     found.end.offset + journalRecordHead) ||
            !followsJournalRecord(record, found.end.checksum))
            return false;
        const quint8 first = quint8(record.at(journalRecordHead));
        found.kind = JournalRecordKind(first & ~endMark);
        found.endsBatch = (first & endMark) != 0;
        found.body = QByteArrayView(record).sliced(journalRecordHead + 1);
        found.end.offset += record.size();
        if (!visit(found))
            return true;
    }
    return true;
}

void JournalReader::check()
{
    JournalForm form;
    const bool isWhole =
        forEachRecord(std::numeric_limits<qint64>::max(), [&](const FoundRecord& found) {
            const QByteArray map = QByteArray::fromRawData(found.body.data(), found.body.size());
            const bool isFirst = found.end.offset ==
                                 qint64(journalMagic.size()) + journalRecordHead + 1 + map.size();
            if (isFirst != (found.kind == JournalRecordKind::Start))
                return false;
            if (isFirst) {
                m_start = decodedStart(map);
                form = m_start.form;
            } else if (found.kind == JournalRecordKind::Form) {
                form = decodedForm(map);
            } else if (!isEdit(found) || !JournalPiece::decoded(found.body)) {
                return false;
            }
            if (found.endsBatch) {
                if (!m_isReadable)
                    m_firstBatchEnd = found.end.offset;
                m_isReadable = true;
                m_form = form;
                m_end = found.end;
            }
            return true;
        });
    char probe = 0;
    m_isCut = !isWhole || m_bytes(&probe, 1, m_end.offset) != 0;
}

std::optional<JournalReader::Replay> JournalReader::replay(const TextSnapshot& base) const
{
    Replay replay;
    if (!m_start.holdsText) {
        if (base.length() != m_start.length)
            return std::nullopt;
        replay.base = replay.text = base;
    }
    bool fits = true;
    const bool isWhole = forEachRecord(m_end.offset, [&](const FoundRecord& found) {
        if (isEdit(found)) {
            const JournalPiece piece = *JournalPiece::decoded(found.body);
            const TextRange replaced = piece.replaced;
            fits = replaced.location <= replay.text.length() &&
                   replaced.length <= replay.text.length() - replaced.location &&
                   piece.context == JournalPiece::contextOf(replay.text, replaced.location);
            if (fits)
                replay.text = replay.text.replacing(replaced, TextSnapshot(piece.inserted));
        }
        if (found.end.offset == m_firstBatchEnd)
            replay.base = replay.text;
        return fits;
    });
    return isWhole && fits ? std::optional(replay) : std::nullopt;
}

TextSnapshot JournalReader::pieces() const
{
    TextBuilder builder;
    TextOffset last = -1;
    forEachRecord(m_end.offset, [&](const FoundRecord& found) {
        if (!isEdit(found) || found.end.offset <= m_firstBatchEnd)
            return true;
        const JournalPiece piece = *JournalPiece::decoded(found.body);
        if (piece.inserted.isEmpty())
            return true;
        if (last >= 0 && piece.replaced.location != last)
            builder.append(QLatin1StringView("\n"));
        builder.append(QStringView(piece.inserted));
        last = piece.replaced.location + piece.inserted.size();
        return true;
    });
    return builder.finish();
}

} // namespace quillory
