#include "editing/CommentToggle.h"

#include "text/TextReader.h"
#include "text/TextUnits.h"

namespace quillory {

namespace {

class Toggle
{
public:
    Toggle(const TextSnapshot& text, const QString& marker)
        : m_original(text), m_marker(marker), m_markerText(marker), m_reader(text)
    {}

    void toggle(TextRange selected)
    {
        TextOffset start = std::max<TextOffset>(0, selected.location + m_madeShift);
        if (text().lineAt(start).value() < m_nextLine.value()) {
            makeEdits();
            start = std::max(selected.location + m_madeShift, text().lineStart(m_nextLine - 1));
        }
        const TextRange range =
            TextRange::between(start, std::max(start, selected.end() + m_madeShift));
        const LineIndex first = text().lineAt(range.location);
        const LineIndex last = range.isEmpty() ? first : text().lineAt(range.end() - 1);
        const TextOffset firstStart = text().lineStart(first);
        const TextOffset newStart = firstStart + m_shift - m_madeShift;
        const bool removes =
            standsAt(range.location) || standsAt(firstStart) || standsAt(afterBlanks(firstStart));
        for (LineIndex line = first; line.value() <= last.value(); ++line)
            toggleLine(text().lineStart(line), removes);
        m_nextLine = last + 1;
        const TextOffset newEnd = std::max(newStart, selected.end() + m_shift);
        m_result.ranges.push_back(TextRange::between(newStart, newEnd));
    }

    BlockEdit finish()
    {
        if (!text().isSameTree(m_original)) {
            makeEdits();
            const TextOffset last = m_original.length() - (text().length() - m_last);
            m_result.edits = {wholeEdit(m_original, text(), m_first, last)};
        }
        return std::move(m_result);
    }

private:
    const TextSnapshot& text() const { return m_reader.text(); }

    /// From here on the text is the one with the edits so far.
    void makeEdits()
    {
        if (m_result.edits.empty())
            return;
        const TextOffset growth = m_shift - m_madeShift;
        const TextOffset last = m_result.edits.back().range.end() + growth;
        m_first = std::min(m_first, m_result.edits.front().range.location);
        m_last = std::max(m_last + growth, last);
        m_reader = TextReader(text().replacing(m_result.edits));
        m_result.edits.clear();
        m_madeShift = m_shift;
    }

    TextOffset afterBlanks(TextOffset offset)
    {
        while (offset < text().length() && isSpaceOrTab(m_reader.at(offset)))
            ++offset;
        return offset;
    }

    bool standsAt(TextOffset offset)
    {
        if (offset + m_marker.size() > text().length())
            return false;
        for (const QChar unit : m_marker) {
            if (QChar(m_reader.at(offset++)).toCaseFolded() != unit.toCaseFolded())
                return false;
        }
        return true;
    }

    void toggleLine(TextOffset start, bool removes)
    {
        // A marker may hold a line break, and then reach into the next line.
        if (!m_result.edits.empty() && start < m_result.edits.back().range.end())
            return;
        if (!removes) {
            m_result.edits.push_back({{start, 0}, m_markerText});
            m_shift += m_marker.size();
        } else if (const TextOffset place = afterBlanks(start); standsAt(place)) {
            m_result.edits.push_back({{place, m_marker.size()}, TextSnapshot()});
            m_shift -= m_marker.size();
        }
    }

    TextSnapshot m_original;
    QString m_marker;
    TextSnapshot m_markerText;
    TextReader m_reader; ///< of the text with the edits made so far
    BlockEdit m_result;  ///< edits of that text, which are still to be made
    TextOffset m_shift = 0;
    TextOffset m_madeShift = 0; ///< the part of it that the text has
    TextOffset m_first = std::numeric_limits<TextOffset>::max(); ///< where the made edits begin
    TextOffset m_last = 0; ///< and where they end, in the text with them
    LineIndex m_nextLine;  ///< behind those that ranges were in
};

} // namespace

BlockEdit commentToggled(const TextSnapshot& text, std::span<const TextRange> ranges,
                         const QString& marker)
{
    Toggle toggle(text, marker);
    for (const TextRange range : ranges)
        toggle.toggle(range);
    return toggle.finish();
}

} // namespace quillory
