#include "view/LineChunks.h"

#include <cmath>

namespace quillory {

namespace {

// An edit further away than this leaves a cut as good as it was.
constexpr TextOffset cutReach = 128;

double roundedTo(double step, double width)
{
    return std::round(width / step) * step;
}

double roundedWidth(double width)
{
    return roundedTo(1.0 / 64, width);
}

/// Multiplied by a thousand million units it is still exact.
double roundedUnitWidth(double width)
{
    return roundedTo(1.0 / 4096, width);
}

std::vector<Chunk> cut(TextOffset length)
{
    const TextOffset count = length <= LineChunks::longLine
                                 ? 1
                                 : (length + LineChunks::chunkLength - 1) / LineChunks::chunkLength;
    std::vector<Chunk> chunks;
    chunks.reserve(size_t(count));
    for (TextOffset i = 0; i < count; ++i) {
        Chunk chunk;
        chunk.length = int(length * (i + 1) / count - length * i / count);
        chunks.push_back(chunk);
    }
    return chunks;
}

} // namespace

LineChunks::LineChunks(TextOffset length, double unitWidth)
    : m_unitWidth(roundedUnitWidth(unitWidth))
{
    m_chunks.append(cut(length));
}

double LineChunks::widthOf(size_t index) const
{
    const Chunk& chunk = m_chunks[index];
    return chunk.state == Chunk::Width::Estimated ? chunk.length * m_unitWidth
                                                  : double(chunk.width);
}

bool LineChunks::isSettled(size_t index) const
{
    return index == 0 || index == count() || m_chunks[index].settledIn == m_round;
}

void LineChunks::setWidthOf(size_t index, double width, Chunk::Width state)
{
    m_chunks.change(index, [=](Chunk& chunk) {
        chunk.width = float(roundedWidth(width));
        chunk.state = state;
    });
}

/// The width grows or shrinks with the length, until it is measured again.
void LineChunks::resize(size_t index, TextOffset difference)
{
    m_chunks.change(index, [=, this](Chunk& chunk) {
        const double unitWidth =
            chunk.length > 0 ? double(chunk.width) / chunk.length : m_unitWidth;
        chunk.length += int(difference);
        chunk.width = float(roundedWidth(chunk.length * unitWidth));
        if (chunk.state == Chunk::Width::Measured)
            chunk.state = Chunk::Width::Edited;
    });
}

void LineChunks::settle(size_t index, TextOffset units)
{
    m_chunks.change(index, [=, this](Chunk& chunk) {
        chunk.settledIn = m_round;
        chunk.moved += int(units);
    });
    if (units == 0)
        return;
    resize(index - 1, -units);
    resize(index, units);
}

void LineChunks::restoreCut(size_t index)
{
    if (isSettled(index))
        return;
    const Chunk& chunk = m_chunks[index];
    const int moved = chunk.moved;
    const bool hasRoom = moved > 0 ? chunk.length - moved >= int(shortestChunk)
                                   : m_chunks[index - 1].length + moved >= int(shortestChunk);
    m_chunks.change(index, [](Chunk& cut) { cut.moved = 0; });
    if (moved == 0 || !hasRoom)
        return;
    resize(index - 1, moved);
    resize(index, -moved);
}

void LineChunks::unsettle(size_t index)
{
    if (index > 0 && index < count())
        m_chunks.change(index, [](Chunk& chunk) { chunk.settledIn = 0; });
}

bool LineChunks::setLastRow(size_t index, TextOffset units)
{
    const Chunk& chunk = m_chunks[index];
    const bool isNew = chunk.lastRowIn != m_round;
    const bool isSame = chunk.lastRow == units;
    if (isNew || !isSame)
        m_chunks.change(index, [=, this](Chunk& changed) {
            changed.lastRow = int(units);
            changed.lastRowIn = m_round;
        });
    return isNew || isSame;
}

double LineChunks::setWidth(size_t index, double width)
{
    const Chunk chunk = m_chunks[index];
    // So many chunks can be in sight at most, though they be full of marks that take no room.
    const double measured = roundedWidth(std::max(width, double(chunk.length) / 4));
    if (chunk.state == Chunk::Width::Measured && double(chunk.width) == measured)
        return 0;
    if (!std::exchange(m_learnt, true))
        m_unitWidth = roundedUnitWidth(measured / double(chunk.length));
    const double difference = measured - widthOf(index);
    const bool holdsRight = chunk.state == Chunk::Width::Estimated && index + 1 < count() &&
                            m_chunks[index + 1].state == Chunk::Width::Measured;
    setWidthOf(index, measured, Chunk::Width::Measured);
    return holdsRight ? difference : 0;
}

void LineChunks::followEdit(TextRange replaced, TextOffset inserted)
{
    // The chunk that ends where text is inserted takes it, rather than the one that begins there.
    Place first = placeAtOffset(std::max<TextOffset>(0, replaced.location - 1));
    Place last = placeAtOffset(std::max(replaced.end() - 1, first.start));
    const auto oldLength = [&] { return last.start + lengthOf(last.index) - first.start; };
    const TextOffset difference = inserted - replaced.length;
    if (oldLength() + difference < shortestChunk && last.index + 1 < count())
        last = placeOf(last.index + 1);
    else if (oldLength() + difference < shortestChunk && first.index > 0)
        first = placeOf(first.index - 1);

    const TextOffset newLength = oldLength() + difference;
    const bool nearStart = replaced.location - first.start < cutReach;
    const bool nearEnd = first.start + oldLength() - replaced.end() < cutReach;
    size_t added = 1;
    if (first.index == last.index && newLength <= longLine) {
        resize(first.index, difference);
    } else {
        std::vector<Chunk> chunks = cut(newLength);
        chunks.front().settledIn = m_chunks[first.index].settledIn;
        chunks.front().moved = m_chunks[first.index].moved;
        m_chunks.replace(first.index, last.index - first.index + 1, chunks);
        added = chunks.size();
    }
    // What a cut beside the edit was fitted to may be gone.
    if (nearStart)
        unsettle(first.index);
    if (nearEnd)
        unsettle(first.index + added);
}

void LineChunks::resetWidths(double unitWidth)
{
    m_unitWidth = roundedUnitWidth(unitWidth);
    m_learnt = false;
    m_chunks.forgetWidths();
}

} // namespace quillory
