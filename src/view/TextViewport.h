#pragma once

#include "text/Selection.h"
#include "view/LongestLine.h"
#include "view/TextGeometry.h"

#include <QRect>
#include <vector>

namespace quillory {

/// The part of a text that is in sight, and where it lies on the screen.
///
/// What is scrolled to is kept as the row at the top, by an offset in it that follows the edits,
/// and the pixels of that row that are hidden. So nothing that is learnt about rows out of sight
/// (how they wrap, how wide they are) moves the text in sight, and another size of the viewport and
/// back leaves it where it was. Scroll bars work with positions: in
/// y, a row's number times the row height; with wrapping, an estimate of that number, which any
/// offset yields in O(log n). Coordinates are logical pixels.
class TextViewport
{
public:
    struct VisibleRow
    {
        TextGeometry::Row row;
        int y; ///< of its top, in the viewport
    };

    explicit TextViewport(TextGeometry& geometry) : m_geometry(geometry) {}

    TextGeometry& geometry() const { return m_geometry; }

    QSize size() const { return m_size; }
    int rowHeight() const { return m_geometry.font().rowHeight(); }
    void setSize(QSize size);

    /// The rows that are wholly or partly in sight, from the top; at least one.
    const std::vector<VisibleRow>& rows();
    /// Forgets the rows, which an edit or another layout made wrong.
    void invalidate()
    {
        m_rows.clear();
        m_widthsNoted = false;
    }
    /// The same where the widths of rows are others, too.
    void invalidateWidths();
    /// To be called after the geometry followed the edit.
    void followEdit(const TextChange& change);

    /// The row at \a y, or the nearest in sight.
    const VisibleRow& rowAtY(int y);
    /// The one in sight that shows the caret at \a place; null when there is none.
    const VisibleRow* rowShowing(const CaretPlace& place);
    /// The caret at \a place; with no height when that is not in sight.
    QRect caretRect(const CaretPlace& place);
    /// A caret whose middle is at \a x, on the row whose top is at \a y.
    QRect caretAt(double x, int y) const;
    /// The whole lines that are in sight, with their breaks.
    TextRange visibleRange();

    /// The left edge of the text in the viewport.
    double left() const { return textMargin - m_scrollX; }
    // The space around the text, in logical pixels.
    static constexpr int textMargin = 6;     ///< to the left and to the right
    static constexpr int verticalMargin = 9; ///< above the first row and below the last

    // Scrolling. All stay within the text. x is 0 where the lines begin; what is wider than the
    // viewport lies to the right, or, of lines that are written from right to left, to the left.

    /// Whether the text can be scrolled on until its last row stands at anchorHeight(), not only
    /// until it stands at the bottom.
    void setScrollsPastEnd(bool past);
    qint64 y();
    double x() const { return m_scrollX; }
    void scrollToY(qint64 y);
    void scrollToX(double x);
    /// Exactly by \a pixels, downwards when positive.
    void scrollBy(qint64 pixels);
    /// Keeps the text at the left edge in its place after its line was measured. True when that
    /// changed x().
    bool settle();
    qint64 contentHeight();
    /// How far the text reaches to the right of x 0.
    double contentWidth();
    /// How far one can scroll to the left: 0 or less.
    double minimumX();

    /// Scrolls as little as shows the caret at \a place; where that is far away, to the middle of
    /// the height.
    void ensureVisible(const CaretPlace& place);
    void centerOn(TextOffset offset);
    /// Goes back to x 0 if the caret at \a place is seen there; else scrolls sideways as little as
    /// shows it.
    void returnSideways(const CaretPlace& place);
    /// Scrolls such that the row of \a offset stands at \a y, as far as there is text.
    void showAt(TextOffset offset, qint64 y) { showRowAt(m_geometry.rowAt(offset), y); }

private:
    struct Top
    {
        TextOffset offset = 0; ///< in the row at the top
        /// Pixels of that row above the viewport; negative where margin shows above the first row.
        int hidden = -verticalMargin;
    };

    Top topFor(const TextGeometry::Row& row, qint64 y);
    void showRowAt(const TextGeometry::Row& row, qint64 y);
    Top clampedTop();
    bool isAtEnd();
    int roomBelow() const;
    void showSideways(double x);
    void noteWidths();
    void forgetWidths();
    double estimatedReach(bool rightToLeft);
    double estimatedRow(TextOffset offset) const;
    TextOffset offsetOfEstimatedRow(double row) const;
    double unitsPerRow() const;

    TextGeometry& m_geometry;
    QSize m_size;
    Top m_top;                    ///< what was scrolled to last
    Top m_shown;                  ///< the same, pulled into the text; what rows() begins with
    LineIndex m_shownLine;        ///< the line at the top when rows() were found
    TextOffset m_shownColumn = 0; ///< units of that line before the top
    qsizetype m_lineCount = 0;    ///< of the text then
    bool m_scrollsPastEnd = false;
    double m_scrollX = 0;
    LongestLine m_longest;
    double m_widestSeen = 0;
    double m_leftmostSeen = 0;
    TextOffset m_longestSeen = 0;   ///< units of a line whose width is known
    bool m_widthsNoted = false;     ///< of the rows in sight
    std::vector<VisibleRow> m_rows; ///< empty when not known
};

} // namespace quillory
