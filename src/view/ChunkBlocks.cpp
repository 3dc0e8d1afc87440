#include "view/ChunkBlocks.h"

#include <algorithm>

namespace quillory {

void ChunkBlocks::Sum::add(const Chunk& chunk)
{
    ++count;
    length += chunk.length;
    if (chunk.state == Chunk::Width::Estimated)
        estimated += chunk.length;
    else
        measured += double(chunk.width);
}

ChunkBlocks::Sum& ChunkBlocks::Sum::operator+=(const Sum& other)
{
    count += other.count;
    length += other.length;
    estimated += other.estimated;
    measured += other.measured;
    return *this;
}

ChunkBlocks::Sum& ChunkBlocks::Sum::operator-=(const Sum& other)
{
    count -= other.count;
    length -= other.length;
    estimated -= other.estimated;
    measured -= other.measured;
    return *this;
}

ChunkBlocks::Location ChunkBlocks::locate(size_t index) const
{
    size_t block = 0;
    while (index >= m_blocks[block].sum.count)
        index -= m_blocks[block++].sum.count;
    return {block, index};
}

const Chunk& ChunkBlocks::operator[](size_t index) const
{
    const Location at = locate(index);
    return m_blocks[at.block].chunks[at.inBlock];
}

void ChunkBlocks::change(size_t index, const std::function<void(Chunk&)>& change)
{
    const Location at = locate(index);
    Block& block = m_blocks[at.block];
    Chunk& chunk = block.chunks[at.inBlock];
    Sum before;
    before.add(chunk);
    change(chunk);
    Sum after;
    after.add(chunk);
    for (Sum* sum : {&block.sum, &m_total}) {
        *sum -= before;
        *sum += after;
    }
}

/// Sums up \a block, whose part of the total was taken out before.
void ChunkBlocks::sumUp(Block& block)
{
    block.sum = {};
    for (const Chunk& chunk : block.chunks)
        block.sum.add(chunk);
    m_total += block.sum;
}

/// Divides a block that grew too large.
void ChunkBlocks::splitAndSum(size_t block)
{
    std::vector<Chunk> all = std::move(m_blocks[block].chunks);
    const size_t parts = all.size() <= 2 * blockSize ? 1 : (all.size() + blockSize - 1) / blockSize;
    std::vector<Block> added(parts - 1);
    for (size_t part = parts; part-- > 0;) {
        Block& target = part == 0 ? m_blocks[block] : added[part - 1];
        const auto from = all.begin() + qsizetype(all.size() * part / parts);
        const auto to = all.begin() + qsizetype(all.size() * (part + 1) / parts);
        target.chunks.assign(from, to);
        sumUp(target);
    }
    m_blocks.insert(m_blocks.begin() + qsizetype(block) + 1, std::make_move_iterator(added.begin()),
                    std::make_move_iterator(added.end()));
}

void ChunkBlocks::replace(size_t first, size_t count, const std::vector<Chunk>& chunks)
{
    if (m_blocks.empty())
        m_blocks.emplace_back();
    const bool atEnd = first == m_total.count;
    Location at =
        atEnd ? Location{m_blocks.size() - 1, m_blocks.back().chunks.size()} : locate(first);
    size_t begin = at.inBlock;
    for (size_t block = at.block; count > 0; ++block, begin = 0) {
        std::vector<Chunk>& old = m_blocks[block].chunks;
        const size_t removed = std::min(count, old.size() - begin);
        m_total -= m_blocks[block].sum;
        old.erase(old.begin() + qsizetype(begin), old.begin() + qsizetype(begin + removed));
        sumUp(m_blocks[block]);
        count -= removed;
    }
    m_total -= m_blocks[at.block].sum;
    std::vector<Chunk>& target = m_blocks[at.block].chunks;
    target.insert(target.begin() + qsizetype(at.inBlock), chunks.begin(), chunks.end());
    splitAndSum(at.block);
    std::erase_if(m_blocks, [](const Block& block) { return block.chunks.empty(); });
}

void ChunkBlocks::forgetWidths()
{
    m_total = {};
    for (Block& block : m_blocks) {
        for (Chunk& chunk : block.chunks)
            chunk.state = Chunk::Width::Estimated;
        sumUp(block);
    }
}

/// The first chunk of which \a isBefore(sum, x) is false, \a sum being all up to it and with it, or
/// the last one.
template<class Before>
ChunkBlocks::Place ChunkBlocks::find(double unitWidth, Before isBefore) const
{
    Sum done;
    size_t block = 0;
    for (; block + 1 < m_blocks.size(); ++block) {
        Sum with = done;
        with += m_blocks[block].sum;
        if (!isBefore(with))
            break;
        done = with;
    }
    for (const Chunk& chunk : m_blocks[block].chunks) {
        Sum with = done;
        with.add(chunk);
        if (!isBefore(with) || with.count == m_total.count)
            break;
        done = with;
    }
    return {done.count, done.length, done.width(unitWidth)};
}

ChunkBlocks::Place ChunkBlocks::placeOf(size_t index, double unitWidth) const
{
    return find(unitWidth, [=](const Sum& sum) { return sum.count <= index; });
}

ChunkBlocks::Place ChunkBlocks::placeAtOffset(TextOffset offset, double unitWidth) const
{
    return find(unitWidth, [=](const Sum& sum) { return sum.length <= offset; });
}

ChunkBlocks::Place ChunkBlocks::placeAtX(double x, double unitWidth) const
{
    return find(unitWidth, [=](const Sum& sum) { return sum.width(unitWidth) <= x; });
}

} // namespace quillory
