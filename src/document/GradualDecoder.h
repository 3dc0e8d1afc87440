#pragma once

#include "text/ByteLayout.h"
#include "text/EncodingDetector.h"
#include "text/TextDecoder.h"

#include <deque>
#include <future>

namespace quillory {

/// Decodes bytes while more of them come, several parts at a time.
class GradualDecoder
{
public:
    /// Goes on behind \a text, which the first \a used bytes hold. Nothing is decoded when the
    /// encoding is none or does not decode in parts.
    GradualDecoder(StringEncoding encoding, const ByteLayout& layout, TextSnapshot text,
                   qsizetype used, ByteUse use);

    /// All of \a bytes are there now; at the end, there are no more. What is decoded is text(), or
    /// soon will be.
    void take(const ByteBuffer& bytes, bool atEnd);

    /// What is decoded so far; shorter than the bytes taken where they turned out to be no text in
    /// the encoding.
    const TextSnapshot& text() const { return m_text; }

    /// After the end: what all bytes say. Waits.
    KnownText finish();

private:
    void collect(size_t most);

    StringEncoding m_encoding;
    ByteLayout m_layout;
    ByteUse m_use;
    TextSnapshot m_text;
    qsizetype m_handedOut; ///< bytes
    bool m_valid = true;
    std::deque<std::future<std::optional<TextSnapshot>>> m_underway;
};

} // namespace quillory
