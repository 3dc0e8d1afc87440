#include "text/StreamDecoder.h"

#include <algorithm>
#include <iterator>

namespace quillory {

namespace {

constexpr char16_t byteOrderMarkUnit = 0xFEFF;

} // namespace

const EncodingInfo& streamingInfo(const EncodingInfo& info)
{
    using enum StringEncoding;
    static constexpr EncodingInfo unicodeForms[] = {
        {utf8, 0, EncodingForm::utf8, "", "UTF-8", ""},
        {utf16, 0, EncodingForm::utf16, "", "UTF-16", ""},
        {utf16BigEndian, 0, EncodingForm::utf16, "", "UTF-16BE", ""},
        {utf16LittleEndian, 0, EncodingForm::utf16, "", "UTF-16LE", ""},
        {utf32, 0, EncodingForm::utf32, "", "UTF-32", ""},
        {utf32BigEndian, 0, EncodingForm::utf32, "", "UTF-32BE", ""},
        {utf32LittleEndian, 0, EncodingForm::utf32, "", "UTF-32LE", ""},
    };
    const auto* form =
        std::find_if(std::begin(unicodeForms), std::end(unicodeForms),
                     [&](const EncodingInfo& each) { return each.encoding == info.encoding; });
    return form != std::end(unicodeForms) ? *form : info;
}

bool StreamDecoder::canDecode(const EncodingInfo& info)
{
    return info.form != EncodingForm::nonLossyAscii;
}

StreamDecoder::StreamDecoder(const EncodingInfo& info) : m_info(info)
{
    if (info.form == EncodingForm::byteTable)
        m_table = &ByteTable::of(info);
    else
        m_converter.emplace(streamingInfo(info));
}

Converter::Progress StreamDecoder::decode(QByteArrayView bytes, std::span<char16_t> room)
{
    if (m_table) {
        const auto most = std::min(bytes.size(), qsizetype(room.size()));
        for (qsizetype i = 0; i < most; ++i) {
            room[size_t(i)] = m_table->unitFor(uchar(bytes[i]));
            if (room[size_t(i)] == ByteTable::undefined)
                return {i + 1, i, false};
        }
        return {most, most, true};
    }
    const bool wasAtRest = m_converter->isAtRest();
    Converter::Progress progress = m_converter->decode(bytes, room);
    // Not to come to a halt, whatever ICU makes of a byte.
    if (!progress.valid && progress.read == 0 && wasAtRest && !bytes.isEmpty())
        progress.read = 1;
    if (m_atStart && progress.written > 0) {
        m_atStart = false;
        if (m_info.encoding == StringEncoding::utf8 && room[0] == byteOrderMarkUnit) {
            std::copy(room.begin() + 1, room.begin() + progress.written, room.begin());
            --progress.written;
        }
    }
    return progress;
}

Converter::Progress StreamDecoder::finish(std::span<char16_t> room)
{
    return m_converter ? m_converter->finishDecoding(room) : Converter::Progress();
}

void StreamDecoder::reset()
{
    if (m_converter)
        m_converter->reset();
    m_atStart = true;
}

} // namespace quillory
