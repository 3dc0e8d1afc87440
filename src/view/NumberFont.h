#pragma once

#include <QFont>
#include <QRawFont>
#include <array>
#include <span>

class QPainter;

namespace quillory {

class TextFont;

/// The font in which rows of text are numbered, and its measures in logical pixels.
///
/// The label of a row is laid out as if in a line of the text's own font: that is its height, and
/// so, centred on the row, it has its digits on the row's baseline.
class NumberFont
{
public:
    /// Beside text of the usual sizes it is \a wanted; larger text gets larger numbers, and smaller
    /// text smaller ones.
    NumberFont(const QFont& wanted, const TextFont& text);

    const QFont& font() const { return m_font; }
    /// Of the label, and from its top down to the baseline.
    double height() const { return m_height; }
    double ascent() const { return m_ascent; }
    double widthOf(qsizetype number) const;
    /// Of so many digits "8".
    double widthOfDigits(int count) const { return m_digits[8] * count; }

    struct Placed
    {
        qsizetype number;
        QPointF baseline; ///< where its first digit begins
    };
    /// Paints \a numbers in the painter's pen, all in one go: a page of them is shaped no more
    /// often than their ten digits.
    void draw(QPainter& painter, std::span<const Placed> numbers) const;

private:
    QFont m_font;
    QRawFont m_rawFont;
    QList<quint32> m_glyphs; ///< of the ten digits; empty where the font has none of its own
    double m_height;
    double m_ascent;
    std::array<double, 10> m_digits; ///< widths
};

} // namespace quillory
