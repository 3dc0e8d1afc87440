#pragma once

#include "text/ByteBuffer.h"
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
/// and keeps them alive. Where such stretches are the smaller part they are copied, so that the
/// bytes can go. Throws std::bad_alloc when there is no memory.
std::optional<TextSnapshot> decode(const ByteBuffer& bytes, StringEncoding encoding);

} // namespace quillory
