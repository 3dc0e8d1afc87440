#pragma once

#include "text/TextSnapshot.h"

#include <utility>

namespace quillory {

/// Where the lines of a text start, as a list: 0, then the place after each line break, that at the
/// text's end included. The text's own tree answers, so making the list costs O(1) and looking
/// something up O(log n), however many lines there are.
class LineIndices
{
public:
    explicit LineIndices(TextSnapshot text) : m_text(std::move(text)) {}

    /// At least 1.
    qsizetype count() const { return m_text.lineCount(); }
    /// In UTF-16 code units; \a line is below count().
    TextOffset operator[](qsizetype line) const { return m_text.lineStart(LineIndex(line)); }

    /// The line, counted from 0, that holds the character at \a index; an index outside the text
    /// counts as the nearest in it.
    LineIndex lineNumberForCharacterIndex(TextOffset index) const
    {
        return m_text.lineAt(std::clamp<TextOffset>(index, 0, m_text.length()));
    }

private:
    TextSnapshot m_text;
};

} // namespace quillory
