#include "document/JournalRecord.h"

#include <QCryptographicHash>
#include <QtEndian>
#include <algorithm>
#include <cstring>

namespace quillory {

namespace {

constexpr quint8 endMark = 0x80;
constexpr TextOffset contextLength = 32;
constexpr qsizetype editHead = 8 + 8 + 4 + 1;

JournalChecksum checksumOf(const JournalChecksum& last, QByteArrayView size, QByteArrayView payload)
{
    QCryptographicHash hash(QCryptographicHash::Blake2b_160);
    hash.addData(QByteArrayView(last.data(), qsizetype(last.size())));
    hash.addData(size);
    hash.addData(payload);
    JournalChecksum sum;
    std::memcpy(sum.data(), hash.result().constData(), sum.size());
    return sum;
}

template<class Number>
void appendNumber(QByteArray& target, Number number)
{
    const Number ordered = qToLittleEndian(number);
    target.append(reinterpret_cast<const char*>(&ordered), sizeof ordered);
}

} // namespace

void appendJournalRecord(QByteArray& target, JournalChecksum& last, JournalRecordKind kind,
                         bool endsBatch, QByteArrayView body)
{
    const qsizetype start = target.size();
    appendNumber(target, quint32(body.size() + 1));
    target.append(journalRecordHead - 4, '\0');
    target.append(char(quint8(kind) | (endsBatch ? endMark : 0)));
    target.append(body);
    const QByteArrayView record = QByteArrayView(target).sliced(start);
    last = checksumOf(last, record.first(4), record.sliced(journalRecordHead));
    std::memcpy(target.data() + start + 4, last.data(), last.size());
}

bool followsJournalRecord(QByteArrayView record, JournalChecksum& last)
{
    const JournalChecksum sum = checksumOf(last, record.first(4), record.sliced(journalRecordHead));
    if (std::memcmp(record.data() + 4, sum.data(), sum.size()) != 0)
        return false;
    last = sum;
    return true;
}

QByteArray JournalPiece::encoded() const
{
    const auto isNarrow = [](QChar unit) { return unit.unicode() < 0x100; };
    const bool narrow = std::all_of(inserted.begin(), inserted.end(), isNarrow);
    QByteArray body;
    body.reserve(editHead + inserted.size() * (narrow ? 1 : 2));
    appendNumber(body, qint64(replaced.location));
    appendNumber(body, qint64(replaced.length));
    appendNumber(body, context);
    body.append(narrow ? '\1' : '\2');
    if (narrow) {
        body.append(inserted.toLatin1());
    } else {
        for (const QChar unit : inserted)
            appendNumber(body, quint16(unit.unicode()));
    }
    return body;
}

std::optional<JournalPiece> JournalPiece::decoded(QByteArrayView body)
{
    if (body.size() < editHead)
        return std::nullopt;
    JournalPiece piece;
    piece.replaced.location = TextOffset(qFromLittleEndian<qint64>(body.data()));
    piece.replaced.length = TextOffset(qFromLittleEndian<qint64>(body.data() + 8));
    piece.context = qFromLittleEndian<quint32>(body.data() + 16);
    const char width = body[editHead - 1];
    const QByteArrayView units = body.sliced(editHead);
    if (piece.replaced.location < 0 || piece.replaced.length < 0 || (width != 1 && width != 2) ||
        units.size() % width != 0)
        return std::nullopt;
    if (width == 1) {
        piece.inserted = QString::fromLatin1(units);
    } else {
        piece.inserted.resize(units.size() / 2);
        for (qsizetype i = 0; i < piece.inserted.size(); ++i)
            piece.inserted[i] = QChar(qFromLittleEndian<quint16>(units.data() + 2 * i));
    }
    return piece;
}

// FNV-1a, of code units.
quint32 JournalPiece::contextOf(const TextSnapshot& text, TextOffset location)
{
    quint32 hash = 2166136261U;
    const TextOffset length = std::min(location, contextLength);
    for (const QChar unit : text.string({location - length, length}))
        hash = (hash ^ unit.unicode()) * 16777619U;
    return hash;
}

} // namespace quillory
