#pragma once

#include "text/TextRange.h"

#include <vector>

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
// over the chunks before; a finger at the place asked for last makes those near it cheap. The first
// chunk that is laid out tells how wide the characters of the line are, and the estimates of all
// the others follow it. Widths are multiples of 1/64, so that sums of them are exact.

class LineChunks
{
public:
    /// Lines of more code units than this are cut into chunks.
    static constexpr TextOffset longLine = 2048;
    static constexpr TextOffset chunkLength = 1024;
    /// An edit that leaves less of a chunk joins it with a neighbour, so that there always is
    /// room to settle a cut.
    static constexpr TextOffset shortestChunk = 256;

    /// A chunk and where it begins in its line.
    struct Place
    {
        size_t index = 0;
        TextOffset start = 0; ///< code units from the line's start
        double x = 0;         ///< logical pixels from the line's left edge
    };

    /// \a unitWidth: the estimated width of a code unit.
    LineChunks(TextOffset length, double unitWidth);

    size_t count() const { return m_chunks.size(); }
    TextOffset length() const { return m_length; }
    double width() const { return m_width; }
    TextOffset lengthOf(size_t index) const { return m_chunks[index].length; }
    double widthOf(size_t index) const { return m_chunks[index].width; }

    /// The chunk that holds the unit at \a offset; the last one for the line's end and beyond.
    Place placeAtOffset(TextOffset offset) const;
    Place placeAtX(double x) const;
    Place placeOf(size_t index) const;

    /// Whether the cut before chunk \a index has its final place; the line's ends always have.
    bool isSettled(size_t index) const;
    /// Settles the cut before chunk \a index, \a units further left than it was, or, where
    /// negative, further right.
    void settle(size_t index, TextOffset units);
    /// Lets the cut before chunk \a index be settled anew; the line's ends stay.
    void unsettle(size_t index);
    /// Lets every cut be settled anew.
    void unsettle();

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
    enum class Width : uchar
    {
        Estimated,
        Edited, ///< measured, but changed since: what lies to the right is to move
        Measured
    };
    struct Chunk
    {
        int length = 0;
        float width = 0;
        int lastRow = 0; ///< units in it; 0 when not known
        Width state = Width::Estimated;
        bool settled = false; ///< the cut before it
    };

    void moveFinger(size_t index) const;
    void setWidthOf(Chunk& chunk, double width);
    void learn(size_t index, double width);
    void resize(Chunk& chunk, TextOffset difference);
    std::vector<Chunk> cut(TextOffset length) const;

    std::vector<Chunk> m_chunks;
    TextOffset m_length;
    double m_unitWidth;
    double m_width = 0;
    bool m_learnt = false; ///< the unit width, from a chunk that was laid out
    mutable Place m_finger;
};

} // namespace quillory
