#include "text/ByteTable.h"

#include "text/Converter.h"

#include <map>
#include <mutex>
#include <numeric>

namespace quillory {

namespace {

/// The upper half of NEXTSTEP, from the mapping file that the Unicode Consortium publishes
/// (https://www.unicode.org/Public/MAPPINGS/VENDORS/NEXT/NEXTSTEP.TXT).
constexpr char16_t nextStepUpperHalf[] = u"\u00A0\u00C0\u00C1\u00C2\u00C3\u00C4\u00C5\u00C7\u00C8"
                                         u"\u00C9\u00CA\u00CB\u00CC\u00CD\u00CE\u00CF"
                                         u"\u00D0\u00D1\u00D2\u00D3\u00D4\u00D5\u00D6\u00D9\u00DA"
                                         u"\u00DB\u00DC\u00DD\u00DE\u00B5\u00D7\u00F7"
                                         u"\u00A9\u00A1\u00A2\u00A3\u2044\u00A5\u0192\u00A7\u00A4"
                                         u"\u2019\u201C\u00AB\u2039\u203A\uFB01\uFB02"
                                         u"\u00AE\u2013\u2020\u2021\u00B7\u00A6\u00B6\u2022\u201A"
                                         u"\u201E\u201D\u00BB\u2026\u2030\u00AC\u00BF"
                                         u"\u00B9\u02CB\u00B4\u02C6\u02DC\u00AF\u02D8\u02D9\u00A8"
                                         u"\u00B2\u02DA\u00B8\u00B3\u02DD\u02DB\u02C7"
                                         u"\u2014\u00B1\u00BC\u00BD\u00BE\u00E0\u00E1\u00E2\u00E3"
                                         u"\u00E4\u00E5\u00E7\u00E8\u00E9\u00EA\u00EB"
                                         u"\u00EC\u00C6\u00ED\u00AA\u00EE\u00EF\u00F0\u00F1\u0141"
                                         u"\u00D8\u0152\u00BA\u00F2\u00F3\u00F4\u00F5"
                                         u"\u00F6\u00E6\u00F9\u00FA\u00FB\u0131\u00FC\u00FD\u0142"
                                         u"\u00F8\u0153\u00DF\u00FE\u00FF\uFFFF\uFFFF";

/// Bytes for which ICU's table differs from the one that the Unicode Consortium publishes for the
/// code page (https://www.unicode.org/Public/MAPPINGS/VENDORS/MICSFT/).
struct Correction
{
    StringEncoding encoding;
    uchar byte;
    char16_t unit;
};

constexpr Correction corrections[] = {
    {StringEncoding(0x80000400), 0xE6, 0x00B5}, // IBM437: the micro sign, not the Greek letter
    {StringEncoding(0x80000412), 0xAA, 0x00AC}, // IBM852: the not sign
    {StringEncoding(13), 0xAA, ByteTable::undefined}, // windows-1253
};

std::array<char16_t, 256> unitsOfConverter(const EncodingInfo& info)
{
    std::array<char16_t, 256> units;
    Converter converter(info);
    const bool isWindows = QByteArrayView(info.ianaName).startsWith("windows-");
    for (int byte = 0; byte < 256; ++byte) {
        const char bytes[] = {char(byte)};
        char16_t unit = ByteTable::undefined;
        const auto progress = converter.decode(QByteArrayView(bytes, 1), {&unit, 1});
        // ICU fills the holes of the Windows code pages with C1 controls and private characters.
        const bool isFiller =
            isWindows && byte >= 0x80 &&
            ((unit >= 0x80 && unit <= 0x9F) || (unit >= 0xE000 && unit <= 0xF8FF));
        units[size_t(byte)] = progress.valid && !isFiller ? unit : ByteTable::undefined;
        converter.reset();
    }
    return units;
}

} // namespace

ByteTable::ByteTable(const EncodingInfo& info) : m_bytes(0x10000)
{
    if (info.encoding == StringEncoding::nextStep) {
        std::iota(m_units.begin(), m_units.begin() + 0x80, u'\0');
        std::copy_n(nextStepUpperHalf, 0x80, m_units.begin() + 0x80);
    } else {
        m_units = unitsOfConverter(info);
    }
    for (const Correction& correction : corrections) {
        if (correction.encoding == info.encoding)
            m_units[correction.byte] = correction.unit;
    }
    for (size_t byte = 0; byte < m_units.size(); ++byte) {
        if (m_units[byte] != undefined)
            m_bytes[m_units[byte]] = uchar(byte);
    }
}

const ByteTable& ByteTable::of(const EncodingInfo& info)
{
    static std::mutex mutex;
    static std::map<StringEncoding, ByteTable> tables;
    const std::lock_guard lock(mutex);
    const auto found = tables.find(info.encoding);
    return found != tables.end() ? found->second
                                 : tables.emplace(info.encoding, ByteTable(info)).first->second;
}

} // namespace quillory
