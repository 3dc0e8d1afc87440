#pragma once

#include "text/TextRange.h"

#include <functional>
#include <vector>

namespace quillory {

/// A piece of a long line.
struct Chunk
{
    enum class Width : uchar
    {
        Estimated, ///< by the length
        Edited,    ///< measured, but changed since: what lies to the right is to move
        Measured
    };

    int length = 0;     ///< code units
    float width = 0;    ///< logical pixels; of no meaning while estimated
    int lastRow = 0;    ///< units in its last row; 0 when not known
    int moved = 0;      ///< units that the cut before it lies further left than it was first put
    uint settledIn = 0; ///< the round in which the cut before it was settled; 0: in none
    uint lastRowIn = 0; ///< the round for which lastRow holds
    Width state = Width::Estimated;
};

/// The chunks of a line, with sums over blocks of them: a chunk is found by index, by offset or by
/// x, and changed, at the cost of one block and of a look at the sums of the others, which is about
/// the square root of their number.
class ChunkBlocks
{
public:
    static constexpr size_t blockSize = 512;

    /// A chunk and where it begins in its line.
    struct Place
    {
        size_t index = 0;
        TextOffset start = 0; ///< code units from the line's start
        double x = 0;         ///< logical pixels from the line's left edge
    };

    /// Chunks of which no width is known.
    void append(const std::vector<Chunk>& chunks) { replace(m_total.count, 0, chunks); }

    size_t count() const { return m_total.count; }
    TextOffset length() const { return m_total.length; }
    /// \a unitWidth: of a code unit, where widths are estimated.
    double width(double unitWidth) const { return m_total.width(unitWidth); }

    const Chunk& operator[](size_t index) const;
    /// Has \a change alter chunk \a index.
    void change(size_t index, const std::function<void(Chunk&)>& change);
    void replace(size_t first, size_t count, const std::vector<Chunk>& chunks);
    /// Has all widths estimated.
    void forgetWidths();

    Place placeOf(size_t index, double unitWidth) const;
    /// The chunk that holds the unit at \a offset; the last one for the end and beyond.
    Place placeAtOffset(TextOffset offset, double unitWidth) const;
    Place placeAtX(double x, double unitWidth) const;

private:
    struct Sum
    {
        size_t count = 0;
        TextOffset length = 0;
        TextOffset estimated = 0; ///< code units in chunks that are
        double measured = 0;      ///< logical pixels of the others

        double width(double unitWidth) const { return measured + double(estimated) * unitWidth; }
        void add(const Chunk& chunk);
        Sum& operator+=(const Sum& other);
        Sum& operator-=(const Sum& other);
    };
    struct Block
    {
        std::vector<Chunk> chunks;
        Sum sum;
    };
    struct Location
    {
        size_t block;
        size_t inBlock;
    };

    template<class Before>
    Place find(double unitWidth, Before isBefore) const;
    Location locate(size_t index) const;
    void sumUp(Block& block);
    void splitAndSum(size_t block);

    std::vector<Block> m_blocks; ///< none of them empty
    Sum m_total;
};

} // namespace quillory
