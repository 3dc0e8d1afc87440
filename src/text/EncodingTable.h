#pragma once

#include "text/StringEncoding.h"

#include <QString>
#include <span>

namespace quillory {

/// How an encoding's bytes become characters, and so which code converts them.
enum class EncodingForm
{
    utf8,
    utf16,
    utf32,
    byteTable,     ///< a character a byte, the lower half ASCII
    nonLossyAscii, ///< ASCII with escapes
    multiByte,     ///< a byte below 0x80 where a character begins is that ASCII character
    stateful,      ///< escape sequences change what a byte means
};

struct EncodingInfo
{
    StringEncoding encoding;
    quint32 attributeCode; ///< in a file's text-encoding attribute
    EncodingForm form;
    const char* ianaName;    ///< empty where the registry has none
    const char* converter;   ///< ICU's name; empty where the table or the code is our own
    const char* displayName; ///< English
};

/// Every encoding that can be decoded and encoded, Unicode first, then by region.
std::span<const EncodingInfo> knownEncodings();

/// Null for a number that is not known.
const EncodingInfo* encodingInfo(StringEncoding encoding);

/// Empty for a number that is not known.
QString displayName(StringEncoding encoding);

} // namespace quillory
