#include "text/TextEncoder.h"

#include "text/ByteTable.h"
#include "text/Converter.h"
#include "text/NonLossyAscii.h"
#include "text/TextReader.h"
#include "text/Utf8.h"

#include <QtEndian>
#include <array>

// Every encoder goes through the text leaf by leaf. A surrogate pair never straddles two leaves, so
// only the converters of ICU, which have a state, need to know what came before.

namespace quillory {

namespace {

/// The buffer before the sink.
class Output
{
public:
    explicit Output(const ByteSink& sink) : m_sink(sink) {}

    /// Room for \a bytes, at most half of the buffer, of which commit() keeps some.
    char* room(qsizetype bytes)
    {
        Q_ASSERT(bytes <= capacity / 2);
        if (m_used + bytes > capacity)
            flush();
        return m_buffer.data() + m_used;
    }

    void commit(const char* end) { m_used = end - m_buffer.data(); }

    void write(QByteArrayView bytes)
    {
        char* to = room(bytes.size());
        std::copy(bytes.begin(), bytes.end(), to);
        commit(to + bytes.size());
    }

    void dropLastByte() { --m_used; }

    void flush()
    {
        if (m_used > 0 && !m_refused)
            m_refused = !m_sink(QByteArrayView(m_buffer.data(), m_used));
        m_used = 0;
    }

    bool refused() const { return m_refused; }

private:
    static constexpr qsizetype capacity = qsizetype(64) << 10;

