#pragma once

#include "view/CaretAffinity.h"
#include "view/LineSegments.h"

#include <functional>
#include <optional>

namespace quillory {

/// Where the characters of a text are: its rows, and the places in each row.
///
/// A row is a line, or with wrapping a stretch of one. Rows are looked up when they are asked for,
/// at the cost of the row or chunk in question.
///
/// x is measured in logical pixels from the left edge of the text as it stands unscrolled; lines
/// that are written from right to left may reach to negative x (see LineSegments).
class TextGeometry
{
public:
    using Segment = LineSegment;

    struct Row
    {
        LineIndex line;
        TextRange content; ///< of the line, without its break
        TextRange range;   ///< what of it the row shows
        size_t chunk = 0;  ///< with wrapping: of a long line
        int row = 0;       ///< with wrapping: within the line, or within its chunk

        bool endsLine() const { return range.end() == content.end(); }
        /// The caret that shows on this row at \a offset, its end included.
        CaretPlace placeOf(TextOffset offset) const
        {
            const bool inside = offset < range.end() || endsLine();
            return {offset, inside ? CaretSide::Any : CaretSide::Before};
        }
    };

    /// A character as readers see it, in a row.
    struct Character
    {
        TextRange range;
        bool rightToLeft = false;
    };

    struct Edges
    {
        double left = 0;
        double right = 0;
    };

    TextGeometry(const TextStorage& storage, const TextFont& font) : m_segments(storage, font) {}

    const TextSnapshot& text() const { return m_segments.text(); }
    const TextFont& font() const { return m_segments.font(); }
    void setFont(const TextFont& font) { m_segments.setFont(font); }
    bool wraps() const { return m_segments.wraps(); }
    /// 0 for no wrapping.
    void setWrapWidth(double width) { m_segments.setWrapWidth(width); }
    double wrapWidth() const { return m_segments.wrapWidth(); }
    /// Where lines that are written from right to left begin, unless they are wrapped.
    void setRightEdge(double x) { m_segments.setRightEdge(x); }
    double rightEdge() const { return m_segments.rightEdge(); }
    void setPreedit(const Preedit& preedit) { m_segments.setPreedit(preedit); }
    const Preedit& preedit() const { return m_segments.preedit(); }
    WorkCounters& counters() { return m_segments.counters(); }

    /// To be called after each edit, before anything is asked.
    void followEdit(const TextChange& change) { m_segments.followEdit(change); }

    /// The row that shows \a offset; where a line wraps, the later one.
    Row rowAt(TextOffset offset);
    /// The row that shows a caret.
    Row rowAt(const CaretPlace& place);
    std::optional<Row> rowAfter(const Row& row);
    std::optional<Row> rowBefore(const Row& row);
    /// The row \a steps further down, or up where negative; none outside the text.
    std::optional<Row> rowFrom(const Row& row, qsizetype steps);

    /// Whether the line is written from right to left.
    bool isRightToLeft(const Row& row) { return m_segments.isRightToLeft(row.content); }
    /// Whether both directions, or the one from right to left, occur on \a row near \a offset.
    bool hasRightToLeft(const Row& row, TextOffset offset);

    /// Of an offset on \a row; where composed text stands there, the place before it.
    double xOf(const Row& row, TextOffset offset) { return xOf(row, CaretPlace{offset}); }
    double xOf(const Row& row, const CaretPlace& place);
    /// The place between two characters of \a row nearest to \a x. At the end of a row that goes
    /// on below, a caret has to hang on the character before it to show here (see Row::placeOf).
    TextOffset offsetAt(const Row& row, double x);
    /// The caret for a click at \a x: at offsetAt(), on the character that was clicked.
    CaretPlace placeAt(const Row& row, double x);
    /// The character at \a x; the nearest where there is none.
    Character characterAt(const Row& row, double x);
    /// Of the text on \a row. Unwrapped, the far end of a long line is an estimate.
    Edges edgesOf(const Row& row);
    double widthOf(const Row& row);

    /// Lays out, and visits in order, what of \a row lies between two places.
    void forEachSegment(const Row& row, double left, double right,
                        const std::function<void(const Segment&)>& visit);

    /// How far the text at \a left turned out, since the last call, to stand from where it was
    /// thought to be, because chunks of its line left of there were measured. Scrolling by as much
    /// keeps it in its place. Of several lines at odds the first one found counts.
    double takeShift(double left) { return m_segments.takeShift(left); }

private:
    Row wrappedRow(LineIndex line, TextRange content, size_t chunk, int row);
    size_t chunkCount(TextRange content);
    Segment segmentAt(const Row& row, TextOffset offset);
    Segment segmentAtX(const Row& row, double x);

    LineSegments m_segments;
};

} // namespace quillory
