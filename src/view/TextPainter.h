#pragma once

#include "text/Selection.h"
#include "view/BandedLines.h"
#include "view/PreeditStyle.h"
#include "view/TextViewColours.h"
#include "view/TextViewport.h"

#include <span>

class QPainter;

namespace quillory {

/// Paints rows of a text: the band of the current line, then backgrounds, selections, glyphs and
/// carets.
class TextPainter
{
public:
    struct Look
    {
        const Overlay& overlay;
        const std::vector<Selection>& selections;
        const TextViewColours& colours;
        bool active = true;       ///< the view has the focus
        bool caretsShown = false; ///< as they blink
        PreeditStyle preedit = {};
        CaretAffinity affinity = {};
    };

    TextPainter(QPainter& painter, TextGeometry& geometry, TextViewport& viewport, Look look);

    /// Paints what of the rows in sight lies in \a area.
    void paint(const QRect& area);

private:
    void paintRow(const TextViewport::VisibleRow& visible);
    void paintBackgrounds(const TextGeometry::Segment& segment, int y,
                          const std::vector<OverlayRun>& runs);
    void paintSelections(const TextGeometry::Segment& segment, int y);
    void paintSelectedBreak(const TextGeometry::Row& row, int y);
    void paintGlyphs(const TextGeometry::Segment& segment, int y,
                     const std::vector<OverlayRun>& runs);
    PreeditPainter preeditPainter(const TextGeometry::Segment& segment, int y);
    void paintCarets(const TextViewport::VisibleRow& visible);
    void fill(const TextGeometry::Segment& segment, int y, TextRange range, const QColor& colour);
    const QColor& selectionColour() const;
    std::span<const Selection> selectionsTouching(TextRange range) const;

    QPainter& m_painter;
    TextGeometry& m_geometry;
    TextViewport& m_viewport;
    Look m_look;
    QRect m_area;
    BandedLines m_banded;
};

} // namespace quillory
