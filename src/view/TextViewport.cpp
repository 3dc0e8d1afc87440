#include "view/TextViewport.h"

#include "editing/TypewriterScroll.h"

#include <algorithm>
#include <cmath>

namespace quillory {

void TextViewport::setSize(QSize size)
{
    m_size = size;
    invalidate();
}

// Rows in sight

const std::vector<TextViewport::VisibleRow>& TextViewport::rows()
{
    if (!m_rows.empty())
        return m_rows;
    const Top top = clampedTop();
    m_lineCount = m_geometry.text().lineCount();
    m_shownLine = m_geometry.text().lineAt(top.offset);
    m_shownColumn = top.offset - m_geometry.text().lineStart(m_shownLine);
    auto row = std::optional(m_geometry.rowAt(top.offset));
    for (int y = -top.hidden; row && (m_rows.empty() || y < m_size.height()); y += rowHeight()) {
        m_rows.push_back({*row, y});
        row = m_geometry.rowAfter(*row);
    }
    return m_rows;
}

void TextViewport::invalidateWidths()
{
    forgetWidths();
    invalidate();
}

void TextViewport::forgetWidths()
{
    m_widestSeen = 0;
    m_leftmostSeen = 0;
    m_longestSeen = 0;
}

void TextViewport::followEdit(const TextChange& change)
{
    const TextSnapshot& text = m_geometry.text();
    const bool isKnown = !m_rows.empty();
    if (isKnown)
        m_top = m_shown; // for good, though there may be room below again
    // Where lines were rewritten one by one in a single change, the same line stays at the top.
    const bool keepsLines = isKnown && change.replaced.location < m_top.offset &&
                            m_top.offset < change.replaced.end() && text.lineCount() == m_lineCount;
    if (keepsLines) {
        const TextRange line = text.lineContent(m_shownLine);
        m_top.offset = line.location + std::min(m_shownColumn, line.length);
    } else {
        m_top.offset = std::min(mapped(m_top.offset, change), text.length());
    }
    if (!change.replaced.isEmpty())
        forgetWidths(); // they may have gone
    invalidate();
}

const TextViewport::VisibleRow& TextViewport::rowAtY(int y)
{
    const auto& visible = rows();
    const int index = (y - visible.front().y) / rowHeight();
    return visible[size_t(std::clamp(index, 0, int(visible.size()) - 1))];
}

const TextViewport::VisibleRow* TextViewport::rowShowing(const CaretPlace& place)
{
    const TextOffset offset = place.offset;
    const auto& visible = rows();
    // The last row that begins at or before the offset.
    auto it = std::upper_bound(visible.begin(), visible.end(), offset,
                               [](TextOffset value, const VisibleRow& candidate) {
                                   return value < candidate.row.range.location;
                               });
    if (it == visible.begin())
        return nullptr;
    --it;
    const TextRange range = it->row.range;
    if (place.side == CaretSide::Before && range.location == offset &&
        offset > it->row.content.location) {
        if (it == visible.begin())
            return nullptr;
        return &*--it;
    }
    const TextGeometry::Row& row = it->row;
    // Between CR and LF counts as the row's end.
    const TextOffset end =
        row.endsLine() ? m_geometry.text().line(row.line).end() : row.range.end();
    const bool atEnd = row.endsLine() && offset == row.content.end();
    return offset < end || atEnd ? &*it : nullptr;
}

QRect TextViewport::caretRect(const CaretPlace& place)
{
    const VisibleRow* visible = rowShowing(place);
    if (!visible)
        return {};
    return caretAt(left() + m_geometry.xOf(visible->row, place), visible->y);
}

QRect TextViewport::caretAt(double x, int y) const
{
    // Far outside, numbers of pixels do not fit an int.
    const double near = std::clamp(x, -1000.0, m_size.width() + 1000.0);
    // One pixel wide up to the usual sizes of text, then wider with it.
    const int width = std::max(1, int(std::round(rowHeight() / 14.0)));
    return {int(std::round(near)) - width / 2, y, width, rowHeight()};
}

TextRange TextViewport::visibleRange()
{
    const auto& visible = rows();
    const TextSnapshot& text = m_geometry.text();
    return TextRange::between(visible.front().row.content.location,
                              text.line(visible.back().row.line).end());
}

// Scrolling up and down

/// The place at the top with which \a target stands at \a y, as far as there is text.
TextViewport::Top TextViewport::topFor(const TextGeometry::Row& target, qint64 y)
{
    TextGeometry::Row row = target;
    for (; y > 0; y -= rowHeight()) {
        const auto before = m_geometry.rowBefore(row);
        if (!before) {
            y = std::min<qint64>(y, verticalMargin);
            break;
        }
        row = *before;
    }
    while (y <= -rowHeight()) {
        const auto after = m_geometry.rowAfter(row);
        if (!after) {
            y = 0;
            break;
        }
        row = *after;
        y += rowHeight();
    }
    return {row.range.location, int(-y)};
}

void TextViewport::showRowAt(const TextGeometry::Row& target, qint64 y)
{
    m_top = topFor(target, y);
    invalidate();
}

void TextViewport::setScrollsPastEnd(bool past)
{
    m_scrollsPastEnd = past;
    invalidate();
}

/// What may show below the last row.
int TextViewport::roomBelow() const
{
    const int height = m_size.height();
    return m_scrollsPastEnd ? std::max(verticalMargin, height - anchorHeight(height) - rowHeight())
                            : verticalMargin;
}

/// No more room shows around the text than there is, unless all of it fits.
TextViewport::Top TextViewport::clampedTop()
{
    const TextSnapshot& text = m_geometry.text();
    const bool isFirst = m_top.hidden < 0 && m_geometry.rowAt(m_top.offset).range.location == 0;
    const Top top{m_top.offset,
                  std::clamp(m_top.hidden, isFirst ? -verticalMargin : 0, rowHeight() - 1)};
    m_shown = top;
    // Every line has a row at least, so the end can only be in sight when its line is near.
    const qsizetype linesBelow = text.lineCount() - text.lineAt(top.offset).value();
    if (linesBelow * rowHeight() - top.hidden >= m_size.height())
        return top;
    auto row = std::optional(m_geometry.rowAt(top.offset));
    qint64 y = -top.hidden;
    TextGeometry::Row last = *row;
    for (; row && y < m_size.height(); y += rowHeight()) {
        last = *row;
        row = m_geometry.rowAfter(last);
    }
    if (!row && y + roomBelow() < m_size.height())
        m_shown = topFor(last, m_size.height() - rowHeight() - roomBelow());
    return m_shown;
}

void TextViewport::scrollBy(qint64 pixels)
{
    if (!m_geometry.wraps()) {
        scrollToY(y() + pixels);
        return;
    }
    const VisibleRow top = rows().front();
    showRowAt(top.row, top.y - pixels);
}

double TextViewport::unitsPerRow() const
{
    return std::max(1.0, m_geometry.wrapWidth() / m_geometry.font().advance());
}

/// The number of rows before \a offset: what its lines take at least, and what its characters
/// would fill. It never falls as the offset grows, which is all that scrolling by it needs.
double TextViewport::estimatedRow(TextOffset offset) const
{
    const double line = double(m_geometry.text().lineAt(offset).value());
    return m_geometry.wraps() ? line + std::floor(double(offset) / unitsPerRow()) : line;
}

TextOffset TextViewport::offsetOfEstimatedRow(double row) const
{
    const TextSnapshot& text = m_geometry.text();
    if (!m_geometry.wraps())
        return text.lineStart(LineIndex(std::min(qsizetype(row), text.lineCount() - 1)));
    TextOffset low = 0;
    TextOffset high = text.length();
    while (low < high) {
        const TextOffset middle = low + (high - low + 1) / 2;
        if (estimatedRow(middle) <= row)
            low = middle;
        else
            high = middle - 1;
    }
    return low;
}

/// Whether the last row of the text and the room below it stand wholly in sight.
bool TextViewport::isAtEnd()
{
    const VisibleRow& last = rows().back();
    return last.row.range.end() == m_geometry.text().length() &&
           last.y + rowHeight() + roomBelow() <= m_size.height();
}

qint64 TextViewport::y()
{
    rows();
    // Estimates may disagree with where the end really is.
    if (m_geometry.wraps() && isAtEnd())
        return std::max<qint64>(0, contentHeight() - m_size.height());
    return qint64(estimatedRow(m_shown.offset)) * rowHeight() + m_shown.hidden + verticalMargin;
}

qint64 TextViewport::contentHeight()
{
    const VisibleRow& first = rows().front();
    const int room = verticalMargin + roomBelow();
    if (first.row.range.location == 0 && first.y == verticalMargin && isAtEnd())
        return qint64(rows().size()) * rowHeight() + room;
    return (qint64(estimatedRow(m_geometry.text().length())) + 1) * rowHeight() + room;
}

void TextViewport::scrollToY(qint64 y)
{
    const qint64 end = std::max<qint64>(0, contentHeight() - m_size.height());
    y = std::clamp<qint64>(y, 0, end);
    const bool toEnd = m_geometry.wraps() && y == end;
    const qint64 inRows = y - verticalMargin;
    const qint64 row = std::max<qint64>(0, inRows) / rowHeight();
    const TextOffset offset =
        toEnd ? m_geometry.text().length() : offsetOfEstimatedRow(double(row));
    m_top = {m_geometry.rowAt(offset).range.location, int(inRows - row * rowHeight())};
    invalidate();
}

// Scrolling sideways

void TextViewport::noteWidths()
{
    rows();
    if (std::exchange(m_widthsNoted, true))
        return;
    for (const VisibleRow& visible : rows()) {
        const TextGeometry::Edges edges = m_geometry.edgesOf(visible.row);
        m_widestSeen = std::max(m_widestSeen, edges.right);
        m_leftmostSeen = std::min(m_leftmostSeen, edges.left);
        m_longestSeen = std::max(m_longestSeen, visible.row.content.length);
    }
}

/// How wide the longest line is by its length, where that is all that is known of it, and it is
/// written as asked; else 0.
double TextViewport::estimatedReach(bool rightToLeft)
{
    const TextSnapshot& text = m_geometry.text();
    const double reach = double(text.longestLine()) * m_geometry.font().advance();
    if (text.longestLine() <= m_longestSeen || reach <= m_geometry.rightEdge())
        return 0;
    m_longest.follow(text);
    return m_longest.isRightToLeft() == rightToLeft ? reach : 0;
}

double TextViewport::contentWidth()
{
    if (m_geometry.wraps())
        return 0;
    noteWidths();
    // Room for a caret behind the last character.
    return std::max(estimatedReach(false), m_widestSeen) + 2 * textMargin;
}

double TextViewport::minimumX()
{
    if (m_geometry.wraps())
        return 0;
    noteWidths();
    const double reach = estimatedReach(true);
    const double left = reach > 0 ? m_geometry.rightEdge() - reach : 0;
    return std::floor(std::min(left, m_leftmostSeen));
}

void TextViewport::scrollToX(double x)
{
    m_scrollX = x < 0 ? std::max(minimumX(), x) : x;
}

bool TextViewport::settle()
{
    const double left = m_scrollX;
    m_widthsNoted = false; // of a long line, more may become known
    for (const VisibleRow& visible : rows())
        m_geometry.forEachSegment(visible.row, m_scrollX - textMargin, m_scrollX + m_size.width(),
                                  [](const auto&) {});
    scrollToX(m_scrollX + m_geometry.takeShift(left));
    return m_scrollX != left;
}

// Going to a place

void TextViewport::ensureVisible(const CaretPlace& place)
{
    const TextGeometry::Row row = m_geometry.rowAt(place);
    const VisibleRow* visible = rowShowing(place);
    const bool isFirst = row.range.location == 0;
    const bool isLast = row.range.end() == m_geometry.text().length();
    const int highest = isFirst ? verticalMargin : 0;
    const int lowest = std::max(0, m_size.height() - rowHeight() - (isLast ? verticalMargin : 0));
    if (visible && visible->y < 0) {
        showRowAt(row, highest);
    } else if (visible && visible->y + rowHeight() > m_size.height()) {
        showRowAt(row, lowest);
    } else if (!visible) {
        // A row or two outside is scrolled to, what is further away is jumped to.
        const auto after = m_geometry.rowAfter(row);
        const auto before = m_geometry.rowBefore(row);
        if (after && rowShowing({after->range.location}))
            showRowAt(row, highest);
        else if (before && rowShowing({before->range.location}))
            showRowAt(row, lowest);
        else
            showRowAt(row, lowest / 2);
    }
    if (!m_geometry.wraps())
        showSideways(m_geometry.xOf(row, place));
}

void TextViewport::showSideways(double x)
{
    const double space = m_size.width() - 2 * textMargin;
    // Wide, since each scroll paints the whole page, and is made by every so many letters typed.
    const double context = std::min(space / 4, m_geometry.font().advance() * 16);
    if (x < m_scrollX)
        scrollToX(x - context);
    else if (x > m_scrollX + space)
        scrollToX(x - space + context);
}

void TextViewport::returnSideways(const CaretPlace& place)
{
    if (m_geometry.wraps())
        return;
    const double x = m_geometry.xOf(m_geometry.rowAt(place), place);
    if (x >= 0 && x <= m_size.width() - 2 * textMargin)
        scrollToX(0);
    else
        showSideways(x);
}

void TextViewport::centerOn(TextOffset offset)
{
    showRowAt(m_geometry.rowAt(offset), (m_size.height() - rowHeight()) / 2);
    ensureVisible({offset});
}

} // namespace quillory
