#include "view/TextPainter.h"

#include "view/PreeditPlace.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace quillory {

namespace {

QColor toQColor(const Colour& colour)
{
    return QColor::fromRgbF(colour.red, colour.green, colour.blue, colour.alpha);
}

} // namespace

TextPainter::TextPainter(QPainter& painter, TextGeometry& geometry, TextViewport& viewport,
                         Look look)
    : m_painter(painter), m_geometry(geometry), m_viewport(viewport), m_look(std::move(look))
{}

const QColor& TextPainter::selectionColour() const
{
    return m_look.active ? m_look.colours.selection : m_look.colours.inactiveSelection;
}

std::span<const Selection> TextPainter::selectionsTouching(TextRange range) const
{
    const auto& all = m_look.selections;
    const auto first = std::partition_point(all.begin(), all.end(), [&](const Selection& s) {
        return s.range().end() < range.location;
    });
    const auto last = std::partition_point(
        first, all.end(), [&](const Selection& s) { return s.range().location <= range.end(); });
    return {first, last};
}

void TextPainter::paint(const QRect& area)
{
    m_area = area;
    m_banded = {m_geometry.text(), m_look.overlay.lineBands()};
    m_painter.fillRect(area, m_look.colours.background);
    const int height = m_geometry.font().rowHeight();
    // Tall accents reach into the row above, so a row more is painted on either side, clipped.
    for (const TextViewport::VisibleRow& visible : m_viewport.rows()) {
        if (visible.y - height <= area.bottom() && visible.y + 2 * height > area.top())
            paintRow(visible);
    }
    if (!m_look.caretsShown)
        return;
    for (const TextViewport::VisibleRow& visible : m_viewport.rows()) {
        if (visible.y <= area.bottom() && visible.y + height > area.top())
            paintCarets(visible);
    }
}

void TextPainter::paintRow(const TextViewport::VisibleRow& visible)
{
    if (const auto band = m_banded.colourOf(visible.row.line))
        m_painter.fillRect(m_area.left(), visible.y, m_area.width(), m_geometry.font().rowHeight(),
                           toQColor(*band));
    paintSelectedBreak(visible.row, visible.y);
    const double left = m_area.left() - m_viewport.left();
    m_geometry.forEachSegment(visible.row, left, left + m_area.width(),
                              [&](const TextGeometry::Segment& segment) {
                                  const auto runs = m_look.overlay.runs(segment.range);
                                  paintBackgrounds(segment, visible.y, runs);
                                  paintSelections(segment, visible.y);
                                  PreeditPainter preedit = preeditPainter(segment, visible.y);
                                  if (segment.preeditLength > 0)
                                      preedit.paintBackgrounds();
                                  paintGlyphs(segment, visible.y, runs);
                                  if (segment.preeditLength > 0)
                                      preedit.paintUnderlines(m_look.colours.text);
                              });
}

void TextPainter::fill(const TextGeometry::Segment& segment, int y, TextRange range,
                       const QColor& colour)
{
    const TextRange shown = range.intersection(segment.range);
    if (shown.isEmpty())
        return;
    const double origin = m_viewport.left() + segment.x;
    segment.layout->forEachStretch(
        segment.row, segment.indexOf(shown.location), segment.indexOf(shown.end()),
        [&](double left, double right) {
            const int from = int(std::round(std::max(origin + left, double(m_area.left()) - 1)));
            const int to = int(std::round(std::min(origin + right, double(m_area.right()) + 2)));
            m_painter.fillRect(from, y, to - from, m_geometry.font().rowHeight(), colour);
        });
}

void TextPainter::paintBackgrounds(const TextGeometry::Segment& segment, int y,
                                   const std::vector<OverlayRun>& runs)
{
    for (const OverlayRun& run : runs) {
        if (run.attributes.background)
            fill(segment, y, run.range, toQColor(*run.attributes.background));
    }
}

void TextPainter::paintSelections(const TextGeometry::Segment& segment, int y)
{
    for (const Selection& selection : selectionsTouching(segment.range))
        fill(segment, y, selection.range(), selectionColour());
}

/// A selected line break reaches to the window's edge, on the side where the line ends.
void TextPainter::paintSelectedBreak(const TextGeometry::Row& row, int y)
{
    const TextOffset end = row.range.end();
    for (const Selection& selection : selectionsTouching({end, 0})) {
        const TextRange range = selection.range();
        if (range.location > end || range.end() <= end)
            continue;
        const TextGeometry::Edges edges = m_geometry.edgesOf(row);
        const bool rightToLeft = m_geometry.isRightToLeft(row);
        const double x = m_viewport.left() + (rightToLeft ? edges.left : edges.right);
        const int edge = int(std::round(std::clamp(x, -1.0, double(m_area.right()) + 1)));
        const int from = rightToLeft ? m_area.left() : edge;
        const int to = rightToLeft ? edge : m_area.right() + 1;
        m_painter.fillRect(from, y, to - from, m_geometry.font().rowHeight(), selectionColour());
    }
}

void TextPainter::paintGlyphs(const TextGeometry::Segment& segment, int y,
                              const std::vector<OverlayRun>& runs)
{
    // Wrapped, the rows of a layout are painted one by one, but coloured together.
    const TextRange whole{segment.base, segment.layout->length() - segment.preeditLength};
    std::vector<ColourRun> colours;
    for (const OverlayRun& run : whole == segment.range ? runs : m_look.overlay.runs(whole)) {
        if (!run.attributes.foreground)
            continue;
        const int start = segment.indexOf(run.range.location);
        colours.push_back({start, segment.indexOf(run.range.end()) - start,
                           toQColor(*run.attributes.foreground).rgba()});
    }
    if (segment.preeditLength > 0)
        colours = colouredWithPreedit(colours, segment, m_look.preedit);
    if (segment.layout->setColours(colours, m_look.colours.text.rgba()))
        ++m_geometry.counters().layoutsColoured;
    segment.layout->draw(m_painter, {m_viewport.left() + segment.x, double(y)}, segment.row);
}

PreeditPainter TextPainter::preeditPainter(const TextGeometry::Segment& segment, int y)
{
    const TextFont& font = m_geometry.font();
    return {m_painter,       segment,
            m_look.preedit,  {m_viewport.left() + segment.x, double(y)},
            font.baseline(), font.rowHeight()};
}

void TextPainter::paintCarets(const TextViewport::VisibleRow& visible)
{
    const Preedit& preedit = m_geometry.preedit();
    for (const Selection& selection : selectionsTouching(visible.row.range)) {
        const CaretPlace place = m_look.affinity.placeOf(selection.head);
        const bool composing = !preedit.text.isEmpty() && selection.head == preedit.offset;
        if (composing) {
            const PreeditStyle& style = m_look.preedit;
            const QRect caret = preeditCaretRect(m_viewport, style.caret);
            if (style.caretShown && caret.y() == visible.y)
                m_painter.fillRect(caret, style.caretColour.isValid() ? style.caretColour
                                                                      : m_look.colours.caret);
        } else if (m_viewport.rowShowing(place) == &visible) {
            m_painter.fillRect(m_viewport.caretRect(place), m_look.colours.caret);
        }
    }
}

} // namespace quillory
