#include "view/LineLayout.h"

#include <QPainter>
#include <QTextOption>
#include <algorithm>

namespace quillory {

namespace {

// Wider than any piece of text, within what the layout's 26.6 fixed-point numbers hold.
constexpr double unlimitedWidth = 16'000'000;

bool isRightToLeft(QChar unit)
{
    // Nothing below U+0590 is; the scripts of the upper planes that are have these surrogates.
    const char16_t code = unit.unicode();
    if (code < 0x0590)
        return false;
    return unit.direction() == QChar::DirR || unit.direction() == QChar::DirAL ||
           (code >= 0x202B && code <= 0x202E) || (code >= 0x2067 && code <= 0x2068) ||
           (code >= 0xD802 && code <= 0xD803) || (code >= 0xD83A && code <= 0xD83B);
}

} // namespace

LineLayout::LineLayout(const QString& text, const TextFont& font, const Style& style)
    : m_layout(text, font.font()),
      m_rightToLeft(std::any_of(text.begin(), text.end(), isRightToLeft))
{
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    option.setTabStopDistance(font.tabDistance());
    option.setTextDirection(style.direction);
    option.setWrapMode(style.wrapWidth > 0 ? QTextOption::WrapAtWordBoundaryOrAnywhere
                                           : QTextOption::NoWrap);
    m_layout.setTextOption(option);
    m_layout.setCacheEnabled(true);
    m_layout.beginLayout();
    for (;;) {
        QTextLine line = m_layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(style.wrapWidth > 0 ? style.wrapWidth : unlimitedWidth);
        // Fallback fonts may be taller; the baseline stays where it is.
        line.setPosition({0, font.baseline() - line.ascent()});
    }
    m_layout.endLayout();
}

int LineLayout::rowOf(int index) const
{
    const QTextLine line = m_layout.lineForTextPosition(index);
    return line.isValid() ? line.lineNumber() : rowCount() - 1;
}

int LineLayout::rowStart(int row) const
{
    return m_layout.lineAt(row).textStart();
}

int LineLayout::rowEnd(int row) const
{
    const QTextLine line = m_layout.lineAt(row);
    return line.textStart() + line.textLength();
}

double LineLayout::rowWidth(int row) const
{
    const QTextLine line = m_layout.lineAt(row);
    return m_rightToLeft ? line.naturalTextWidth() : line.cursorToX(rowEnd(row));
}

double LineLayout::xAt(int row, int index) const
{
    return m_layout.lineAt(row).cursorToX(index);
}

int LineLayout::indexAt(int row, double x) const
{
    return m_layout.lineAt(row).xToCursor(std::clamp(x, -1.0, unlimitedWidth));
}

void LineLayout::forEachStretch(int row, int start, int end,
                                const std::function<void(double, double)>& visit) const
{
    const QTextLine line = m_layout.lineAt(row);
    if (!m_rightToLeft) {
        visit(line.cursorToX(start), line.cursorToX(end));
        return;
    }
    double left = 0;
    double right = 0;
    for (int index = start; index < end;) {
        const int next = std::clamp(m_layout.nextCursorPosition(index), index + 1, end);
        const double leading = line.cursorToX(index, QTextLine::Leading);
        const double trailing = line.cursorToX(index, QTextLine::Trailing);
        const auto [low, high] = std::minmax(leading, trailing);
        if (index > start && (low == right || high == left)) {
            left = std::min(left, low);
            right = std::max(right, high);
        } else {
            if (right > left)
                visit(left, right);
            left = low;
            right = high;
        }
        index = next;
    }
    if (right > left)
        visit(left, right);
}

bool LineLayout::setColours(const std::vector<ColourRun>& runs, QRgb text)
{
    if (!m_glyphs.empty() && m_textColour == text && m_colours == runs)
        return false;
    m_colours = runs;
    m_textColour = text;
    m_glyphs.assign(size_t(rowCount()), {});
    for (int row = 0; row < rowCount(); ++row) {
        const QTextLine line = m_layout.lineAt(row);
        const int rowLimit = rowEnd(row);
        int done = rowStart(row);
        const auto add = [&](int limit, QRgb colour) {
            limit = std::min(limit, rowLimit);
            if (limit <= done)
                return;
            for (const QGlyphRun& glyphs : line.glyphRuns(done, limit - done))
                m_glyphs[size_t(row)].push_back({colour, glyphs});
            done = limit;
        };
        for (const ColourRun& run : runs) {
            add(run.start, text);
            add(run.start + run.length, run.colour);
        }
        add(rowLimit, text);
    }
    return true;
}

void LineLayout::draw(QPainter& painter, QPointF position, int row) const
{
    for (const ColouredGlyphs& run : m_glyphs[size_t(row)]) {
        painter.setPen(QColor::fromRgba(run.colour));
        painter.drawGlyphRun(position, run.glyphs);
    }
}

} // namespace quillory
