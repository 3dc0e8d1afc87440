#include "document/RecoveryHeader.h"

#include <QCborMap>
#include <QCborValue>
#include <QCryptographicHash>
#include <QtEndian>

namespace quillory {

namespace {

constexpr QByteArrayView magic("QlryRec1");
constexpr qint64 prefixSize = 8 + 4;
constexpr qint64 digestSize = 20;
constexpr qint64 largestHeader = qint64(1) << 16; ///< a path has 4096 bytes at most

namespace key {
constexpr QLatin1StringView path("path");
constexpr QLatin1StringView encoding("encoding");
constexpr QLatin1StringView lbFormat("lbFormat");
constexpr QLatin1StringView time("time"); // milliseconds since 1970, UTC
constexpr QLatin1StringView size("size");
constexpr QLatin1StringView digest("digest");
} // namespace key

QByteArray digestOf(QByteArrayView bytes)
{
    QCryptographicHash hash(QCryptographicHash::Blake2b_160);
    hash.addData(bytes);
    return hash.result();
}

/// Up to \a size bytes from the start of the file.
QByteArray startOf(FileOps& ops, int descriptor, qint64 size)
{
    QByteArray start;
    (void)bytesOf(ops, descriptor)([&](QByteArrayView piece) {
        start.append(piece.first(std::min<qsizetype>(piece.size(), size - start.size())));
        return start.size() < size;
    });
    return start;
}

} // namespace

QByteArray RecoveryHeader::encoded() const
{
    QCborMap map;
    map.insert(key::path, entry.path);
    map.insert(key::encoding, qint64(entry.encoding));
    map.insert(key::lbFormat, entry.lbFormat);
    map.insert(key::time, entry.time.toMSecsSinceEpoch());
    map.insert(key::size, bytes.size);
    map.insert(key::digest, bytes.digest);
    const QByteArray cbor = map.toCborValue().toCbor();

    QByteArray header = magic.toByteArray();
    header.resize(prefixSize);
    qToLittleEndian(quint32(cbor.size()), header.data() + magic.size());
    header += cbor;
    return header + digestOf(header);
}

FileResult<RecoveryHeader> RecoveryHeader::read(FileOps& ops, int descriptor)
{
    auto damaged = FileResult<RecoveryHeader>::failed(EBADMSG);
    const QByteArray start = startOf(ops, descriptor, prefixSize + largestHeader + digestSize);
    if (start.size() < prefixSize + digestSize || !start.startsWith(magic))
        return damaged;
    const qint64 checked =
        prefixSize + qFromLittleEndian<quint32>(start.constData() + magic.size());
    if (start.size() < checked + digestSize ||
        digestOf(QByteArrayView(start).first(checked)) != start.mid(checked, digestSize))
        return damaged;
    const QCborMap map = QCborValue::fromCbor(start.mid(prefixSize, checked - prefixSize)).toMap();

    RecoveryHeader header;
    header.entry.path = map.value(key::path).toString();
    header.entry.encoding = StringEncoding(map.value(key::encoding).toInteger());
    header.entry.lbFormat = int(map.value(key::lbFormat).toInteger());
    header.entry.time = QDateTime::fromMSecsSinceEpoch(map.value(key::time).toInteger(), Qt::UTC);
    header.bytes.size = map.value(key::size).toInteger();
    header.bytes.digest = map.value(key::digest).toByteArray();
    header.sizeOnDisk = checked + digestSize;
    return header;
}

} // namespace quillory
