#include "view/LineChunks.h"

namespace quillory {

namespace {
// An edit further away than this leaves a cut as good as it was.
constexpr TextOffset cutReach = 128;
} // namespace

LineChunks::LineChunks(TextOffset length, double unitWidth)
    : m_length(length), m_unitWidth(unitWidth)
{
    m_chunks = cut(length);
}

std::vector<LineChunks::Chunk> LineChunks::cut(TextOffset length) const
{
    const TextOffset count = length <= longLine ? 1 : (length + chunkLength - 1) / chunkLength;
    std::vector<Chunk> chunks;
    chunks.reserve(size_t(count));
    for (TextOffset i = 0; i < count; ++i) {
        const TextOffset units = length * (i + 1) / count - length * i / count;
        chunks.push_back({int(units), float(double(units) * m_unitWidth)});
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

double LineChunks::width() const
{
    const Place last = placeOf(count() - 1);
    return last.x + m_chunks.back().width;
}

bool LineChunks::isSettled(size_t index) const
{
    return index == 0 || index == count() || m_chunks[index].settled;
}

/// The width grows or shrinks with the length, until it is measured again.
void LineChunks::resize(Chunk& chunk, TextOffset difference) const
{
    const double unitWidth = chunk.length > 0 ? double(chunk.width) / chunk.length : m_unitWidth;
    chunk.length += int(difference);
    chunk.width = float(chunk.length * unitWidth);
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

void LineChunks::unsettle()
{
    for (Chunk& chunk : m_chunks)
        chunk.settled = false;
}

double LineChunks::setWidth(size_t index, double width)
{
    Chunk& chunk = m_chunks[index];
    // So many chunks can be in sight at most, though they be full of marks that take no room.
    const float measured = float(std::max(width, double(chunk.length) * m_unitWidth / 32));
    if (chunk.state == Width::Measured && chunk.width == measured)
        return 0;
    moveFinger(index);
    const double difference = double(measured) - double(chunk.width);
    const bool holdsRight = chunk.state == Width::Estimated && index + 1 < count() &&
                            m_chunks[index + 1].state == Width::Measured;
    chunk.width = measured;
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
    m_finger = {};
    for (Chunk& chunk : m_chunks) {
        chunk.width = float(double(chunk.length) * unitWidth);
        chunk.state = Width::Estimated;
    }
}

} // namespace quillory
