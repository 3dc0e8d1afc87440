#pragma once

#include <QColor>
#include <QWidget>

namespace quillory {

/// A ground that goes over from one colour to another along the reading direction; clicks pass.
class GradientView : public QWidget
{
    Q_OBJECT

public:
    explicit GradientView(QWidget* parent);

    void setColours(const QColor& from, const QColor& to);
    const QColor& endColour() const { return m_to; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor m_from;
    QColor m_to;
};

/// A line of one pixel of the screen, whatever its scale, at the top or at the leading edge.
class LineView : public QWidget
{
    Q_OBJECT

public:
    LineView(Qt::Orientation orientation, QWidget* parent);

    void setColour(const QColor& colour);
    const QColor& colour() const { return m_colour; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::Orientation m_orientation;
    QColor m_colour;
};

} // namespace quillory
