#pragma once

#include "view/LineNumberView.h"

namespace quillory {

/// The ruler with an image of its own for the markers of lines: a tag as wide as the ruler that
/// points at the text.
class MarkerLineNumberView : public LineNumberView
{
    Q_OBJECT

public:
    using LineNumberView::LineNumberView;

    void setRuleThickness(int thickness) override;
    /// ruleThickness() by 13 logical pixels; made when it is first asked for.
    const QPixmap& markerImage();
    /// \a size: in logical pixels.
    QPixmap markerImageWithSize(QSize size) const;

protected:
    QPixmap imageFor(const LineNumberMarker& marker) override;

private:
    void drawMarkerImageIntoRep(QPainter& painter, QSizeF size) const;

    QPixmap m_markerImage;
};

} // namespace quillory
