#pragma once

#include "text/ByteBuffer.h"
#include "text/ByteLayout.h"
#include "text/TextSnapshot.h"

#include <optional>

namespace quillory {

/// What the bytes of a file were found to be.
struct DetectedText
{
    StringEncoding encoding = StringEncoding::none; ///< none: the bytes are no text
    ByteLayout layout;
    TextSnapshot text; ///< decoded from all of the bytes; empty where they are no text

    bool isText() const { return encoding != StringEncoding::none; }
};

/// What all of some bytes say in one encoding, where that was found out before.
struct KnownText
{
    StringEncoding encoding = StringEncoding::none; ///< none: nothing is known
    std::optional<TextSnapshot> text;               ///< nothing: they do not decode
};

/// Finds the encoding of a file's bytes, and decodes them. The first of these that decodes all of
/// them without fault decides:
///
///  1. \a textEncodingAttribute, the file's own record of its encoding (see encodingForAttribute);
///     where the bytes contradict it, another program has written them since
///  2. a byte-order mark
///  3. UTF-16 without a mark, where zero bytes show it beyond doubt
///  4. complete escape sequences of ISO-2022-JP, ISO-2022-KR or HZ
///  5. UTF-8, and so ASCII
///  6. a name declared in the first kilobyte, as XML, HTML and many editors write it
///  7. the encodings in which samples are the most plausible (EncodingRanking)
///  8. Windows Latin 1, then ISO Latin 1
///
/// From step 6 on, bytes with zero bytes or many control characters are taken for no text.
/// \a known spares decoding in its encoding; the answer is the same.
DetectedText detectEncoding(const ByteBuffer& bytes, QByteArrayView textEncodingAttribute = {},
                            const KnownText& known = {});

/// How many of the first of \a bytes to look at when they are the beginning of a longer text, so
/// that no character is cut in two in whatever encoding they are. Where no place tells, more or
/// less all of them.
qsizetype uncutBeginning(QByteArrayView bytes, QByteArrayView textEncodingAttribute = {});

} // namespace quillory
