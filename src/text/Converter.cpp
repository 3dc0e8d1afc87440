#include "text/Converter.h"

#include <QVarLengthArray>
#include <algorithm>
#include <array>
#include <unicode/ucnv.h>

namespace quillory {

namespace {

// Leaving the error as it is stops the converter. ICU's own stopping callback is not used for
// encoding, since it drops characters that are ignorable for display, such as a soft hyphen.
void stopEncoding(const void*, UConverterFromUnicodeArgs*, const UChar*, int32_t, UChar32,
                  UConverterCallbackReason, UErrorCode*)
{}

void stopDecoding(const void*, UConverterToUnicodeArgs*, const char*, int32_t,
                  UConverterCallbackReason, UErrorCode*)
{}

constexpr char16_t wonSign = 0x20A9;

} // namespace

void Converter::Close::operator()(UConverter* converter) const
{
    ucnv_close(converter);
}

Converter::Converter(const EncodingInfo& info) : m_info(info)
{
    UErrorCode status = U_ZERO_ERROR;
    m_converter.reset(ucnv_open(info.converter, &status));
    if (U_FAILURE(status)) {
        m_converter.reset();
        return;
    }
    ucnv_setFallback(m_converter.get(), false);
    ucnv_setFromUCallBack(m_converter.get(), stopEncoding, nullptr, nullptr, nullptr, &status);
    ucnv_setToUCallBack(m_converter.get(), stopDecoding, nullptr, nullptr, nullptr, &status);

    char16_t unit = 0;
    if (decode(QByteArrayView("\x1A", 1), {&unit, 1}).valid && unit == 0x1C) {
        m_permutation = info.encoding == StringEncoding::iso2022Kr ? Permutation::controlsAndWon
                                                                   : Permutation::controls;
    }
    reset();
}

Converter::Progress Converter::decode(QByteArrayView bytes, std::span<char16_t> room)
{
    return decodeAsIs(bytes, room, false);
}

Converter::Progress Converter::finishDecoding(std::span<char16_t> room)
{
    // ICU lets UTF-7 and HZ end inside a character. There, one more byte is added, which gives
    // itself or nothing, unless something was open before it.
    const bool isUtf7 = m_info.encoding == StringEncoding::utf7;
    if (!isUtf7 && m_info.encoding != StringEncoding::hz)
        return decodeAsIs({}, room, true);
    const char probe = isUtf7 ? '-' : 'x';
    const Progress progress = decodeAsIs(QByteArrayView(&probe, 1), room, true);
    const bool isItself = progress.written == 1 && room[0] == char16_t(probe);
    return {0, 0, progress.valid && (progress.written == 0 || isItself)};
}

Converter::Progress Converter::decodeAsIs(QByteArrayView bytes, std::span<char16_t> room,
                                          bool isLast)
{
    if (!m_converter)
        return {0, 0, false};
    UErrorCode status = U_ZERO_ERROR;
    const char* at = bytes.data();
    char16_t* to = room.data();
    ucnv_toUnicode(m_converter.get(), &to, to + room.size(), &at, at + bytes.size(), nullptr,
                   isLast, &status);
    const auto written = room.first(size_t(to - room.data()));
    if (m_permutation != Permutation::none)
        std::transform(written.begin(), written.end(), written.begin(),
                       [this](char16_t unit) { return toText(unit); });
    return {at - bytes.data(), to - room.data(),
            U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR};
}

Converter::Progress Converter::encode(QStringView units, std::span<char> room, bool isLast)
{
    const qsizetype length = lengthThatComesBack(units);
    if (!m_converter || (length == 0 && !units.isEmpty()))
        return {0, 0, false};
    return encodeAsIs(units.first(length), room, isLast && length == units.size());
}

Converter::Progress Converter::encodeAsIs(QStringView units, std::span<char> room, bool isLast)
{
    QVarLengthArray<char16_t, 4096> permuted;
    if (m_permutation != Permutation::none) {
        permuted.resize(units.size());
        std::transform(units.utf16(), units.utf16() + units.size(), permuted.begin(),
                       [this](char16_t unit) { return toTable(unit); });
        units = permuted;
    }
    UErrorCode status = U_ZERO_ERROR;
    const char16_t* at = units.utf16();
    char* to = room.data();
    ucnv_fromUnicode(m_converter.get(), &to, to + room.size(), &at, at + units.size(), nullptr,
                     isLast, &status);
    Progress progress{at - units.utf16(), to - room.data(),
                      U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR};
    if (!progress.valid) {
        UChar offending[U16_MAX_LENGTH];
        int8_t count = U16_MAX_LENGTH;
        UErrorCode ignored = U_ZERO_ERROR;
        ucnv_getInvalidUChars(m_converter.get(), offending, &count, &ignored);
        progress.read -= count;
    }
    return progress;
}

/// False for a character that would be read back as another one, or not at all.
bool Converter::comesBack(QStringView character)
{
    if (!m_probe)
        m_probe = std::make_unique<Converter>(m_info);
    m_probe->reset();
    std::array<char, 32> bytes;
    const Progress there = m_probe->encodeAsIs(character, bytes, true);
    m_probe->reset();
    std::array<char16_t, 32> units;
    const Progress back =
        m_probe->decodeAsIs(QByteArrayView(bytes.data(), there.written), units, true);
    return there.valid && back.valid && QStringView(units.data(), back.written) == character;
}

/// The length before the first character that does not come back. ICU approximates characters for
/// private use even where it is told not to, and no others.
qsizetype Converter::lengthThatComesBack(QStringView units)
{
    for (qsizetype i = 0; i < units.size(); ++i) {
        const char16_t unit = units[i].unicode();
        const bool isPrivate = unit >= 0xE000 && unit <= 0xF8FF;
        const bool beginsPrivate = unit >= 0xDB80 && unit <= 0xDBFF && i + 1 < units.size();
        if ((isPrivate || beginsPrivate) && !comesBack(units.sliced(i, isPrivate ? 1 : 2)))
            return i;
    }
    return units.size();
}

bool Converter::isAtRest() const
{
    UErrorCode status = U_ZERO_ERROR;
    return m_converter && ucnv_toUCountPending(m_converter.get(), &status) == 0 &&
           ucnv_fromUCountPending(m_converter.get(), &status) == 0;
}

void Converter::reset()
{
    if (m_converter)
        ucnv_reset(m_converter.get());
}

char16_t Converter::toText(char16_t unit) const
{
    switch (unit) {
    case 0x1C:
        return 0x1A;
    case 0x7F:
        return 0x1C;
    case 0x1A:
        return 0x7F;
    case wonSign:
        return m_permutation == Permutation::controlsAndWon ? u'\\' : unit;
    default:
        return unit;
    }
}

char16_t Converter::toTable(char16_t unit) const
{
    switch (unit) {
    case 0x1A:
        return 0x1C;
    case 0x1C:
        return 0x7F;
    case 0x7F:
        return 0x1A;
    case u'\\':
        return m_permutation == Permutation::controlsAndWon ? wonSign : unit;
    case wonSign:
        // The won sign itself can not be encoded: a noncharacter stands for it, and stops there.
        return m_permutation == Permutation::controlsAndWon ? char16_t(0xFFFF) : unit;
    default:
        return unit;
    }
}

} // namespace quillory
