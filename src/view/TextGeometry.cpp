#include "view/TextGeometry.h"

#include "text/TextBoundary.h"

#include <limits>

namespace quillory {

namespace {
// A cluster longer than this is no character, and a click may fall into it.
constexpr TextOffset longestCharacter = 64;
} // namespace

TextGeometry::Segment TextGeometry::segmentAt(const Row& row, TextOffset offset)
{
    if (!LongLines::isLong(row.content) && !wraps())
        return m_segments.wholeLine(row.content);
    if (!wraps())
        return m_segments.chunk(row.content, m_segments.chunkAt(row.content, offset));
    Segment result = LongLines::isLong(row.content) ? m_segments.chunk(row.content, row.chunk)
                                                    : m_segments.wholeLine(row.content);
    result.row = row.row;
    result.range = row.range;
    return result;
}

TextGeometry::Segment TextGeometry::segmentAtX(const Row& row, double x)
{
    std::optional<Segment> hit;
    forEachSegment(row, x, x, [&](const Segment& segment) { hit = segment; });
    return *hit;
}

void TextGeometry::forEachSegment(const Row& row, double left, double right,
                                  const std::function<void(const Segment&)>& visit)
{
    if (wraps() || !LongLines::isLong(row.content)) {
        visit(segmentAt(row, row.range.location));
        return;
    }
    // From the end at which the line begins.
    const bool rightToLeft = isRightToLeft(row);
    const double start = rightToLeft ? right : left;
    size_t index = m_segments.chunkAtX(row.content, start);
    // The first chunk that is laid out tells where the others are.
    m_segments.chunk(row.content, index);
    index = m_segments.chunkAtX(row.content, start);
    Segment segment;
    do {
        segment = m_segments.chunk(row.content, index);
        visit(segment);
        ++index;
    } while (index < chunkCount(row.content) &&
             (rightToLeft ? segment.x > left : m_segments.leftOf(row.content, index) < right));
}

// Rows

size_t TextGeometry::chunkCount(TextRange content)
{
    return LongLines::isLong(content) ? m_segments.chunks(content).count() : 1;
}

/// \a row: negative ones count from the end of the line or chunk.
TextGeometry::Row TextGeometry::wrappedRow(LineIndex line, TextRange content, size_t chunk, int row)
{
    const Segment segment = LongLines::isLong(content) ? m_segments.chunk(content, chunk)
                                                       : m_segments.wholeLine(content);
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
    const bool isLong = LongLines::isLong(content);
    const size_t chunk = isLong ? m_segments.chunkAt(content, offset) : 0;
    const Segment segment =
        isLong ? m_segments.chunk(content, chunk) : m_segments.wholeLine(content);
    return wrappedRow(line, content, chunk, segment.layout->rowOf(segment.indexOf(offset)));
}

TextGeometry::Row TextGeometry::rowAt(const CaretPlace& place)
{
    const Row row = rowAt(place.offset);
    const bool isBefore = place.side == CaretSide::Before && row.range.location == place.offset &&
                          place.offset > row.content.location;
    return isBefore ? *rowBefore(row) : row;
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

// Places

bool TextGeometry::hasRightToLeft(const Row& row, TextOffset offset)
{
    return segmentAt(row, offset).layout->hasRightToLeft() || isRightToLeft(row);
}

double TextGeometry::xOf(const Row& row, const CaretPlace& place)
{
    const TextOffset offset = std::clamp(place.offset, row.range.location, row.range.end());
    const Segment segment = segmentAt(row, offset);
    const double x =
        segment.x + segment.layout->xAt(segment.row, segment.indexOf(offset), place.side);
    // Blanks at a wrapped row's end hang over its edge.
    return wraps() ? std::clamp(x, 0.0, wrapWidth()) : x;
}

TextOffset TextGeometry::offsetAt(const Row& row, double x)
{
    const Segment hit = segmentAtX(row, x);
    const TextOffset offset = hit.offsetOf(hit.layout->indexAt(hit.row, x - hit.x));
    // The layout may see places inside what the rules for characters, and the keys, hold together.
    const TextOffset start = std::max(characterStart(text(), offset), row.range.location);
    if (start == offset || offset - start > longestCharacter)
        return offset;
    const TextOffset end = std::min(characterAfter(text(), start), row.range.end());
    return std::abs(x - xOf(row, start)) <= std::abs(x - xOf(row, end)) ? start : end;
}

CaretPlace TextGeometry::placeAt(const Row& row, double x)
{
    CaretPlace place = row.placeOf(offsetAt(row, x));
    if (place.side != CaretSide::Any || !hasRightToLeft(row, place.offset))
        return place;
    for (const CaretSide side : {CaretSide::Before, CaretSide::After}) {
        const CaretPlace other{place.offset, side};
        if (std::abs(x - xOf(row, other)) < std::abs(x - xOf(row, place)))
            place = other;
    }
    return place;
}

TextGeometry::Character TextGeometry::characterAt(const Row& row, double x)
{
    const Segment hit = segmentAtX(row, x);
    const int index = hit.layout->characterAt(hit.row, x - hit.x);
    const TextOffset start = characterStart(text(), hit.offsetOf(index));
    const TextOffset end = std::min(characterAfter(text(), start), row.range.end());
    return {TextRange::between(std::max(start, row.range.location), end),
            hit.layout->isRightToLeftAt(hit.row, index)};
}

TextGeometry::Edges TextGeometry::edgesOf(const Row& row)
{
    if (!wraps() && LongLines::isLong(row.content)) {
        const double width = m_segments.chunks(row.content).width();
        return isRightToLeft(row) ? Edges{rightEdge() - width, rightEdge()} : Edges{0, width};
    }
    const Segment segment = segmentAt(row, row.range.location);
    const double left = segment.x + segment.layout->rowLeft(segment.row);
    return {left, left + segment.layout->rowWidth(segment.row)};
}

double TextGeometry::widthOf(const Row& row)
{
    const Edges edges = edgesOf(row);
    return edges.right - edges.left;
}

} // namespace quillory
