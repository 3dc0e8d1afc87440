#pragma once

#include "text/StringEncoding.h"

#include <QByteArrayView>

namespace quillory {

/// What an encoding's number does not say about a file's bytes, but writing them again must know.
struct ByteLayout
{
    bool hasMark = false;   ///< a byte-order mark leads
    bool bigEndian = false; ///< of UTF-16 and UTF-32
    bool operator==(const ByteLayout&) const = default;
};

/// False where the number says it all, so that only the standard layout occurs.
bool hasChoiceOfLayout(StringEncoding encoding);

/// The layout in which a new text is written: a mark and little-endian units for UTF-16 and
/// UTF-32, no mark for everything else.
ByteLayout standardLayout(StringEncoding encoding);

/// The layout in which \a bytes lie, given their encoding. UTF-16 and UTF-32 without a mark are
/// big-endian (RFC 2781, section 4.3). The numbers that name a byte order have no mark: U+FEFF at
/// their start is a character.
ByteLayout layoutOf(QByteArrayView bytes, StringEncoding encoding);

/// The bytes of the mark that leads in \a layout; empty without one.
QByteArrayView byteOrderMark(StringEncoding encoding, ByteLayout layout);

} // namespace quillory
