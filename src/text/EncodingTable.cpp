#include "text/EncodingTable.h"

#include <algorithm>
#include <iterator>

namespace quillory {

namespace {

constexpr EncodingInfo table[] = {
    // clang-format off
    {StringEncoding::utf8, 0x8000100, EncodingForm::utf8, "utf-8", "", "Unicode (UTF-8)"},
    {StringEncoding::utf16, 0x100, EncodingForm::utf16, "utf-16", "", "Unicode (UTF-16)"},
    {StringEncoding::utf16BigEndian, 0x10000100, EncodingForm::utf16, "utf-16be", "", "Unicode (UTF-16BE)"},
    {StringEncoding::utf16LittleEndian, 0x14000100, EncodingForm::utf16, "utf-16le", "", "Unicode (UTF-16LE)"},
    {StringEncoding::utf32, 0xc000100, EncodingForm::utf32, "utf-32", "", "Unicode (UTF-32)"},
    {StringEncoding::utf32BigEndian, 0x18000100, EncodingForm::utf32, "utf-32be", "", "Unicode (UTF-32BE)"},
    {StringEncoding::utf32LittleEndian, 0x1c000100, EncodingForm::utf32, "utf-32le", "", "Unicode (UTF-32LE)"},
    {StringEncoding::utf7, 0x4000100, EncodingForm::stateful, "utf-7", "UTF-7", "Unicode (UTF-7)"},
    {StringEncoding::ascii, 0x600, EncodingForm::byteTable, "us-ascii", "US-ASCII", "Western (ASCII)"},
    {StringEncoding::isoLatin1, 0x201, EncodingForm::byteTable, "iso-8859-1", "ISO-8859-1", "Western (ISO Latin 1)"},
    {StringEncoding(0x8000020f), 0x20f, EncodingForm::byteTable, "iso-8859-15", "ISO-8859-15", "Western (ISO Latin 9)"},
    {StringEncoding::windowsLatin1, 0x500, EncodingForm::byteTable, "windows-1252", "windows-1252", "Western (Windows Latin 1)"},
    {StringEncoding(30), 0x0, EncodingForm::byteTable, "macintosh", "macintosh", "Western (Mac OS Roman)"},
    {StringEncoding::nextStep, 0xb01, EncodingForm::byteTable, "x-nextstep", "", "Western (NEXTSTEP)"},
    {StringEncoding(0x80000400), 0x400, EncodingForm::byteTable, "ibm437", "IBM437", "Latin-US (DOS)"},
    {StringEncoding(0x80000410), 0x410, EncodingForm::byteTable, "ibm850", "IBM850", "Western (DOS Latin 1)"},
    {StringEncoding(9), 0x202, EncodingForm::byteTable, "iso-8859-2", "ISO-8859-2", "Central European (ISO Latin 2)"},
    {StringEncoding(15), 0x501, EncodingForm::byteTable, "windows-1250", "windows-1250", "Central European (Windows Latin 2)"},
    {StringEncoding(0x8000001d), 0x1d, EncodingForm::byteTable, "x-mac-centraleurroman", "x-mac-centraleurroman", "Central European (Mac OS)"},
    {StringEncoding(0x80000412), 0x412, EncodingForm::byteTable, "ibm852", "IBM852", "Central European (DOS Latin 2)"},
    {StringEncoding(0x80000203), 0x203, EncodingForm::byteTable, "iso-8859-3", "ISO-8859-3", "Western (ISO Latin 3)"},
    {StringEncoding(0x80000204), 0x204, EncodingForm::byteTable, "iso-8859-4", "ISO-8859-4", "Central European (ISO Latin 4)"},
    {StringEncoding(0x8000020a), 0x20a, EncodingForm::byteTable, "iso-8859-10", "ISO-8859-10", "Nordic (ISO Latin 6)"},
    {StringEncoding(0x8000020d), 0x20d, EncodingForm::byteTable, "iso-8859-13", "ISO-8859-13", "Baltic (ISO Latin 7)"},
    {StringEncoding(0x8000020e), 0x20e, EncodingForm::byteTable, "iso-8859-14", "ISO-8859-14", "Celtic (ISO Latin 8)"},
    {StringEncoding(0x80000507), 0x507, EncodingForm::byteTable, "windows-1257", "windows-1257", "Baltic (Windows)"},
    {StringEncoding(11), 0x502, EncodingForm::byteTable, "windows-1251", "windows-1251", "Cyrillic (Windows)"},
    {StringEncoding(0x80000205), 0x205, EncodingForm::byteTable, "iso-8859-5", "ISO-8859-5", "Cyrillic (ISO 8859-5)"},
    {StringEncoding(0x80000a02), 0xa02, EncodingForm::byteTable, "koi8-r", "KOI8-R", "Cyrillic (KOI8-R)"},
    {StringEncoding(0x80000a08), 0xa08, EncodingForm::byteTable, "koi8-u", "KOI8-U", "Ukrainian (KOI8-U)"},
    {StringEncoding(0x80000007), 0x7, EncodingForm::byteTable, "x-mac-cyrillic", "x-mac-cyrillic", "Cyrillic (Mac OS)"},
    {StringEncoding(0x8000041b), 0x41b, EncodingForm::byteTable, "ibm866", "IBM866", "Russian (DOS)"},
    {StringEncoding(13), 0x503, EncodingForm::byteTable, "windows-1253", "windows-1253", "Greek (Windows)"},
    {StringEncoding(0x80000207), 0x207, EncodingForm::byteTable, "iso-8859-7", "ISO-8859-7", "Greek (ISO 8859-7)"},
    {StringEncoding(0x80000006), 0x6, EncodingForm::byteTable, "x-mac-greek", "x-mac-greek", "Greek (Mac OS)"},
    {StringEncoding(14), 0x504, EncodingForm::byteTable, "windows-1254", "windows-1254", "Turkish (Windows Latin 5)"},
    {StringEncoding(0x80000209), 0x209, EncodingForm::byteTable, "iso-8859-9", "ISO-8859-9", "Turkish (ISO Latin 5)"},
    {StringEncoding(0x80000023), 0x23, EncodingForm::byteTable, "x-mac-turkish", "x-mac-turkish", "Turkish (Mac OS)"},
    {StringEncoding(0x80000505), 0x505, EncodingForm::byteTable, "windows-1255", "windows-1255", "Hebrew (Windows)"},
    {StringEncoding(0x80000208), 0x208, EncodingForm::byteTable, "iso-8859-8", "ISO-8859-8", "Hebrew (ISO 8859-8)"},
    {StringEncoding(0x80000506), 0x506, EncodingForm::byteTable, "windows-1256", "windows-1256", "Arabic (Windows)"},
    {StringEncoding(0x80000206), 0x206, EncodingForm::byteTable, "iso-8859-6", "ISO-8859-6", "Arabic (ISO 8859-6)"},
    {StringEncoding(0x8000041d), 0x41d, EncodingForm::byteTable, "windows-874", "windows-874", "Thai (Windows, DOS)"},
    {StringEncoding(0x8000020b), 0x20b, EncodingForm::byteTable, "iso-8859-11", "iso-8859-11", "Thai (ISO 8859-11)"},
    {StringEncoding(0x80000508), 0x508, EncodingForm::byteTable, "windows-1258", "windows-1258", "Vietnamese (Windows)"},
    {StringEncoding::shiftJis, 0x420, EncodingForm::multiByte, "shift_jis", "Shift_JIS", "Japanese (Windows, DOS)"},
    {StringEncoding(0x80000a01), 0xa01, EncodingForm::multiByte, "shift_jis", "Shift_JIS", "Japanese (Shift JIS)"},
    {StringEncoding(3), 0x920, EncodingForm::multiByte, "euc-jp", "EUC-JP", "Japanese (EUC)"},
    {StringEncoding::iso2022Jp, 0x820, EncodingForm::stateful, "iso-2022-jp", "ISO-2022-JP", "Japanese (ISO 2022-JP)"},
    {StringEncoding(0x80000632), 0x632, EncodingForm::multiByte, "gb18030", "GB18030", "Chinese (GB 18030)"},
    {StringEncoding(0x80000631), 0x631, EncodingForm::multiByte, "gbk", "GBK", "Chinese (GBK)"},
    {StringEncoding(0x80000421), 0x421, EncodingForm::multiByte, "gbk", "GBK", "Simplified Chinese (Windows, DOS)"},
    {StringEncoding(0x80000930), 0x930, EncodingForm::multiByte, "gb2312", "GB2312", "Simplified Chinese (GB 2312)"},
    {StringEncoding::hz, 0xa05, EncodingForm::stateful, "hz-gb-2312", "HZ-GB-2312", "Simplified Chinese (HZ GB 2312)"},
    {StringEncoding(0x80000a03), 0xa03, EncodingForm::multiByte, "big5", "Big5", "Traditional Chinese (Big 5)"},
    {StringEncoding(0x80000a06), 0xa06, EncodingForm::multiByte, "big5-hkscs", "Big5-HKSCS", "Traditional Chinese (Big 5 HKSCS)"},
    {StringEncoding(0x80000940), 0x940, EncodingForm::multiByte, "euc-kr", "EUC-KR", "Korean (EUC)"},
    {StringEncoding(0x80000422), 0x422, EncodingForm::multiByte, "ks_c_5601-1987", "windows-949", "Korean (Windows, DOS)"},
    {StringEncoding::iso2022Kr, 0x840, EncodingForm::stateful, "iso-2022-kr", "ISO-2022-KR", "Korean (ISO 2022-KR)"},
    {StringEncoding::nonLossyAscii, 0xbff, EncodingForm::nonLossyAscii, "", "", "Non-lossy ASCII"},
    // clang-format on
};

} // namespace

std::span<const EncodingInfo> knownEncodings()
{
    return table;
}

const EncodingInfo* encodingInfo(StringEncoding encoding)
{
    const auto* info = std::find_if(std::begin(table), std::end(table),
                                    [&](const auto& row) { return row.encoding == encoding; });
    return info != std::end(table) ? info : nullptr;
}

QString displayName(StringEncoding encoding)
{
    const EncodingInfo* info = encodingInfo(encoding);
    return info ? QString::fromLatin1(info->displayName) : QString();
}

} // namespace quillory