    const ByteSink& m_sink;
    std::vector<char> m_buffer = std::vector<char>(size_t(capacity));
    qsizetype m_used = 0;
    bool m_refused = false;
};

/// The units of a piece as 16-bit ones, in \a buffer where they are not.
QStringView wideUnits(const TextPiece& piece, std::vector<char16_t>& buffer)
{
    if (const auto* wide = std::get_if<QStringView>(&piece.units))
        return *wide;
    const QByteArrayView narrow = std::get<QLatin1StringView>(piece.units);
    buffer.resize(size_t(narrow.size()));
    widen(narrow, buffer.data());
    return {buffer.data(), narrow.size()};
}

bool isAscii(const TextPiece& piece)
{
    const auto* narrow = std::get_if<QLatin1StringView>(&piece.units);
    return narrow && asciiPrefixLength(*narrow) == narrow->size();
}

constexpr TextOffset whole = -1;

/// Encodes a text whose pieces do not depend on each other. \a encodePiece writes the units given
/// and answers the index of the first that does not fit, or \c whole. The result is an offset into
/// the text, or \c whole.
template<class EncodePiece>
TextOffset encodePieces(const TextSnapshot& text, bool asciiStaysAscii, Output& output,
                        EncodePiece&& encodePiece)
{
    TextOffset unencodable = whole;
    std::vector<char16_t> buffer;
    text.forEachPiece(text.range(), [&](const TextPiece& piece) -> bool {
        if (asciiStaysAscii && isAscii(piece)) {
            output.write(std::get<QLatin1StringView>(piece.units));
            return !output.refused();
        }
        const TextOffset index = encodePiece(wideUnits(piece, buffer));
        unencodable = index == whole ? whole : piece.location + index;
        return unencodable == whole && !output.refused();
    });
    return unencodable;
}

TextOffset encodeUtf8Text(const TextSnapshot& text, Output& output)
{
    return encodePieces(text, true, output, [&](QStringView units) -> TextOffset {
        char* to = output.room(units.size() * 3);
        const auto progress = encodeUtf8(units, to);
        output.commit(to + progress.written);
        return progress.valid ? whole : progress.read;
    });
}

TextOffset encodeUtf16(const TextSnapshot& text, bool bigEndian, Output& output)
{
    return encodePieces(text, false, output, [&](QStringView units) -> TextOffset {
        char* to = output.room(units.size() * 2);
        if (bigEndian)
            qToBigEndian<char16_t>(units.utf16(), units.size(), to);
        else
            qToLittleEndian<char16_t>(units.utf16(), units.size(), to);
        output.commit(to + units.size() * 2);
        return whole;
    });
}

TextOffset encodeUtf32(const TextSnapshot& text, bool bigEndian, Output& output)
{
    return encodePieces(text, false, output, [&](QStringView units) -> TextOffset {
        char* to = output.room(units.size() * 4);
        TextOffset unencodable = whole;
        for (qsizetype i = 0; i < units.size() && unencodable == whole; ++i, to += 4) {
            char32_t character = units[i].unicode();
            if (units[i].isHighSurrogate() && i + 1 < units.size() &&
                units[i + 1].isLowSurrogate()) {
                character = QChar::surrogateToUcs4(units[i], units[i + 1]);
                ++i;
            } else if (units[i].isSurrogate()) {
                unencodable = i;
            }
            if (bigEndian)
                qToBigEndian(character, to);
            else
                qToLittleEndian(character, to);
        }
        output.commit(to);
        return unencodable;
    });
}

TextOffset encodeByteTable(const TextSnapshot& text, const EncodingInfo& info, Output& output)
{
    const ByteTable& table = ByteTable::of(info);
    return encodePieces(text, true, output, [&](QStringView units) -> TextOffset {
        char* to = output.room(units.size());
        for (qsizetype i = 0; i < units.size(); ++i) {
            const int byte = table.byteFor(units[i].unicode());
            if (byte < 0)
                return i;
            to[i] = char(byte);
        }
        output.commit(to + units.size());
        return whole;
    });
}

TextOffset encodeNonLossyAsciiText(const TextSnapshot& text, Output& output)
{
    return encodePieces(text, false, output, [&](QStringView units) -> TextOffset {
        output.commit(
            encodeNonLossyAscii(units, output.room(units.size() * nonLossyAsciiBytesPerUnit)));
        return whole;
    });
}

TextOffset encodeWithConverter(const TextSnapshot& text, const EncodingInfo& info, Output& output)
{
    constexpr qsizetype roomBytes = 4096;
    Converter converter(info);
    TextOffset unencodable = whole;
    std::vector<char16_t> buffer;
    const auto encodeUnits = [&](QStringView units, TextOffset location, bool isLast) -> bool {
        for (bool isFull = true; isFull || !units.isEmpty();) {
            char* to = output.room(roomBytes);
            const auto progress = converter.encode(units, {to, size_t(roomBytes)}, isLast);
            if (!progress.valid) {
                unencodable = location + progress.read;
                return false;
            }
            output.commit(to + progress.written);
            isFull = progress.written == roomBytes;
            location += progress.read;
            units = units.sliced(progress.read);
        }
        return !output.refused();
    };
    // ICU begins HZ by leaving a shifted stretch that was not entered, and leaves the last one
    // open. A line break before and after the text, both taken away again, put that right.
    const bool isHz = info.encoding == StringEncoding::hz;
    std::array<char, 8> ignored;
    if (isHz)
        converter.encode(u"\n", ignored, false);
    text.forEachPiece(text.range(), [&](const TextPiece& piece) -> bool {
        if (info.form == EncodingForm::multiByte && converter.isAtRest() && isAscii(piece)) {
            output.write(std::get<QLatin1StringView>(piece.units));
            return !output.refused();
        }
        return encodeUnits(wideUnits(piece, buffer), piece.location, false);
    });
    if (unencodable == whole && !output.refused())
        encodeUnits(isHz ? u"\n" : u"", text.length(), true);
    if (isHz && unencodable == whole && !output.refused())
        output.dropLastByte();
    return unencodable;
}

/// True when no two byte sequences stand for the same text.
bool isOneToOne(EncodingForm form)
{
    switch (form) {
    case EncodingForm::utf8:
    case EncodingForm::utf16:
    case EncodingForm::utf32:
    case EncodingForm::byteTable:
        return true;
    case EncodingForm::nonLossyAscii:
    case EncodingForm::multiByte:
    case EncodingForm::stateful:
        return false;
    }
    return false;
}

} // namespace

std::optional<EncodingFailure> encode(const TextSnapshot& text, StringEncoding encoding,
                                      ByteLayout layout, const ByteSink& sink)
{
    const EncodingInfo* info = encodingInfo(encoding);
    if (!info)
        return EncodingFailure{};
    if (!hasChoiceOfLayout(encoding))
        layout = standardLayout(encoding);
    Output output(sink);
    output.write(byteOrderMark(encoding, layout));
    const TextOffset unencodable = [&] {
        switch (info->form) {
        case EncodingForm::utf8:
            return encodeUtf8Text(text, output);
        case EncodingForm::utf16:
            return encodeUtf16(text, layout.bigEndian, output);
        case EncodingForm::utf32:
            return encodeUtf32(text, layout.bigEndian, output);
        case EncodingForm::byteTable:
            return encodeByteTable(text, *info, output);
        case EncodingForm::nonLossyAscii:
            return encodeNonLossyAsciiText(text, output);
        case EncodingForm::multiByte:
        case EncodingForm::stateful:
            return encodeWithConverter(text, *info, output);
        }
        return whole;
    }();
    if (unencodable != whole)
        return EncodingFailure{EncodingFailure::Cause::unencodableCharacter, unencodable,
                               TextReader(text).codePointAt(unencodable)};
    output.flush();
    if (output.refused())
        return EncodingFailure{.cause = EncodingFailure::Cause::sinkRefused};
    return std::nullopt;
}

std::optional<QByteArray> encoded(const TextSnapshot& text, StringEncoding encoding)
{
    QByteArray bytes;
    const auto failure =
        encode(text, encoding, standardLayout(encoding), [&](QByteArrayView piece) {
            bytes.append(piece);
            return true;
        });
    return failure ? std::nullopt : std::optional(bytes);
}

std::optional<ByteCount> encodedSize(const TextSnapshot& text, StringEncoding encoding,
                                     ByteLayout layout)
{
    const EncodingInfo* info = encodingInfo(encoding);
    if (info && info->form == EncodingForm::utf16)
        return ByteCount(text.length() * 2 + byteOrderMark(encoding, layout).size());
    ByteCount size;
    const auto failure = encode(text, encoding, layout, [&](QByteArrayView piece) {
        size = size + piece.size();
        return true;
    });
    return failure ? std::nullopt : std::optional(size);
}

std::optional<EncodingFailure> findUnencodable(const TextSnapshot& text, StringEncoding encoding)
{
    return encode(text, encoding, standardLayout(encoding), [](QByteArrayView) { return true; });
}

bool encodesBack(const TextSnapshot& text, StringEncoding encoding, ByteLayout layout,
                 QByteArrayView bytes)
{
    const EncodingInfo* info = encodingInfo(encoding);
    if (!info)
        return false;
    if (isOneToOne(info->form) && layout == layoutOf(bytes, encoding))
        return true;
    const auto failure = encode(text, encoding, layout, [&](QByteArrayView piece) {
        if (!bytes.startsWith(piece))
            return false;
        bytes = bytes.sliced(piece.size());
        return true;
    });
    return !failure && bytes.isEmpty();
}

} // namespace quillory
