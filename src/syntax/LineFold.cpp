#include "syntax/LineFold.h"

#include "text/TextSearch.h"

namespace quillory {

void LineFold::addLines(TextOffset end)
{
    if (end > m_lineStart)
        m_table = m_table.followedBy(tableOfLines(m_text, TextRange::between(m_lineStart, end)));
    m_lineStart = end;
}

void LineFold::add(const TextNodePointer& node)
{
    const TextMetrics& metrics = node->metrics;
    if (metrics.breaks > 0) {
        const TextOffset second = m_at + TextSnapshot(node).lineStart(LineIndex(1));
        if (!m_isInLine)
            addLines(second);
        m_isInLine = false;
        m_table = m_table.followedBy(tableOf(node));
        m_lineStart = m_at + metrics.units - metrics.lastLine;
    }
    m_at += metrics.units;
}

void LineFold::addUpTo(const TextNodePointer& node, TextOffset end)
{
    if (m_at + node->metrics.units <= end) {
        add(node);
        return;
    }
    if (node->height == 0) {
        addLines(end);
        m_at = end;
        return;
    }
    const auto& branch = static_cast<const TextBranch&>(*node);
    for (int i = 0; i < branch.count && m_at < end; ++i)
        addUpTo(branch.children[size_t(i)], end);
}

SpanTable LineFold::tableOf(const TextNodePointer& node) const
{
    if (const auto known = node->notes.answer(m_lines.key()))
        return SpanTable(*known);
    SpanTable table;
    if (node->height == 0) {
        table = tableOfLeaf(node);
    } else {
        const auto& branch = static_cast<const TextBranch&>(*node);
        LineFold fold(m_lines, TextSnapshot(node), false);
        for (int i = 0; i < branch.count; ++i)
            fold.add(branch.children[size_t(i)]);
        table = fold.table();
    }
    node->notes.add(m_lines.key(), table.value());
    return table;
}

SpanTable LineFold::tableOfLeaf(const TextNodePointer& leaf) const
{
    const TextSnapshot text(leaf);
    return tableOfLines(text, TextRange::between(text.lineStart(LineIndex(1)),
                                                 leaf->metrics.units - leaf->metrics.lastLine));
}

/// \a lines of \a text. Where they are long, that they hold no delimiter is known at once.
SpanTable LineFold::tableOfLines(const TextSnapshot& text, TextRange lines) const
{
    const auto isThere = [&](const QString& needle) { return find(text, needle, lines) >= 0; };
    if (!m_lines.hasWaitingStates() && !std::ranges::any_of(m_lines.needles(), isThere))
        return {};
    const QString units = text.string(lines);
    return m_lines.table({reinterpret_cast<const char16_t*>(units.utf16()), size_t(units.size())});
}

} // namespace quillory
