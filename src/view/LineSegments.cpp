#include "view/LineSegments.h"

#include "text/TextReader.h"
#include "view/ChunkCuts.h"
#include "view/DisplayText.h"

#include <cmath>

namespace quillory {

namespace {
// So many chunks above the one that is jumped to get full rows at once.
constexpr size_t chainLength = 6;
} // namespace

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

/// \a range: of the line with this \a content. Composed text where two pieces meet stands in the
/// later one.
LineSegment LineSegments::segment(TextRange range, TextRange content,
                                  const TextLayoutCache::Style& style)
{
    const bool known = m_last.text.isSameTree(text()) && m_last.segment.range == range &&
                       m_last.preedit == m_preedit && m_last.style == style &&
                       m_last.segment.layout;
    if (known)
        return m_last.segment;
    LineSegment result;
    QString shown = displayText(text(), range, font(), counters());
    const bool holdsEnd = range.end() == content.end();
    if (!m_preedit.text.isEmpty() && m_preedit.offset >= range.location &&
        m_preedit.offset < range.end() + (holdsEnd ? 1 : 0)) {
        result.preeditStart = int(m_preedit.offset - range.location);
        result.preeditLength = int(m_preedit.text.size());
        shown.insert(result.preeditStart, m_preedit.text);
    }
    result.layout = m_cache.layout(shown, style);
    result.range = range;
    result.base = range.location;
    m_last = {text(), m_preedit, style, result};
    return result;
}

LineSegment LineSegments::wholeLine(TextRange content)
{
    LineSegment result = segment(content, content, {});
    if (!wraps() && result.layout->isRightToLeft())
        result.x = m_rightEdge - result.layout->rowWidth(0);
    return result;
}

void LineSegments::settleCut(TextRange content, LineChunks& chunks, size_t cut)
{
    chunks.restoreCut(cut);
    const TextOffset before = content.location + chunks.placeOf(cut - 1).start;
    const TextOffset offset = content.location + chunks.placeOf(cut).start;
    chunks.settle(cut, unitsToCut(text(), TextRange::between(before, content.end()), offset));
}

TextRange LineSegments::rangeOf(TextRange content, const LineChunks& chunks, size_t index) const
{
    return {content.location + chunks.placeOf(index).start, chunks.lengthOf(index)};
}

LineSegment LineSegments::chunk(TextRange content, size_t index)
{
    LineChunks& chunks = m_longLines.chunks(content);
    if (wraps())
        return wrappedChunk(content, chunks, index);
    for (const size_t cut : {index, index + 1}) {
        if (!chunks.isSettled(cut))
            settleCut(content, chunks, cut);
    }
    TextLayoutCache::Style style = chunkStyle(content);
    style.tabPhase = tabPhase(content, chunks, index);
    LineSegment result = segment(rangeOf(content, chunks, index), content, style);
    const double amount = chunks.setWidth(index, result.layout->rowWidth(0));
    result.x = leftOf(content, index);
    if (amount != 0 && style.direction == Qt::LeftToRight)
        m_shifts.push_back({content.location, result.x, amount});
    return result;
}

TextLayoutCache::Style LineSegments::chunkStyle(TextRange content)
{
    return {isRightToLeft(content) ? Qt::RightToLeft : Qt::LeftToRight, true};
}

/// Tab stops count from the line's start. How far a chunk begins behind one follows from what
/// stands between it and the last tab before it, wherever both are; only where no tab is near it
/// takes the chunk's place in the line, which is exact once all chunks before were laid out.
double LineSegments::tabPhase(TextRange content, const LineChunks& chunks, size_t index)
{
    const TextRange range = rangeOf(content, chunks, index);
    TextReader reader(text());
    TextOffset tab = range.location;
    while (tab < range.end() && reader.at(tab) != u'\t')
        ++tab;
    if (index == 0 || tab == range.end())
        return 0;
    TextOffset start = range.location;
    const TextOffset limit = std::max(content.location, start - LineChunks::longLine);
    while (start > limit && reader.at(start - 1) != u'\t')
        --start;
    double x = chunks.placeOf(index).x;
    if (start > limit || limit == content.location) {
        const QString shown =
            displayText(text(), TextRange::between(start, range.location), font(), counters());
        x = shown.isEmpty() ? 0 : m_cache.layout(shown, chunkStyle(content))->rowWidth(0);
    }
    return std::fmod(x, font().tabDistance());
}

// Wrapped chunks

/// Where the row begins that holds \a offset, when all from \a start on is laid out in one go.
TextOffset LineSegments::rowStartAt(TextRange content, TextOffset start, TextOffset offset)
{
    const auto ahead = TextOffset(2 * wrapWidth() / font().advance()) + 16;
    const TextOffset end = std::min(content.end(), offset + ahead);
    const QString shown = displayText(text(), TextRange::between(start, end), font(), counters());
    const LineLayout layout = m_cache.passingLayout(shown, chunkStyle(content));
    return start + layout.rowStart(layout.rowOf(int(offset - start)));
}

/// Ends chunk \a index with a full row, so that the seam does not show.
void LineSegments::endWithFullRow(TextRange content, LineChunks& chunks, size_t index)
{
    chunks.restoreCut(index + 1);
    const TextRange range = rangeOf(content, chunks, index);
    const QString shown = displayText(text(), range, font(), counters());
    const TextOffset rest = range.length - m_cache.layoutOfFullRows(shown, chunkStyle(content));
    chunks.settle(index + 1,
                  rest > 0 ? rest
                           : unitsToCut(text(), TextRange::between(range.location, content.end()),
                                        range.end()));
}

/// Where the reader came from below, the chunk after is in sight and stays as it is; so a start is
/// sought from which the rows fill up to it. False when none was found.
bool LineSegments::beginForFullRows(TextRange content, LineChunks& chunks, size_t index)
{
    constexpr int tries = 8;
    const TextRange range = rangeOf(content, chunks, index);
    TextOffset start = range.location;
    for (int i = 0; i < tries && start < range.location + range.length / 2; ++i) {
        const TextOffset missing = range.end() - rowStartAt(content, start, range.end());
        if (missing == 0) {
            chunks.settle(index, range.location - start);
            return true;
        }
        const TextRange rest = TextRange::between(start, content.end());
        const TextOffset next = start + missing - unitsToCut(text(), rest, start + missing);
        start = next > start ? next : start + missing;
    }
    return false;
}

/// Rows follow from where the row before ends, and so in the end from the line's start, which may
/// be far away. In its place serves a cut some chunks further up; the next seam that may show a row
/// that is not full lies there.
void LineSegments::settleStart(TextRange content, LineChunks& chunks, size_t index)
{
    const bool fromBelow = index + 1 < chunks.count() && chunks.isSettled(index + 1);
    if (fromBelow && !chunks.isSettled(index - 1)) {
        settleCut(content, chunks, index);
        if (beginForFullRows(content, chunks, index))
            return;
        chunks.unsettle(index);
    }
    size_t first = index - 1;
    while (!chunks.isSettled(first) && index - first < chainLength)
        --first;
    if (!chunks.isSettled(first))
        settleCut(content, chunks, first);
    for (; first < index; ++first)
        endWithFullRow(content, chunks, first);
}

LineSegment LineSegments::wrappedChunk(TextRange content, LineChunks& chunks, size_t index)
{
    if (!chunks.isSettled(index))
        settleStart(content, chunks, index);
    const auto lastRow = [](const LineSegment& segment) {
        return segment.layout->length() - segment.layout->rowStart(segment.layout->rowCount() - 1);
    };
    if (!chunks.isSettled(index + 1))
        endWithFullRow(content, chunks, index);
    LineSegment result = segment(rangeOf(content, chunks, index), content, chunkStyle(content));
    if (result.preeditLength > 0 || chunks.setLastRow(index, lastRow(result)) ||
        index + 1 == chunks.count())
        return result;
    // An edit moved the rows from one to the next.
    endWithFullRow(content, chunks, index);
    result = segment(rangeOf(content, chunks, index), content, chunkStyle(content));
    chunks.setLastRow(index, lastRow(result));
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
