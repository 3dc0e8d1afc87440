#include "document/TECConverter.h"

#include "text/TextDecoder.h"

#include <array>

namespace quillory {

namespace {

constexpr size_t chunkBytes = 256;

} // namespace

std::optional<TECConverter> TECConverter::initWithEncoding(StringEncoding from, StringEncoding to)
{
    const EncodingInfo* source = encodingInfo(from);
    const EncodingInfo* target = encodingInfo(to);
    if (!source || !target || !StreamDecoder::canDecode(*source))
        return std::nullopt;
    return TECConverter(*source, *target);
}

std::optional<TECConverter> TECConverter::initWithEncoding(StringEncoding from)
{
    return initWithEncoding(from, StringEncoding::utf16);
}

QByteArray TECConverter::convert(QByteArrayView bytes)
{
    std::array<char16_t, chunkBytes / 2> units;
    std::array<char, chunkBytes> chunk;
    m_decoder.reset();
    QByteArray result = m_encoder.begin().toByteArray();
    bool isValid = true;
    const auto encode = [&](qsizetype count) {
        QStringView rest(units.data(), count);
        while (isValid && !rest.isEmpty()) {
            const auto progress = m_encoder.encode(rest, chunk);
            result.append(chunk.data(), progress.written);
            isValid = progress.valid;
            if (isValid)
                rest = rest.sliced(progress.read);
        }
    };
    for (bool isFull = false; isValid && (!bytes.isEmpty() || isFull);) {
        const auto progress = m_decoder.decode(bytes, units);
        bytes = bytes.sliced(progress.read);
        isFull = progress.written == qsizetype(units.size());
        encode(progress.written);
        isValid = isValid && progress.valid;
    }
    if (isValid)
        encode(m_decoder.finish(units).written);
    result.append(chunk.data(), m_encoder.finish(chunk).written);
    return result;
}

QString TECConverter::convertToString(QByteArrayView bytes)
{
    const auto text = decode(ByteBuffer(convert(bytes)), m_to);
    return text ? text->string() : QString();
}

} // namespace quillory
