#pragma once

#include "view/TextViewport.h"

#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>
#include <vector>

namespace quillory {

/// Bubbles that pop up over a stretch of text for half a second, to lead the eye to it. The text
/// below is neither laid out nor changed for them, the mouse and the keyboard do not notice them,
/// and nothing is left of them afterwards. Where the desktop wants no animations, they stand still.
class FindIndicator : public QWidget
{
    Q_OBJECT

public:
    static constexpr int duration = 500; ///< milliseconds

    /// \a geometry and \a viewport are what \a parent shows; both must outlive this.
    FindIndicator(TextGeometry& geometry, TextViewport& viewport, QWidget* parent);

    /// Pops up over what of \a range is in sight.
    void pop(TextRange range);
    /// Goes at once, as when the text below has moved.
    void dismiss();
    bool isShowing() const { return m_animation.state() == QAbstractAnimation::Running; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Bubble
    {
        QRect rect; ///< in the viewport
        QPixmap text;
    };

    QPixmap textOf(const QRect& rect) const;
    void paintBubble(QPainter& painter, const Bubble& bubble, double scale) const;

    TextGeometry& m_geometry;
    TextViewport& m_viewport;
    std::vector<Bubble> m_bubbles;
    QVariantAnimation m_animation;
    bool m_still = false;
};

} // namespace quillory
