#pragma once

#include "editing/LineIndices.h"
#include "view/LineNumberLook.h"
#include "view/LineNumberMarker.h"
#include "view/NumberFont.h"

#include <QPointer>
#include <QWidget>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace quillory {

class TextViewWidget;

/// The ruler left of a text: the number of every line at its first row, and the markers of lines.
/// It takes as much room as the widest number needs. A press on it selects a line, a drag lines.
///
/// It looks up what it shows when it paints, so it never lags behind the text; and after an edit or
/// a scroll only those rows are painted anew whose numbers are others. Lines are counted from 0,
/// and shown from 1. Coordinates are logical pixels; y is that of the text's viewport.
class LineNumberView : public QWidget
{
    Q_OBJECT

public:
    /// Shows the lines of \a view, as a child of it.
    explicit LineNumberView(TextViewWidget& view);

    TextViewWidget* clientView() const;
    /// Shows the lines of another view, as a child of that; null for none at all.
    void setClientView(TextViewWidget* view);

    // The lines. The list is made when it is asked for, once after each edit or change of client;
    // making it, the ruler finds out whether it has to be wider or narrower, which it becomes when
    // the events at hand are handled.

    const LineIndices& lineIndices();
    void invalidateLineIndices() { m_lineIndices.reset(); }
    LineIndex lineNumberForCharacterIndex(TextOffset index)
    {
        return lineIndices().lineNumberForCharacterIndex(index);
    }
    /// The line at \a y, or the nearest in sight.
    LineIndex lineNumberForLocation(int y) const;

    // The markers, of which a line has one at most. They keep their line's number whatever is
    // edited.

    /// By the number of the line.
    const std::map<qsizetype, LineNumberMarker>& linesToMarkers() const { return m_markers; }
    void setMarkers(const std::vector<LineNumberMarker>& markers);
    void addMarker(const LineNumberMarker& marker);
    void removeMarker(const LineNumberMarker& marker);
    /// Null where there is none.
    const LineNumberMarker* markerAtLine(LineIndex line) const;

    // Looks.

    struct TextAttributes
    {
        QFont font;
        QColor color;
    };

    const LineNumberLook& look() const { return m_look; }
    void setLook(const LineNumberLook& look);
    /// The background, blended with black; invalid without a background.
    const QColor& darkBackgroundColor() const { return m_darkBackground; }
    TextAttributes textAttributes() const { return {m_font.font(), m_look.textColor}; }
    TextAttributes markerTextAttributes() const
    {
        return {m_font.font(), m_look.alternateTextColor};
    }

    int ruleThickness() const { return m_thickness; }
    virtual void setRuleThickness(int thickness);
    /// What the widest number needs.
    int requiredThickness();
    /// Takes room for the number \a count at least from now on, so that the text of a file that is
    /// still being read does not move.
    void expectLines(qsizetype count);

    /// A number in sight.
    struct Label
    {
        LineIndex line;
        QRect row;    ///< of the line's first row, from edge to edge
        QRectF rect;  ///< of the label's box, which has its digits on the row's baseline
        int baseline; ///< y
    };
    std::vector<Label> labels() const;

protected:
    /// What is drawn for \a marker.
    virtual QPixmap imageFor(const LineNumberMarker& marker) { return marker.image; }
    void drawHashMarksAndLabelsInRect(QPainter& painter, const QRect& rect);

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    /// The first row of a line.
    struct Place
    {
        int y;
        LineIndex line;
        bool operator<(const Place& other) const
        {
            return std::pair(y, line.value()) < std::pair(other.y, other.line.value());
        }
    };

    void textDidChange();
    void calculateLines();
    void followView();
    void followFont();
    void takeRoom();
    std::vector<Place> places() const;
    void drawMarker(QPainter& painter, const LineNumberMarker& marker, const QRect& row);

    QPointer<TextViewWidget> m_client;
    std::optional<LineIndices> m_lineIndices; ///< none while it is not known
    std::map<qsizetype, LineNumberMarker> m_markers;
    LineNumberLook m_look;
    QColor m_darkBackground;
    QFont m_textFont; ///< that m_font was made for
    NumberFont m_font;
    int m_thickness = 0;
    qsizetype m_expectedLines = 0;
    bool m_thicknessPending = false;
    std::vector<Place> m_shown; ///< what was painted last
};

} // namespace quillory
