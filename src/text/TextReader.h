#pragma once

#include "text/TextSnapshot.h"

namespace quillory {

/// Reads single code units of a text in any order; near the last one read it costs O(1).
class TextReader
{
public:
    explicit TextReader(TextSnapshot text) : m_text(std::move(text)), m_pieces(m_text.root().data())
    {}

    TextOffset length() const { return m_text.length(); }
    const TextSnapshot& text() const { return m_text; }

    /// The code unit at \a offset, which must lie inside the text.
    char16_t at(TextOffset offset)
    {
        if (offset < m_start || offset >= m_end)
            load(offset);
        const TextOffset index = offset - m_start;
        return m_wide ? m_wide[index] : char16_t(m_narrow[index]);
    }

    /// The code point that begins at \a offset; an unpaired surrogate is answered as it stands.
    char32_t codePointAt(TextOffset offset);

    /// The code point that ends before \a offset (> 0).
    char32_t codePointBefore(TextOffset offset);

private:
    void load(TextOffset offset);

    TextSnapshot m_text;
    TextPieces m_pieces;
    const char16_t* m_wide = nullptr;
    const uchar* m_narrow = nullptr;
    TextOffset m_start = 0;
    TextOffset m_end = 0;
};

} // namespace quillory
