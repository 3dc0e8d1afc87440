#include "view/LineChunks.h"

#include <cmath>

namespace quillory {

namespace {
// An edit further away than this leaves a cut as good as it was.
constexpr TextOffset cutReach = 128;

float roundedWidth(double width)
{
    return float(std::round(width * 64) / 64);
}
} // namespace

LineChunks::LineChunks(TextOffset length, double unitWidth)
    : m_length(length), m_unitWidth(unitWidth)
{
    m_chunks = cut(length);
    for (const Chunk& chunk : m_chunks)
        m_width += chunk.width;
}

std::vector<LineChunks::Chunk> LineChunks::cut(TextOffset length) const
{
    const TextOffset count = length <= longLine ? 1 : (length + chunkLength - 1) / chunkLength;
    std::vector<Chunk> chunks;
    chunks.reserve(size_t(count));
    for (TextOffset i = 0; i < count; ++i) {
        const TextOffset units = length * (i + 1) / count - length * i / count;
        chunks.push_back({int(units), roundedWidth(double(units) * m_unitWidth), 0});
    }
    return chunks;
}

void LineChunks::moveFinger(size_t index) const
{
    if (index < m_finger.index / 2)
        m_finger = {};
    while (m_finger.index < index) {
        const Chunk& chunk = m_chunks[m_finger.index];
        m_finger = {m_finger.index + 1, m_finger.start + chunk.length, m_finger.x + chunk.width};
    }
    while (m_finger.index > index) {
        const Chunk& chunk = m_chunks[m_finger.index - 1];
        m_finger = {m_finger.index - 1, m_finger.start - chunk.length, m_finger.x - chunk.width};
    }
}

LineChunks::Place LineChunks::placeOf(size_t index) const
{
    moveFinger(index);
    return m_finger;
}

LineChunks::Place LineChunks::placeAtOffset(TextOffset offset) const
{
    if (offset < m_finger.start / 2)
        m_finger = {};
    while (m_finger.index + 1 < count() &&
           offset >= m_finger.start + m_chunks[m_finger.index].length)
        moveFinger(m_finger.index + 1);
    while (m_finger.index > 0 && offset < m_finger.start)
        moveFinger(m_finger.index - 1);
    return m_finger;
}

LineChunks::Place LineChunks::placeAtX(double x) const
{
    if (x < m_finger.x / 2)
        m_finger = {};
    while (m_finger.index + 1 < count() && x >= m_finger.x + m_chunks[m_finger.index].width)
        moveFinger(m_finger.index + 1);
    while (m_finger.index > 0 && x < m_finger.x)
        moveFinger(m_finger.index - 1);
    return m_finger;
}

bool LineChunks::isSettled(size_t index) const
{
    return index == 0 || index == count() || m_chunks[index].settled;
}

void LineChunks::setWidthOf(Chunk& chunk, double width)
{
    const float rounded = roundedWidth(width);
    m_width += double(rounded) - double(chunk.width);
    chunk.width = rounded;
}

/// The width grows or shrinks with the length, until it is measured again.
void LineChunks::resize(Chunk& chunk, TextOffset difference)
{
    const double unitWidth = chunk.length > 0 ? double(chunk.width) / chunk.length : m_unitWidth;
    chunk.length += int(difference);
    setWidthOf(chunk, chunk.length * unitWidth);
    if (chunk.state == Width::Measured)
        chunk.state = Width::Edited;
}

void LineChunks::settle(size_t index, TextOffset units)
{
    Chunk& chunk = m_chunks[index];
    Chunk& before = m_chunks[index - 1];
    chunk.settled = true;
    if (units == 0)
        return;
    moveFinger(index - 1);
    resize(before, -units);
    resize(chunk, units);
}

void LineChunks::unsettle(size_t index)
{
    if (index > 0 && index < count())
        m_chunks[index].settled = false;
}

void LineChunks::unsettle()
{
    for (Chunk& chunk : m_chunks) {
        chunk.settled = false;
        chunk.lastRow = 0;
    }
}

bool LineChunks::setLastRow(size_t index, TextOffset units)
{
    const int before = std::exchange(m_chunks[index].lastRow, int(units));
    return before == 0 || before == units;
}

/// The first chunk to be laid out tells of the others.
void LineChunks::learn(size_t index, double width)
{
    m_learnt = true;
    m_unitWidth = width / double(m_chunks[index].length);
    for (Chunk& chunk : m_chunks)
        setWidthOf(chunk, double(chunk.length) * m_unitWidth);
    m_finger = {};
}

double LineChunks::setWidth(size_t index, double width)
{
    Chunk& chunk = m_chunks[index];
    // So many chunks can be in sight at most, though they be full of marks that take no room.
    const float measured = roundedWidth(std::max(width, double(chunk.length) / 4));
    if (chunk.state == Width::Measured && chunk.width == measured)
        return 0;
    if (!m_learnt)
        learn(index, measured);
    moveFinger(index);
    const double difference = double(measured) - double(chunk.width);
    const bool holdsRight = chunk.state == Width::Estimated && index + 1 < count() &&
                            m_chunks[index + 1].state == Width::Measured;
    setWidthOf(chunk, measured);
    chunk.state = Width::Measured;
    return holdsRight ? difference : 0;
}

void LineChunks::followEdit(TextRange replaced, TextOffset inserted)
{
    // The chunk that ends where text is inserted takes it, rather than the one that begins there.
    Place first = placeAtOffset(std::max<TextOffset>(0, replaced.location - 1));
    Place last = placeAtOffset(std::max(replaced.end() - 1, first.start));
    const auto oldLength = [&] { return last.start + m_chunks[last.index].length - first.start; };
    const TextOffset difference = inserted - replaced.length;
    if (oldLength() + difference < shortestChunk && last.index + 1 < count())
        last = placeOf(last.index + 1);
    else if (oldLength() + difference < shortestChunk && first.index > 0)
        first = placeOf(first.index - 1);
    moveFinger(first.index);
    m_length += difference;

    const TextOffset newLength = oldLength() + difference;
    const bool nearStart = replaced.location - first.start < cutReach;
    const bool nearEnd = first.start + oldLength() - replaced.end() < cutReach;
    size_t added = 1;
    const auto begin = m_chunks.begin() + qsizetype(first.index);
    if (first.index == last.index && newLength <= longLine) {
        resize(*begin, difference);
    } else {
        const std::vector<Chunk> chunks = cut(newLength);
        const bool settled = begin->settled;
        for (auto it = begin; it != begin + qsizetype(last.index - first.index) + 1; ++it)
            m_width -= it->width;
        for (const Chunk& chunk : chunks)
            m_width += chunk.width;
        const auto at = m_chunks.erase(begin, begin + qsizetype(last.index - first.index) + 1);
        m_chunks.insert(at, chunks.begin(), chunks.end())->settled = settled;
        added = chunks.size();
    }
    // What a cut beside the edit was fitted to may be gone.
    if (nearStart)
        m_chunks[first.index].settled = false;
    const size_t next = first.index + added;
    if (nearEnd && next < count())
        m_chunks[next].settled = false;
}

void LineChunks::resetWidths(double unitWidth)
{
    m_unitWidth = unitWidth;
    m_learnt = false;
    m_finger = {};
    for (Chunk& chunk : m_chunks) {
        setWidthOf(chunk, double(chunk.length) * unitWidth);
        chunk.state = Width::Estimated;
    }
}

} // namespace quillory
