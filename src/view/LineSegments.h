#pragma once

#include "text/TextStorage.h"
#include "view/LongLines.h"
#include "view/TextLayoutCache.h"

namespace quillory {

/// Text that an input method is composing, shown as if it stood at \a offset.
struct Preedit
{
    TextOffset offset = 0;
    QString text;
    bool operator==(const Preedit&) const = default;
};

/// A laid-out part of a row.
struct LineSegment
{
    std::shared_ptr<LineLayout> layout;
    int row = 0;         ///< of the layout
    TextRange range;     ///< of the text, on this row
    TextOffset base = 0; ///< the offset in the text of the layout's first unit
    double x = 0;        ///< of the layout's left edge
    int preeditStart = 0;
    int preeditLength = 0; ///< 0 where no composed text is in it

    /// The layout's index for an offset inside range, its end included; where composed text
    /// stands, the index before it.
    int indexOf(TextOffset offset) const
    {
        const int index = int(offset - base);
        return index > preeditStart ? index + preeditLength : index;
    }
    TextOffset offsetOf(int index) const;
};

/// The laid-out pieces of a text: lines whole, long ones by chunks.
///
/// Nothing here is kept up to date: a piece is looked up in the text and in the layout cache when
/// it is asked for, at the cost of that piece, and only the chunks of long lines follow the edits.
///
/// Without wrapping, a line that is written from right to left begins at rightEdge() and goes to
/// the left from there, to negative x where it is wider than that. So at x 0 every line shows its
/// beginning, whichever way it runs. Wrapped, its rows end flush with the wrap width.
class LineSegments
{
public:
    LineSegments(const TextStorage& storage, const TextFont& font);

    const TextSnapshot& text() const { return m_storage.snapshot(); }
    const TextFont& font() const { return m_cache.font(); }
    void setFont(const TextFont& font);
    bool wraps() const { return m_cache.wrapWidth() > 0; }
    double wrapWidth() const { return m_cache.wrapWidth(); }
    /// 0 for no wrapping.
    void setWrapWidth(double width);
    double rightEdge() const { return m_rightEdge; }
    void setRightEdge(double x) { m_rightEdge = x; }
    const Preedit& preedit() const { return m_preedit; }
    void setPreedit(const Preedit& preedit) { m_preedit = preedit; }
    WorkCounters& counters() { return m_cache.counters(); }

    /// To be called after each edit, before anything is asked.
    void followEdit(const TextChange& change);

    /// Whether the line with this \a content is written from right to left, as its first strong
    /// character tells; of a long line the first few thousand units are looked at.
    bool isRightToLeft(TextRange content);

    LineSegment wholeLine(TextRange content);
    /// Of a long line.
    LineChunks& chunks(TextRange content) { return m_longLines.chunks(content); }
    LineSegment chunk(TextRange content, size_t index);
    /// The chunk that holds \a offset, an offset of the text, once its cuts are settled.
    size_t chunkAt(TextRange content, TextOffset offset);
    /// The chunk of an unwrapped line at \a x, where it was last thought to be.
    size_t chunkAtX(TextRange content, double x);
    /// The left edge of an unwrapped chunk.
    double leftOf(TextRange content, size_t index);

    double takeShift(double left);

private:
    /// The segment asked for last: a wrapped line is asked for once for each of its rows.
    struct Last
    {
        TextSnapshot text;
        Preedit preedit;
        TextLayoutCache::Style style;
        LineSegment segment;
    };
    struct Shift
    {
        TextOffset line;
        double x;
        double amount;
    };

    LineSegment segment(TextRange range, TextRange content, const TextLayoutCache::Style& style);
    void settleCut(TextRange content, LineChunks& chunks, size_t cut);
    TextRange rangeOf(TextRange content, const LineChunks& chunks, size_t index) const;
    TextLayoutCache::Style chunkStyle(TextRange content);
    double tabPhase(TextRange content, const LineChunks& chunks, size_t index);
    LineSegment wrappedChunk(TextRange content, LineChunks& chunks, size_t index);
    TextOffset rowStartAt(TextRange content, TextOffset start, TextOffset offset);
    void endWithFullRow(TextRange content, LineChunks& chunks, size_t index);
    bool beginForFullRows(TextRange content, LineChunks& chunks, size_t index);
    void settleStart(TextRange content, LineChunks& chunks, size_t index);

    const TextStorage& m_storage;
    TextLayoutCache m_cache;
    LongLines m_longLines;
    Preedit m_preedit;
    double m_rightEdge = 0;
    Last m_last;
    std::vector<Shift> m_shifts;
};

} // namespace quillory
