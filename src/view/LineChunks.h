#pragma once

#include "view/ChunkBlocks.h"

namespace quillory {

// A long line cut into pieces, so that showing or changing a part of it costs a piece and not the
// line.
//
// The pieces ("chunks") tile the line. They are first cut at regular offsets without a look at the
// text; a cut is moved to a good place (see ChunkCuts) before one of its chunks is laid out, and is
// then "settled". An edit changes only the chunks that it touches, so the others keep their text
// and are found laid out.
//
// Each chunk has a width: an estimate by its length until it has been laid out. Places are sums
// over the chunks before (see ChunkBlocks). The first chunk that is laid out tells how wide the
// characters of the line are, and the estimates of all the others follow it. Widths are multiples
// of powers of two, so that sums of them are exact.

class LineChunks
{
public:
    /// Lines of more code units than this are cut into chunks.
    static constexpr TextOffset longLine = 2048;
    static constexpr TextOffset chunkLength = 1024;
    /// An edit that leaves less of a chunk joins it with a neighbour, so that there always is
    /// room to settle a cut.
    static constexpr TextOffset shortestChunk = 256;

    using Place = ChunkBlocks::Place;

    /// \a unitWidth: the estimated width of a code unit.
    LineChunks(TextOffset length, double unitWidth);

    size_t count() const { return m_chunks.count(); }
    TextOffset length() const { return m_chunks.length(); }
    double width() const { return m_chunks.width(m_unitWidth); }
    TextOffset lengthOf(size_t index) const { return m_chunks[index].length; }
    double widthOf(size_t index) const;

    /// The chunk that holds the unit at \a offset; the last one for the line's end and beyond.
    Place placeAtOffset(TextOffset offset) const
    {
        return m_chunks.placeAtOffset(offset, m_unitWidth);
    }
    Place placeAtX(double x) const { return m_chunks.placeAtX(x, m_unitWidth); }
    Place placeOf(size_t index) const { return m_chunks.placeOf(index, m_unitWidth); }

    /// Whether the cut before chunk \a index has its final place; the line's ends always have.
    bool isSettled(size_t index) const;
    /// Settles the cut before chunk \a index, \a units further left than it was, or, where
    /// negative, further right.
    void settle(size_t index, TextOffset units);
    /// Puts a cut that is not settled back where it was before it was first moved, so that a cut
    /// that is settled again and again does not wander.
    void restoreCut(size_t index);
    /// Lets the cut before chunk \a index be settled anew; the line's ends stay.
    void unsettle(size_t index);
    /// Lets every cut be settled anew. The cost does not depend on how many there are.
    void unsettle() { ++m_round; }

    /// With wrapping: says how many units the last row of a chunk has. False when they were others
    /// before, so that the chunk may not end with a full row any more.
    bool setLastRow(size_t index, TextOffset units);

    /// Says how wide a chunk really is; one with hardly any width is taken to be wider. Answers how
    /// far that moves what lies to its right, where the chunk to the right has been laid out and so
    /// may have been seen; else 0.
    double setWidth(size_t index, double width);

    /// The units of \a replaced, an offset in this line, went for \a inserted others.
    void followEdit(TextRange replaced, TextOffset inserted);

    /// Forgets the measured widths, for another font.
    void resetWidths(double unitWidth);

private:
    void setWidthOf(size_t index, double width, Chunk::Width state);
    void resize(size_t index, TextOffset difference);

    ChunkBlocks m_chunks;
    double m_unitWidth;
    bool m_learnt = false; ///< the unit width, from a chunk that was laid out
    uint m_round = 1;      ///< of settling cuts
};

} // namespace quillory
