#pragma once

#include "text/ByteBuffer.h"
#include "text/ByteLayout.h"
#include "text/StringEncoding.h"
#include "text/TextSnapshot.h"

#include <optional>

namespace quillory {

/// The text that \a bytes hold in \a encoding, without the byte-order mark where the encoding has
/// one (see layoutOf). Nothing when the encoding is not known or a byte sequence is malformed,
/// incomplete or unassigned; so nothing is ever dropped or replaced. In particular an odd number of
/// bytes is no UTF-16, and bytes that a code page leaves undefined are no text in it. Unpaired
/// surrogates in UTF-16 are kept; in UTF-8 and UTF-32 they are malformed.
///
/// Long stretches of ASCII, and ISO Latin 1 altogether, are not copied: the text refers to \a bytes
/// and keeps them alive. Unless nearly all is such stretches they are copied, so that the bytes
/// can go. Throws std::bad_alloc when there is no memory.
std::optional<TextSnapshot> decode(const ByteBuffer& bytes, StringEncoding encoding);

/// Whether a text refers to the bytes that it was decoded from, or copies them.
enum class ByteUse
{
    Shared, ///< where they are ASCII or ISO Latin 1
    Copied
};

/// What decode() finds best for \a bytes, by samples of a bounded number of them.
ByteUse bestUse(QByteArrayView bytes);

/// True for an encoding that can be decoded in parts, since nothing but the bytes of a character
/// tells what it is.
bool decodesInParts(StringEncoding encoding);

/// How many of the first of \a bytes are whole characters, as far as their end tells: all but a
/// few. For encodings that decode in parts.
qsizetype wholeCharacters(QByteArrayView bytes, StringEncoding encoding);

/// The text of \a part, which lies in \a owner behind any byte-order mark, begins and ends between
/// two characters and is in an encoding that decodes in parts. Texts of parts that follow each
/// other, put together, are what decode() answers. Strict as that is.
std::optional<TextSnapshot> decodePart(const ByteBuffer& owner, QByteArrayView part,
                                       StringEncoding encoding, const ByteLayout& layout,
                                       ByteUse use);

} // namespace quillory
