#include "view/TextGeometry.h"

#include "view/ChunkCuts.h"
#include "view/DisplayText.h"

#include <limits>

namespace quillory {

TextOffset TextGeometry::Segment::offsetOf(int index) const
{
    if (index > preeditStart)
        index = std::max(preeditStart, index - preeditLength);
    return base + index;
}

TextGeometry::TextGeometry(const TextStorage& storage, const TextFont& font)
    : m_storage(storage), m_cache(font), m_longLines(font.advance())
{}

void TextGeometry::setFont(const TextFont& font)
{
    m_last = {};
    m_cache.setFont(font);
    m_longLines.setUnitWidth(font.advance());
}

void TextGeometry::setWrapWidth(double width)
{
    if (width == wrapWidth())
        return;
    m_last = {};
    m_cache.setWrapWidth(width);
    m_longLines.unsettle();
}

void TextGeometry::followEdit(const TextChange& change)
{
    m_longLines.followEdit(change, text());
}

// Segments

TextGeometry::Segment TextGeometry::segment(TextRange range, TextLayoutCache::Kind kind)
{
    const bool known = m_last.text.isSameTree(text()) && m_last.segment.range == range &&
                       m_last.preedit == m_preedit && m_last.segment.layout;
    if (known)
        return m_last.segment;
    Segment result;
    QString shown = displayText(text(), range, font().hasControlPictures(), counters());
    if (!m_preedit.text.isEmpty() && m_preedit.offset >= range.location &&
        m_preedit.offset <= range.end()) {
        result.preeditStart = int(m_preedit.offset - range.location);
        result.preeditLength = int(m_preedit.text.size());
        shown.insert(result.preeditStart, m_preedit.text);
    }
    result.layout = m_cache.layout(shown, kind);
    result.range = range;
    result.base = range.location;
    m_last = {text(), m_preedit, result};
    return result;
}

TextGeometry::Segment TextGeometry::wholeLine(TextRange content)
{
    return segment(content, TextLayoutCache::Kind::Line);
}

void TextGeometry::settleCut(TextRange content, LineChunks& chunks, size_t cut)
{
    const TextOffset before = content.location + chunks.placeOf(cut - 1).start;
    const TextOffset offset = content.location + chunks.placeOf(cut).start;
    chunks.settle(cut, unitsToCut(text(), TextRange::between(before, content.end()), offset));
}

TextGeometry::Segment TextGeometry::chunkOf(TextRange content, size_t index)
{
    LineChunks& chunks = m_longLines.chunks(content);
    const auto segmentNow = [&] {
        const TextOffset start = content.location + chunks.placeOf(index).start;
        return segment({start, chunks.lengthOf(index)}, TextLayoutCache::Kind::Chunk);
    };
    if (!chunks.isSettled(index))
        settleCut(content, chunks, index);
    if (!chunks.isSettled(index + 1)) {
        settleCut(content, chunks, index + 1);
        if (wraps()) {
            // The next chunk begins with the row that this one cannot fill, so that the seam does
            // not show.
            const Segment whole = segmentNow();
            const int lastRow = whole.layout->rowCount() - 1;
            const TextOffset rest = whole.layout->length() - whole.layout->rowStart(lastRow);
            if (whole.preeditLength == 0 && rest < whole.range.length / 2)
                chunks.settle(index + 1, rest);
        }
    }
    Segment result = segmentNow();
    if (wraps())
        return result;
    result.x = chunks.placeOf(index).x;
    const double amount = chunks.setWidth(index, result.layout->rowWidth(0));
    if (amount != 0)
        m_shifts.push_back({content.location, result.x, amount});
    return result;
}

TextGeometry::Segment TextGeometry::segmentAt(const Row& row, TextOffset offset)
{
    Segment result;
    if (!LongLines::isLong(row.content)) {
        result = wholeLine(row.content);
    } else if (wraps()) {
        result = chunkOf(row.content, row.chunk);
    } else {
        LineChunks& chunks = m_longLines.chunks(row.content);
        result = chunkOf(row.content, chunks.placeAtOffset(offset - row.content.location).index);
        // Settling its cuts may have left the offset to the next one.
        if (offset > result.range.end())
            result =
                chunkOf(row.content, chunks.placeAtOffset(offset - row.content.location).index);
    }
    if (wraps()) {
        result.row = row.row;
        result.range = row.range;
    }
    return result;
}

void TextGeometry::forEachSegment(const Row& row, double left, double right,
                                  const std::function<void(const Segment&)>& visit)
{
    if (wraps() || !LongLines::isLong(row.content)) {
        visit(segmentAt(row, row.range.location));
        return;
    }
    LineChunks& chunks = m_longLines.chunks(row.content);
    size_t index = chunks.placeAtX(left).index;
    do {
        visit(chunkOf(row.content, index));
        ++index;
    } while (index < chunks.count() && chunks.placeOf(index).x < right);
}

double TextGeometry::takeShift(double left)
{
    double amount = 0;
    for (const Shift& shift : m_shifts) {
        if (shift.line == m_shifts.front().line && shift.x < left)
            amount += shift.amount;
    }
    m_shifts.clear();
    return amount;
}

// Rows

size_t TextGeometry::chunkCount(TextRange content)
{
    return LongLines::isLong(content) ? m_longLines.chunks(content).count() : 1;
}

/// \a row: negative ones count from the end of the line or chunk.
TextGeometry::Row TextGeometry::wrappedRow(LineIndex line, TextRange content, size_t chunk, int row)
{
    const Segment segment =
        LongLines::isLong(content) ? chunkOf(content, chunk) : wholeLine(content);
    if (row < 0)
        row += segment.layout->rowCount();
    const TextOffset start = segment.offsetOf(segment.layout->rowStart(row));
    const TextOffset end = segment.offsetOf(segment.layout->rowEnd(row));
    return {line, content, {start, end - start}, chunk, row};
}

TextGeometry::Row TextGeometry::rowAt(TextOffset offset)
{
    const LineIndex line = text().lineAt(offset);
    const TextRange content = text().lineContent(line);
    if (!wraps())
        return {line, content, content};
    // Inside a CR LF, or after the break of the last line looked at.
    offset = std::min(offset, content.end());
    size_t chunk = 0;
    Segment segment;
    if (LongLines::isLong(content)) {
        LineChunks& chunks = m_longLines.chunks(content);
        const TextOffset inLine = offset - content.location;
        chunk = chunks.placeAtOffset(inLine).index;
        segment = chunkOf(content, chunk);
        if (chunks.placeAtOffset(inLine).index != chunk) { // a cut was settled
            chunk = chunks.placeAtOffset(inLine).index;
            segment = chunkOf(content, chunk);
        }
    } else {
        segment = wholeLine(content);
    }
    return wrappedRow(line, content, chunk, segment.layout->rowOf(segment.indexOf(offset)));
}

std::optional<TextGeometry::Row> TextGeometry::rowAfter(const Row& row)
{
    if (wraps()) {
        const Segment segment = segmentAt(row, row.range.location);
        if (row.row + 1 < segment.layout->rowCount())
            return wrappedRow(row.line, row.content, row.chunk, row.row + 1);
        if (row.chunk + 1 < chunkCount(row.content))
            return wrappedRow(row.line, row.content, row.chunk + 1, 0);
    }
    const LineIndex line = row.line + 1;
    if (line.value() >= text().lineCount())
        return {};
    const TextRange content = text().lineContent(line);
    return wraps() ? wrappedRow(line, content, 0, 0) : Row{line, content, content};
}

std::optional<TextGeometry::Row> TextGeometry::rowBefore(const Row& row)
{
    if (row.row > 0)
        return wrappedRow(row.line, row.content, row.chunk, row.row - 1);
    if (row.chunk > 0)
        return wrappedRow(row.line, row.content, row.chunk - 1, -1);
    if (row.line.value() == 0)
        return {};
    const LineIndex line = row.line - 1;
    const TextRange content = text().lineContent(line);
    return wraps() ? wrappedRow(line, content, chunkCount(content) - 1, -1)
                   : Row{line, content, content};
}

std::optional<TextGeometry::Row> TextGeometry::rowFrom(const Row& row, qsizetype steps)
{
    if (!wraps()) {
        const LineIndex line = row.line + steps;
        if (line.value() < 0 || line.value() >= text().lineCount())
            return {};
        const TextRange content = text().lineContent(line);
        return Row{line, content, content};
    }
    std::optional<Row> result = row;
    for (; result && steps > 0; --steps)
        result = rowAfter(*result);
    for (; result && steps < 0; ++steps)
        result = rowBefore(*result);
    return result;
}

TextOffset TextGeometry::rowEnd(const Row& row)
{
    return row.endsLine() ? row.range.end() : offsetAt(row, std::numeric_limits<int>::max());
}

// Places

double TextGeometry::xOf(const Row& row, TextOffset offset)
{
    offset = std::clamp(offset, row.range.location, row.range.end());
    const Segment segment = segmentAt(row, offset);
    const double x = segment.x + segment.layout->xAt(segment.row, segment.indexOf(offset));
    // Blanks at a wrapped row's end hang over its edge.
    return wraps() ? std::min(x, wrapWidth()) : x;
}

TextOffset TextGeometry::offsetAt(const Row& row, double x)
{
    std::optional<Segment> hit;
    forEachSegment(row, x, x, [&](const Segment& segment) { hit = segment; });
    int index = hit->layout->indexAt(hit->row, x - hit->x);
    // Where a line wraps, the place between the rows shows on the later one.
    const bool later = wraps() && !row.endsLine() && hit->offsetOf(index) >= row.range.end();
    if (later && row.range.length > 0)
        index = std::max(hit->layout->rowStart(hit->row), hit->layout->characterBefore(index));
    return hit->offsetOf(index);
}

double TextGeometry::widthOf(const Row& row)
{
    if (!wraps() && LongLines::isLong(row.content))
        return m_longLines.chunks(row.content).width();
    const Segment segment = segmentAt(row, row.range.location);
    return segment.layout->rowWidth(segment.row);
}

} // namespace quillory
