#pragma once

#include <QByteArrayView>
#include <QStringView>

namespace quillory {

class TextBuilder;

// Non-lossy ASCII: ASCII stands for itself but for the backslash, which is doubled; U+0080 to
// U+00FF are a backslash and three octal digits, and every other UTF-16 code unit is \u and four
// hexadecimal digits. Any sequence of code units, unpaired surrogates too, can be written.

/// Adds the text that \a bytes hold; false when they hold a byte above 0x7F or another escape.
bool decodeNonLossyAscii(QByteArrayView bytes, TextBuilder& text);

/// The most bytes that a code unit takes.
constexpr qsizetype nonLossyAsciiBytesPerUnit = 6;

/// Writes \a units to \a bytes, which has room, and answers where it stopped.
char* encodeNonLossyAscii(QStringView units, char* bytes);

} // namespace quillory
