#pragma once

#include "text/TextStorage.h"
#include "view/LongLines.h"
#include "view/TextLayoutCache.h"

#include <functional>
#include <optional>

namespace quillory {

/// Text that an input method is composing, shown as if it stood at \a offset.
struct Preedit
{
    TextOffset offset = 0;
    QString text;
    bool operator==(const Preedit&) const = default;
};

/// Where the characters of a text are: its rows, and the places in each row.
///
/// A row is a line, or with wrapping a stretch of one. Nothing here is kept up to date: lines and
/// rows are looked up in the text and in the layout cache when they are asked for, at the cost of
/// the row or chunk in question, and only the chunks of long lines follow the edits.
///
/// x is measured in logical pixels from the left edge of the text.
class TextGeometry
{
public:
    struct Row
    {
        LineIndex line;
        TextRange content; ///< of the line, without its break
        TextRange range;   ///< what of it the row shows
        size_t chunk = 0;  ///< with wrapping: of a long line
        int row = 0;       ///< with wrapping: within the line, or within its chunk

        bool endsLine() const { return range.end() == content.end(); }
    };

    /// A laid-out part of a row.
    struct Segment
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

    explicit TextGeometry(const TextStorage& storage, const TextFont& font);

    const TextSnapshot& text() const { return m_storage.snapshot(); }
    const TextFont& font() const { return m_cache.font(); }
    void setFont(const TextFont& font);
    bool wraps() const { return m_cache.wrapWidth() > 0; }
    /// 0 for no wrapping.
    void setWrapWidth(double width);
    double wrapWidth() const { return m_cache.wrapWidth(); }
    void setPreedit(const Preedit& preedit) { m_preedit = preedit; }
    const Preedit& preedit() const { return m_preedit; }
    WorkCounters& counters() { return m_cache.counters(); }

    /// To be called after each edit, before anything is asked.
    void followEdit(const TextChange& change);

    /// The row that shows \a offset; where a line wraps, the later one.
    Row rowAt(TextOffset offset);
    std::optional<Row> rowAfter(const Row& row);
    std::optional<Row> rowBefore(const Row& row);
    /// The row \a steps further down, or up where negative; none outside the text.
    std::optional<Row> rowFrom(const Row& row, qsizetype steps);
    /// The last place for a caret that shows on \a row.
    TextOffset rowEnd(const Row& row);

    /// Of an offset on \a row; where composed text stands there, the place before it.
    double xOf(const Row& row, TextOffset offset);
    /// The place between two characters of \a row nearest to \a x, such that the caret shows on
    /// that row.
    TextOffset offsetAt(const Row& row, double x);
    double widthOf(const Row& row);

    /// Lays out, and visits from left to right, what of \a row lies between two places.
    void forEachSegment(const Row& row, double left, double right,
                        const std::function<void(const Segment&)>& visit);

    /// How far the text at \a left turned out, since the last call, to stand from where it was
    /// thought to be, because chunks of its line left of there were measured. Scrolling by as much
    /// keeps it in its place. Of several lines at odds the first one found counts.
    double takeShift(double left);

private:
    /// The segment asked for last: a wrapped line is asked for once for each of its rows.
    struct Last
    {
        TextSnapshot text;
        Preedit preedit;
        Segment segment;
    };
    struct Shift
    {
        TextOffset line;
        double x;
        double amount;
    };

    Row wrappedRow(LineIndex line, TextRange content, size_t chunk, int row);
    size_t chunkCount(TextRange content);
    Segment wholeLine(TextRange content);
    void settleCut(TextRange content, LineChunks& chunks, size_t cut);
    Segment chunkOf(TextRange content, size_t index);
    Segment segment(TextRange range, TextLayoutCache::Kind kind);
    Segment segmentAt(const Row& row, TextOffset offset);

    const TextStorage& m_storage;
    TextLayoutCache m_cache;
    LongLines m_longLines;
    Preedit m_preedit;
    Last m_last;
    std::vector<Shift> m_shifts;
};

} // namespace quillory
