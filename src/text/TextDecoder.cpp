#include "text/TextDecoder.h"

#include "text/ByteLayout.h"
#include "text/ByteTable.h"
#include "text/Converter.h"
#include "text/NonLossyAscii.h"
#include "text/TextBuilder.h"
#include "text/Utf8.h"

#include <QtEndian>
#include <future>
#include <thread>

// Encodings in which ASCII stands for itself are decoded in two ways by turns: a run of ASCII that
// would fill a leaf is handed to the builder as it lies in the file, and what stands between such
// runs goes through a small buffer that is used again and again. Fresh memory, not work on the
// bytes, is what decoding a large file costs.

namespace quillory {

namespace {

constexpr qsizetype bufferUnits = 8192;

/// A run of ASCII from which on it is handed over as it lies.
constexpr qsizetype longRun = TextLeaf::minimumUnits;

/// Takes the text piece by piece.
class Assembly
{
public:
    Assembly(const ByteBuffer& bytes, ByteUse use) : m_bytes(bytes), m_use(use) {}

    void append(std::span<const char16_t> units)
    {
        m_builder.append(QStringView(units.data(), qsizetype(units.size())));
    }

    /// \a latin1 lies in the bytes given.
    void appendFromBytes(QByteArrayView latin1)
    {
        if (m_use == ByteUse::Shared)
            m_builder.appendShared(m_bytes, latin1);
        else
            m_builder.append(QLatin1StringView(latin1));
    }

    /// Moves the long run of ASCII that leads \a rest, if one does, to the text.
    void takeLongRun(QByteArrayView& rest)
    {
        if (rest.size() < longRun || asciiPrefixLength(rest.first(longRun)) < longRun)
            return;
        const qsizetype run = asciiPrefixLength(rest);
        appendFromBytes(rest.first(run));
        rest = rest.sliced(run);
    }

