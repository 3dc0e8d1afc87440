#include "view/LineSegments.h"

#include "view/ChunkCuts.h"
#include "view/DisplayText.h"

namespace quillory {

TextOffset LineSegment::offsetOf(int index) const
{
    if (index > preeditStart)
        index = std::max(preeditStart, index - preeditLength);
    return base + index;
}

LineSegments::LineSegments(const TextStorage& storage, const TextFont& font)
    : m_storage(storage), m_cache(font), m_longLines(font.advance())
{}

void LineSegments::setFont(const TextFont& font)
{
    m_last = {};
    m_cache.setFont(font);
    m_longLines.setUnitWidth(font.advance());
}

void LineSegments::setWrapWidth(double width)
{
    if (width == wrapWidth())
        return;
    m_last = {};
    m_cache.setWrapWidth(width);
    m_longLines.unsettle();
}

void LineSegments::followEdit(const TextChange& change)
{
    m_longLines.followEdit(change, text());
}

bool LineSegments::isRightToLeft(TextRange content)
{
    if (LongLines::isLong(content))
        return m_longLines.isRightToLeft(content, text());
    return wholeLine(content).layout->isRightToLeft();
}

LineSegment LineSegments::segment(TextRange range, const TextLayoutCache::Style& style)
{
    const bool known = m_last.text.isSameTree(text()) && m_last.segment.range == range &&
                       m_last.preedit == m_preedit && m_last.segment.layout;
    if (known)
        return m_last.segment;
    LineSegment result;
    QString shown = displayText(text(), range, font().hasControlPictures(), counters());
    if (!m_preedit.text.isEmpty() && m_preedit.offset >= range.location &&
        m_preedit.offset <= range.end()) {
        result.preeditStart = int(m_preedit.offset - range.location);
        result.preeditLength = int(m_preedit.text.size());
        shown.insert(result.preeditStart, m_preedit.text);
    }
    result.layout = m_cache.layout(shown, style);
    result.range = range;
    result.base = range.location;
    m_last = {text(), m_preedit, result};
    return result;
}

LineSegment LineSegments::wholeLine(TextRange content)
{
    LineSegment result = segment(content, {});
    if (!wraps() && result.layout->isRightToLeft())
        result.x = m_rightEdge - result.layout->rowWidth(0);
    return result;
}

void LineSegments::settleCut(TextRange content, LineChunks& chunks, size_t cut)
{
    const TextOffset before = content.location + chunks.placeOf(cut - 1).start;
    const TextOffset offset = content.location + chunks.placeOf(cut).start;
    chunks.settle(cut, unitsToCut(text(), TextRange::between(before, content.end()), offset));
}

LineSegment LineSegments::chunk(TextRange content, size_t index)
{
    LineChunks& chunks = m_longLines.chunks(content);
    const TextLayoutCache::Style style{isRightToLeft(content) ? Qt::RightToLeft : Qt::LeftToRight,
                                       true};
    const auto segmentNow = [&] {
        const TextOffset start = content.location + chunks.placeOf(index).start;
        return segment({start, chunks.lengthOf(index)}, style);
    };
    if (!chunks.isSettled(index))
        settleCut(content, chunks, index);
    if (!chunks.isSettled(index + 1)) {
        settleCut(content, chunks, index + 1);
        if (wraps()) {
            // The next chunk begins with the row that this one cannot fill, so that the seam does
            // not show.
            const LineSegment whole = segmentNow();
            const int lastRow = whole.layout->rowCount() - 1;
            const TextOffset rest = whole.layout->length() - whole.layout->rowStart(lastRow);
            if (whole.preeditLength == 0 && rest < whole.range.length / 2)
                chunks.settle(index + 1, rest);
        }
    }
    LineSegment result = segmentNow();
    if (wraps())
        return result;
    const double amount = chunks.setWidth(index, result.layout->rowWidth(0));
    result.x = leftOf(content, index);
    if (amount != 0)
        m_shifts.push_back({content.location, result.x, amount});
    return result;
}

size_t LineSegments::chunkAt(TextRange content, TextOffset offset)
{
    LineChunks& chunks = m_longLines.chunks(content);
    const TextOffset inLine = offset - content.location;
    const size_t index = chunks.placeAtOffset(inLine).index;
    chunk(content, index);
    // Settling a cut may have left the offset to a neighbour.
    return chunks.placeAtOffset(inLine).index;
}

double LineSegments::leftOf(TextRange content, size_t index)
{
    const LineChunks& chunks = m_longLines.chunks(content);
    const double x = chunks.placeOf(index).x;
    return isRightToLeft(content) ? m_rightEdge - x - chunks.widthOf(index) : x;
}

size_t LineSegments::chunkAtX(TextRange content, double x)
{
    const LineChunks& chunks = m_longLines.chunks(content);
    return chunks.placeAtX(isRightToLeft(content) ? m_rightEdge - x : x).index;
}

double LineSegments::takeShift(double left)
{
    double amount = 0;
    for (const Shift& shift : m_shifts) {
        if (shift.line == m_shifts.front().line && shift.x < left)
            amount += shift.amount;
    }
    m_shifts.clear();
    return amount;
}

} // namespace quillory
