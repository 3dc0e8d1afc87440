#pragma once

#include "view/TextGeometry.h"

#include <QTextCharFormat>
#include <vector>

class QPainter;

namespace quillory {

/// How the text that an input method is composing is shown. Indexes are UTF-16 code units from its
/// beginning.
struct PreeditStyle
{
    struct Format
    {
        int start = 0;
        int length = 0;
        QTextCharFormat format;
    };

    int caret = 0;
    bool caretShown = true;
    QColor caretColour; ///< invalid for that of every caret
    std::vector<Format> formats;
};

/// Paints the composed text's marks on one row of a layout.
class PreeditPainter
{
public:
    /// \a origin is where the row's x 0 and top are; \a baseline counts from there.
    PreeditPainter(QPainter& painter, const TextGeometry::Segment& segment,
                   const PreeditStyle& style, QPointF origin, int baseline, int height);

    /// What goes below the glyphs.
    void paintBackgrounds();
    /// What goes above them; \a colour is for lines that have none of their own.
    void paintUnderlines(const QColor& colour);

private:
    template<class Visit>
    void forEachStretch(int start, int end, Visit&& visit);
    void paintUnderline(int start, int end, const QTextCharFormat& format, const QColor& colour);

    QPainter& m_painter;
    const TextGeometry::Segment& m_segment;
    const PreeditStyle& m_style;
    QPointF m_origin;
    int m_baseline;
    int m_height;
};

/// The colours of \a segment's glyphs where composed text stands in it: \a runs, which are those of
/// the text around it, and the composed text's own.
std::vector<ColourRun> colouredWithPreedit(const std::vector<ColourRun>& runs,
                                           const TextGeometry::Segment& segment,
                                           const PreeditStyle& style);

} // namespace quillory
