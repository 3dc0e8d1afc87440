#pragma once

#include "view/CaretAffinity.h"
#include "view/TextFont.h"

#include <QColor>
#include <QGlyphRun>
#include <QString>
#include <QTextLayout>
#include <functional>
#include <utility>
#include <vector>

class QPainter;

namespace quillory {

/// A stretch of a laid-out text, in UTF-16 code units, that has a colour of its own.
struct ColourRun
{
    int start = 0;
    int length = 0;
    QRgb colour = 0;
    bool operator==(const ColourRun&) const = default;
};

/// A line of text, or a piece of a long one, laid out in one row or, wrapped, in several.
///
/// Shaping knows nothing of colours. For painting, the glyphs are divided by colour and kept; that
/// costs a fraction of shaping with a format for each colour, and a line whose colours change is
/// not shaped again. Indexes are UTF-16 code units from the start of the text; x is measured in
/// logical pixels from the left edge.
class LineLayout
{
public:
    struct Style
    {
        double wrapWidth = 0; ///< 0: a single row
        /// Auto takes the direction of the first strong character.
        Qt::LayoutDirection direction = Qt::LayoutDirectionAuto;
        /// How far the text begins behind a tab stop, in a single row.
        double tabPhase = 0;
    };

    LineLayout(const QString& text, const TextFont& font, const Style& style);

    int length() const { return m_length; }
    int rowCount() const { return m_rowCount; }
    int rowOf(int index) const; ///< an index where two rows meet is on the later one
    int rowStart(int row) const;
    int rowEnd(int row) const;
    double rowLeft(int row) const;
    double rowWidth(int row) const;
    /// Leaves the last of several rows out, as if the text ended before it.
    void dropLastRow();

    /// Whether the line is written from right to left.
    bool isRightToLeft() const { return m_rightToLeft; }
    /// Whether that, or something in it is.
    bool hasRightToLeft() const { return m_hasRightToLeft; }

    /// Where a caret at \a index shows that hangs on the character on \a side.
    double xAt(int row, int index, CaretSide side = CaretSide::Any) const;
    /// The place between two characters of \a row that is nearest to \a x.
    int indexAt(int row, double x) const;
    /// The character of \a row at \a x, or the nearest.
    int characterAt(int row, double x) const;
    /// Of the character at \a index.
    bool isRightToLeftAt(int row, int index) const;

    /// Calls \a visit with the left and right edge of each stretch that the characters from
    /// \a start to \a end, both on \a row, take up; with both directions in a line there may be
    /// several.
    void forEachStretch(int row, int start, int end,
                        const std::function<void(double, double)>& visit) const;

    /// Divides the glyphs by colour: \a runs in order, \a text for what is in none of them.
    /// False when they were divided so already.
    bool setColours(const std::vector<ColourRun>& runs, QRgb text);
    /// Paints \a row, in the colours set last, with its left upper corner at \a position.
    void draw(QPainter& painter, QPointF position, int row) const;

private:
    struct ColouredGlyphs
    {
        QRgb colour;
        QGlyphRun glyphs;
    };

    /// Where a character stands in its row.
    struct Character
    {
        double left;
        double right;
        bool rightToLeft;
    };

    Character characterFrom(int row, int index) const;
    double widthOf(int row) const;
    std::pair<double, double> edges(int row) const;

    QTextLayout m_layout;
    int m_length;
    int m_rowCount = 0;
    double m_width = 0; ///< of a single row
    bool m_rightToLeft;
    bool m_hasRightToLeft;
    std::vector<ColourRun> m_colours;
    QRgb m_textColour = 0;
    std::vector<std::vector<ColouredGlyphs>> m_glyphs; ///< by row
};

} // namespace quillory
