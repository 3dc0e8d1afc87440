#pragma once

#include "syntax/SpanLines.h"
#include "text/TextSnapshot.h"

namespace quillory {

/// What the lines of a text, one node of its tree after the other, make of the spans before them.
/// Lines that reach over several nodes are put together here; what whole lines inside a node come
/// to is remembered with the node.
class LineFold
{
public:
    /// \a beginsLine: \a text begins where a line does; else the line that it begins in is left
    /// out, as the one that it ends in always is.
    LineFold(const SpanLines& lines, TextSnapshot text, bool beginsLine)
        : m_lines(lines), m_text(std::move(text)), m_isInLine(!beginsLine)
    {}

    /// \a node, which comes next.
    void add(const TextNodePointer& node);

    /// The nodes below \a node up to \a end, the start of a line.
    void addUpTo(const TextNodePointer& node, TextOffset end);

    SpanTable table() const { return m_table; }

private:
    SpanTable tableOf(const TextNodePointer& node) const;
    SpanTable tableOfLeaf(const TextNodePointer& leaf) const;
    SpanTable tableOfLines(const TextSnapshot& text, TextRange lines) const;
    void addLines(TextOffset end);

    const SpanLines& m_lines;
    TextSnapshot m_text;
    SpanTable m_table;
    TextOffset m_at = 0;        ///< where the next node begins
    TextOffset m_lineStart = 0; ///< of the line that m_at lies in
    bool m_isInLine;            ///< which began before the text
};

} // namespace quillory
