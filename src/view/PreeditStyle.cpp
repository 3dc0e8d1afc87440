#include "view/PreeditStyle.h"

#include <QPainter>
#include <algorithm>

namespace quillory {

namespace {

Qt::PenStyle penStyle(QTextCharFormat::UnderlineStyle style)
{
    switch (style) {
    case QTextCharFormat::NoUnderline:
        return Qt::NoPen;
    case QTextCharFormat::DashUnderline:
        return Qt::DashLine;
    case QTextCharFormat::DotLine:
    case QTextCharFormat::WaveUnderline:
    case QTextCharFormat::SpellCheckUnderline:
        return Qt::DotLine;
    case QTextCharFormat::DashDotLine:
        return Qt::DashDotLine;
    case QTextCharFormat::DashDotDotLine:
        return Qt::DashDotDotLine;
    case QTextCharFormat::SingleUnderline:
        break;
    }
    return Qt::SolidLine;
}

} // namespace

PreeditPainter::PreeditPainter(QPainter& painter, const TextGeometry::Segment& segment,
                               const PreeditStyle& style, QPointF origin, int baseline, int height)
    : m_painter(painter), m_segment(segment), m_style(style), m_origin(origin),
      m_baseline(baseline), m_height(height)
{}

/// Of the composed text from \a start to \a end, what is on this row.
template<class Visit>
void PreeditPainter::forEachStretch(int start, int end, Visit&& visit)
{
    const LineLayout& layout = *m_segment.layout;
    const int row = m_segment.row;
    const int first = m_segment.preeditStart + std::clamp(start, 0, m_segment.preeditLength);
    const int last = m_segment.preeditStart + std::clamp(end, 0, m_segment.preeditLength);
    const int from = std::max(first, layout.rowStart(row));
    const int to = std::min(last, layout.rowEnd(row));
    if (from < to)
        layout.forEachStretch(row, from, to, [&](double left, double right) {
            visit(QRectF(m_origin.x() + left, m_origin.y(), right - left, m_height));
        });
}

void PreeditPainter::paintBackgrounds()
{
    for (const PreeditStyle::Format& part : m_style.formats) {
        if (part.format.background().style() == Qt::NoBrush)
            continue;
        forEachStretch(part.start, part.start + part.length, [&](const QRectF& area) {
            m_painter.fillRect(area, part.format.background());
        });
    }
}

/// Parts that the input method says nothing of are underlined, so that they look unfinished.
void PreeditPainter::paintUnderlines(const QColor& colour)
{
    QTextCharFormat plain;
    plain.setUnderlineStyle(QTextCharFormat::SingleUnderline);
    int done = 0;
    for (const PreeditStyle::Format& part : m_style.formats) {
        paintUnderline(done, part.start, plain, colour);
        paintUnderline(part.start, part.start + part.length, part.format, colour);
        done = std::max(done, part.start + part.length);
    }
    paintUnderline(done, m_segment.preeditLength, plain, colour);
}

void PreeditPainter::paintUnderline(int start, int end, const QTextCharFormat& format,
                                    const QColor& colour)
{
    const Qt::PenStyle style = penStyle(format.underlineStyle());
    if (style == Qt::NoPen)
        return;
    QColor lineColour = colour;
    if (format.underlineColor().isValid())
        lineColour = format.underlineColor();
    else if (format.foreground().style() != Qt::NoBrush)
        lineColour = format.foreground().color();
    const double y = std::min(m_origin.y() + m_baseline + 2.5, m_origin.y() + m_height - 0.5);
    forEachStretch(start, end, [&](const QRectF& area) {
        // The next part's line begins a pixel further right, so that two do not look like one.
        m_painter.setPen(QPen(lineColour, 1, style, Qt::FlatCap));
        m_painter.drawLine(QPointF(area.left(), y), QPointF(area.right() - 1, y));
    });
}

std::vector<ColourRun> colouredWithPreedit(const std::vector<ColourRun>& runs,
                                           const TextGeometry::Segment& segment,
                                           const PreeditStyle& style)
{
    const int first = segment.preeditStart;
    const int last = first + segment.preeditLength;
    std::vector<ColourRun> result;
    for (const ColourRun& run : runs) {
        const int end = run.start + run.length;
        if (run.start < first)
            result.push_back({run.start, std::min(end, first) - run.start, run.colour});
        if (end > last) {
            const int start = std::max(run.start, last);
            result.push_back({start, end - start, run.colour});
        }
    }
    for (const PreeditStyle::Format& part : style.formats) {
        if (part.format.foreground().style() == Qt::NoBrush)
            continue;
        const int start = std::clamp(first + part.start, first, last);
        const int end = std::clamp(first + part.start + part.length, start, last);
        if (start < end)
            result.push_back({start, end - start, part.format.foreground().color().rgba()});
    }
    std::sort(result.begin(), result.end(),
              [](const ColourRun& a, const ColourRun& b) { return a.start < b.start; });
    return result;
}

} // namespace quillory
