#pragma once

#include <QtGlobal>

namespace quillory {

/// A string encoding by its number, as documents, archives and the list of encodings store it. Any
/// number may occur; those that this program converts are in knownEncodings(). Numbers from
/// 0x80000000 on are that bit and the code that a file's text-encoding attribute uses.
enum class StringEncoding : quint32
{
    none = 0, ///< no encoding known
    ascii = 1,
    nextStep = 2,
    utf8 = 4,
    isoLatin1 = 5,
    nonLossyAscii = 7,
    shiftJis = 8, ///< code page 932
    utf16 = 10,   ///< with a byte-order mark
    windowsLatin1 = 12,
    iso2022Jp = 21,
    utf7 = 0x84000100,
    utf32 = 0x8c000100, ///< with a byte-order mark
    utf16BigEndian = 0x90000100,
    utf16LittleEndian = 0x94000100,
    utf32BigEndian = 0x98000100,
    utf32LittleEndian = 0x9c000100,
    iso2022Kr = 0x80000840,
    hz = 0x80000a05,
};

} // namespace quillory
