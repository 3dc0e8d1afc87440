#include "text/StreamEncoder.h"

#include "text/NonLossyAscii.h"
#include "text/StreamDecoder.h"

#include <algorithm>
#include <array>

namespace quillory {

namespace {

/// What the mark leads is encoded in the byte order that it tells.
StringEncoding behindMark(StringEncoding encoding)
{
    switch (encoding) {
    case StringEncoding::utf16:
        return StringEncoding::utf16LittleEndian;
    case StringEncoding::utf32:
        return StringEncoding::utf32LittleEndian;
    default:
        return encoding;
    }
}

} // namespace

StreamEncoder::StreamEncoder(const EncodingInfo& info) : m_encoding(info.encoding)
{
    if (info.form == EncodingForm::byteTable)
        m_table = &ByteTable::of(info);
    else if (info.form != EncodingForm::nonLossyAscii)
        m_converter.emplace(streamingInfo(*encodingInfo(behindMark(info.encoding))));
}

QByteArrayView StreamEncoder::begin()
{
    if (m_converter)
        m_converter->reset();
    // ICU begins HZ by leaving a shifted stretch that was not entered, and leaves the last one
    // open. A line break before and after the text, both taken away again, put that right.
    if (m_encoding == StringEncoding::hz) {
        std::array<char, 8> ignored;
        m_converter->encode(u"\n", ignored, false);
    }
    return byteOrderMark(m_encoding, standardLayout(m_encoding));
}

Converter::Progress StreamEncoder::encode(QStringView units, std::span<char> room)
{
    if (m_converter)
        return m_converter->encode(units, room, false);
    if (!m_table) {
        const QStringView fitting =
            units.first(std::min(units.size(), qsizetype(room.size()) / nonLossyAsciiBytesPerUnit));
        return {fitting.size(), encodeNonLossyAscii(fitting, room.data()) - room.data(), true};
    }
    const qsizetype most = std::min(units.size(), qsizetype(room.size()));
    for (qsizetype i = 0; i < most; ++i) {
        const int byte = m_table->byteFor(units[i].unicode());
        if (byte < 0)
            return {i, i, false};
        room[size_t(i)] = char(byte);
    }
    return {most, most, true};
}

Converter::Progress StreamEncoder::finish(std::span<char> room)
{
    if (!m_converter)
        return {};
    if (m_encoding != StringEncoding::hz)
        return m_converter->encode({}, room, true);
    Converter::Progress progress = m_converter->encode(u"\n", room, true);
    --progress.written;
    return progress;
}

} // namespace quillory