    std::span<char16_t> buffer() { return m_buffer; }
    TextBuilder& builder() { return m_builder; }

private:
    const ByteBuffer& m_bytes;
    ByteUse m_use;
    TextBuilder m_builder;
    std::vector<char16_t> m_buffer = std::vector<char16_t>(bufferUnits);
};

bool decodeUtf8Bytes(QByteArrayView rest, Assembly& text)
{
    while (!rest.isEmpty()) {
        text.takeLongRun(rest);
        const auto progress = decodeUtf8(rest, text.buffer().data(), bufferUnits, longRun);
        text.append(text.buffer().first(size_t(progress.written)));
        rest = rest.sliced(progress.read);
        if (!progress.valid)
            return false;
    }
    return true;
}

/// Less is decoded on the calling thread alone.
constexpr qsizetype shareForThread = qsizetype(8) << 20;

/// UTF-8 tells where its characters begin, so a long text is decoded in parts, one on each
/// processor; putting their trees together takes no time.
std::optional<TextSnapshot> decodeUtf8InParts(QByteArrayView bytes, const ByteBuffer& owner)
{
    const ByteUse use = bestUse(bytes);
    const auto decodePart = [&owner, use](QByteArrayView part) -> std::optional<TextSnapshot> {
        Assembly text(owner, use);
        return decodeUtf8Bytes(part, text) ? std::optional(text.builder().finish()) : std::nullopt;
    };
    const qsizetype processors = std::max(1U, std::thread::hardware_concurrency());
    const qsizetype count = std::clamp<qsizetype>(bytes.size() / shareForThread, 1, processors);
    std::vector<std::future<std::optional<TextSnapshot>>> parts;
    qsizetype begin = 0;
    for (qsizetype i = 1; i < count; ++i) {
        const qsizetype end =
            begin + wholeCharacters(bytes.sliced(begin, bytes.size() * i / count - begin),
                                    StringEncoding::utf8);
        parts.push_back(
            std::async(std::launch::async, decodePart, bytes.sliced(begin, end - begin)));
        begin = end;
    }
    const std::optional<TextSnapshot> last = decodePart(bytes.sliced(begin));
    TextSnapshot text;
    bool isValid = last.has_value();
    for (auto& part : parts) {
        const std::optional<TextSnapshot> decoded = part.get();
        isValid = isValid && decoded;
        if (isValid)
            text = text.replacing({text.length(), 0}, *decoded);
    }
    return isValid ? std::optional(text.replacing({text.length(), 0}, *last)) : std::nullopt;
}

bool decodeByteTable(QByteArrayView rest, const EncodingInfo& info, const ByteBuffer& bytes,
                     Assembly& text)
{
    if (info.encoding == StringEncoding::isoLatin1 || info.encoding == StringEncoding::ascii) {
        if (info.encoding == StringEncoding::ascii && asciiPrefixLength(rest) < rest.size())
            return false;
        text.builder().appendShared(bytes, rest);
        return true;
    }
    const ByteTable& table = ByteTable::of(info);
    while (!rest.isEmpty()) {
        text.takeLongRun(rest);
        const auto units = text.buffer().first(size_t(std::min(rest.size(), longRun)));
        bool valid = true;
        for (size_t i = 0; i < units.size(); ++i) {
            units[i] = table.unitFor(uchar(rest[qsizetype(i)]));
            valid &= units[i] != ByteTable::undefined;
        }
        if (!valid)
            return false;
        text.append(units);
        rest = rest.sliced(qsizetype(units.size()));
    }
    return true;
}

bool decodeWithConverter(QByteArrayView rest, const EncodingInfo& info, Assembly& text)
{
    Converter converter(info);
    const std::span<char16_t> room = text.buffer();
    for (bool isFull = false; !rest.isEmpty() || isFull;) {
        if (info.form == EncodingForm::multiByte && converter.isAtRest())
            text.takeLongRun(rest);
        const auto progress =
            converter.decode(rest.first(std::min(rest.size(), bufferUnits / 2)), room);
        if (!progress.valid)
            return false;
        text.append(room.first(size_t(progress.written)));
        isFull = progress.written == qsizetype(room.size());
        rest = rest.sliced(progress.read);
    }
    const auto progress = converter.finishDecoding(room);
    text.append(room.first(size_t(progress.written)));
    return progress.valid;
}

bool decodeUtf16(QByteArrayView rest, bool bigEndian, Assembly& text)
{
    if (rest.size() % 2 != 0)
        return false;
    while (!rest.isEmpty()) {
        const qsizetype units = std::min(rest.size() / 2, bufferUnits);
        if (bigEndian)
            qFromBigEndian<char16_t>(rest.data(), units, text.buffer().data());
        else
            qFromLittleEndian<char16_t>(rest.data(), units, text.buffer().data());
        text.append(text.buffer().first(size_t(units)));
        rest = rest.sliced(units * 2);
    }
    return true;
}

bool decodeUtf32(QByteArrayView rest, bool bigEndian, Assembly& text)
{
    if (rest.size() % 4 != 0)
        return false;
    while (!rest.isEmpty()) {
        const QByteArrayView piece = rest.first(std::min(rest.size(), bufferUnits * 2));
        char16_t* to = text.buffer().data();
        for (qsizetype i = 0; i < piece.size(); i += 4) {
            const char32_t character = bigEndian ? qFromBigEndian<char32_t>(piece.data() + i)
                                                 : qFromLittleEndian<char32_t>(piece.data() + i);
            if (character > QChar::LastValidCodePoint || QChar::isSurrogate(character))
                return false;
            for (const char16_t unit : QChar::fromUcs4(character))
                *to++ = unit;
        }
        text.append(text.buffer().first(size_t(to - text.buffer().data())));
        rest = rest.sliced(piece.size());
    }
    return true;
}

bool decodeInto(Assembly& text, QByteArrayView rest, const ByteBuffer& bytes,
                const EncodingInfo& info, const ByteLayout& layout)
{
    switch (info.form) {
    case EncodingForm::utf8:
        return decodeUtf8Bytes(rest, text);
    case EncodingForm::utf16:
        return decodeUtf16(rest, layout.bigEndian, text);
    case EncodingForm::utf32:
        return decodeUtf32(rest, layout.bigEndian, text);
    case EncodingForm::byteTable:
        return decodeByteTable(rest, info, bytes, text);
    case EncodingForm::nonLossyAscii:
        return decodeNonLossyAscii(rest, text.builder());
    case EncodingForm::multiByte:
    case EncodingForm::stateful:
        return decodeWithConverter(rest, info, text);
    }
    return false;
}

} // namespace

std::optional<TextSnapshot> decode(const ByteBuffer& bytes, StringEncoding encoding)
{
    const EncodingInfo* info = encodingInfo(encoding);
    if (!info)
        return std::nullopt;
    const ByteLayout layout = layoutOf(bytes.view(), encoding);
    const QByteArrayView rest = bytes.view().sliced(byteOrderMark(encoding, layout).size());
    if (info->form == EncodingForm::utf8)
        return decodeUtf8InParts(rest, bytes);
    Assembly text(bytes, bestUse(bytes.view()));
    return decodeInto(text, rest, bytes, *info, layout) ? std::optional(text.builder().finish())
                                                        : std::nullopt;
}

ByteUse bestUse(QByteArrayView bytes)
{
    constexpr qsizetype samples = 64;
    qsizetype ascii = 0;
    for (qsizetype i = 0; i < samples; ++i) {
        const QByteArrayView sample = bytes.sliced(bytes.size() / samples * i);
        ascii += asciiPrefixLength(sample.first(std::min(sample.size(), longRun))) ==
                 std::min(sample.size(), longRun);
    }
    // What is copied takes about a byte a character too; bytes that are kept for some of them only
    // take room for nothing.
    return ascii > samples * 15 / 16 ? ByteUse::Shared : ByteUse::Copied;
}

bool decodesInParts(StringEncoding encoding)
{
    const EncodingInfo* info = encodingInfo(encoding);
    return info && (info->form == EncodingForm::utf8 || info->form == EncodingForm::utf16 ||
                    info->form == EncodingForm::utf32 || info->form == EncodingForm::byteTable);
}

qsizetype wholeCharacters(QByteArrayView bytes, StringEncoding encoding)
{
    switch (encodingInfo(encoding)->form) {
    case EncodingForm::utf8: {
        // No lead byte in the last four: these are no UTF-8, wherever they are cut.
        const qsizetype least = std::max<qsizetype>(0, bytes.size() - 4);
        qsizetype lead = bytes.size();
        while (lead > least && (uchar(bytes[lead - 1]) & 0xC0) == 0x80)
            --lead;
        const bool cutsOff = lead > least && uchar(bytes[lead - 1]) >= 0xC0;
        return cutsOff ? lead - 1 : bytes.size();
    }
    case EncodingForm::utf16:
        return bytes.size() / 2 * 2;
    case EncodingForm::utf32:
        return bytes.size() / 4 * 4;
    default:
        return bytes.size();
    }
}

std::optional<TextSnapshot> decodePart(const ByteBuffer& owner, QByteArrayView part,
                                       StringEncoding encoding, const ByteLayout& layout,
                                       ByteUse use)
{
    Assembly text(owner, use);
    return decodeInto(text, part, owner, *encodingInfo(encoding), layout)
               ? std::optional(text.builder().finish())
               : std::nullopt;
}

} // namespace quillory
