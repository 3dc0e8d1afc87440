#pragma once

#include "text/StringEncoding.h"

#include <QByteArray>
#include <QByteArrayView>

namespace quillory {

// What bytes tell of their encoding without being decoded. Each looks at a bounded part of them,
// however many they are.

/// UTF-16 in the byte order in which at least a third of the units have a zero byte, all of them at
/// the same end; otherwise none.
StringEncoding utf16WithZeroBytes(QByteArrayView bytes);

/// UTF-16 in the byte order that gives nothing but assigned characters, some below U+0100, and no
/// control characters but those of text. Takes no account of what else the bytes might be.
StringEncoding utf16WithoutFault(QByteArrayView bytes);

/// The encoding whose escape sequences the first of \a bytes contain, while being ASCII; or none.
StringEncoding escapeEncoding(QByteArrayView bytes);

/// True for zero bytes, and for more control characters than text has.
bool lookLikeBinary(QByteArrayView bytes);

/// The encoding that \a bytes themselves declare near their beginning; or none.
StringEncoding declaredEncoding(QByteArrayView bytes);

/// The beginning of \a bytes, and lines with bytes above 0x7F from all over them; all of them where
/// they are few. Lines are whole where they are not too long, since no multi-byte encoding has a
/// line break inside a character.
QByteArray sampleOf(QByteArrayView bytes);

} // namespace quillory
