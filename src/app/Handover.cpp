#include "app/Handover.h"

#include <QDataStream>
#include <QFileInfo>
#include <QtEndian>

namespace quillory {

namespace {

constexpr quint32 longestRequest = 16 << 20; // bytes
constexpr auto streamVersion = QDataStream::Qt_6_0;
constexpr qsizetype lengthBytes = sizeof(quint32);

} // namespace

Handover handoverOf(const StartOptions& options)
{
    Handover handover{options.targets, options.waits, qgetenv("XDG_ACTIVATION_TOKEN")};
    for (OpenTarget& target : handover.targets)
        target.path = QFileInfo(target.path).absoluteFilePath();
    return handover;
}

QByteArray encode(const Handover& handover)
{
    QByteArray request;
    QDataStream stream(&request, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream << handover.waits << handover.activationToken << quint32(handover.targets.size());
    for (const OpenTarget& target : handover.targets) {
        const TextPlace place = target.place.value_or(TextPlace{0, 0});
        stream << target.path << place.line << place.column;
    }
    QByteArray length(lengthBytes, Qt::Uninitialized);
    qToBigEndian(quint32(request.size()), length.data());
    return length + request;
}

std::optional<Handover> decode(const QByteArray& bytes, bool& broken)
{
    broken = false;
    if (bytes.size() < lengthBytes)
        return std::nullopt;
    const auto length = qFromBigEndian<quint32>(bytes.constData());
    if (length > longestRequest)
        broken = true;
    if (broken || bytes.size() - lengthBytes < qsizetype(length))
        return std::nullopt;

    QDataStream stream(bytes.mid(lengthBytes, length));
    stream.setVersion(streamVersion);
    Handover handover;
    quint32 count = 0;
    stream >> handover.waits >> handover.activationToken >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        OpenTarget target;
        TextPlace place;
        stream >> target.path >> place.line >> place.column;
        if (place.line > 0 && place.column > 0)
            target.place = place;
        handover.targets.push_back(target);
    }
    if (stream.status() == QDataStream::Ok && stream.atEnd())
        return handover;
    broken = true;
    return std::nullopt;
}

} // namespace quillory
