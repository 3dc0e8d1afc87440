#pragma once

#include <QPixmap>
#include <QProxyStyle>
#include <array>

namespace quillory {

/// The look of a text view's scroll bars: another style's. A click beside the handle jumps there,
/// and what the handle moves in is kept as an image, since the toolkit shares such a gradient out
/// to other threads and waits for them at every step.
class ScrollBarStyle : public QProxyStyle
{
public:
    /// Takes over \a base; without one, the application's style is taken once more.
    explicit ScrollBarStyle(QStyle* base = nullptr);

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;

private:
    /// What the look of a groove depends on.
    struct Look
    {
        QSize size; ///< logical pixels
        double ratio;
        State state;
        SubControls active;
        qint64 palette;
        bool operator==(const Look&) const = default;
    };
    struct Groove
    {
        Look look{};
        QPixmap image;
    };

    mutable std::array<Groove, 2> m_grooves; ///< horizontal and vertical
};

} // namespace quillory
