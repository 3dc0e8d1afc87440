#pragma once

#include <QByteArrayView>
#include <QStringView>

namespace quillory {

/// How many of the first bytes are ASCII.
qsizetype asciiPrefixLength(QByteArrayView bytes);

/// Writes \a latin1, a code unit each, to \a units, which has room for all of them.
void widen(QByteArrayView latin1, char16_t* units);

/// What a step of decoding or encoding read and wrote.
struct Utf8Progress
{
    qsizetype read = 0;
    qsizetype written = 0;
    bool valid = true; ///< false: what follows those read is no character
};

/// Decodes characters from the beginning of \a bytes to \a units, at most \a room (at least 2) code
/// units, and stops early at a stretch of \a longAscii ASCII bytes. Only well-formed sequences are
/// taken (Unicode 15, table 3-7): no overlong form, no surrogate, nothing above U+10FFFF.
Utf8Progress decodeUtf8(QByteArrayView bytes, char16_t* units, qsizetype room, qsizetype longAscii);

/// Encodes \a units to \a bytes, which has room for three times as many; stops at an unpaired
/// surrogate.
Utf8Progress encodeUtf8(QStringView units, char* bytes);

} // namespace quillory
