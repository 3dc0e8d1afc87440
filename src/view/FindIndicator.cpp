#include "view/FindIndicator.h"

#include "view/RangeRects.h"
#include "view/TextPainter.h"

#include <QPainter>
#include <QStyle>
#include <cmath>
#include <numbers>

namespace quillory {

namespace {

// In shares of the duration: the bubble is largest at the first, has its size at the second, and
// begins to fade at the third.
constexpr double popped = 0.15;
constexpr double settled = 0.35;
constexpr double fading = 0.6;
constexpr double largestScale = 1.3;
constexpr int padding = 3; // logical pixels between the text and the bubble's edge
constexpr int shadow = 2;
constexpr double radius = 4;

constexpr QColor bubbleColour(255, 226, 90);
constexpr QColor textColour(32, 28, 10);

double scaleAt(double time)
{
    if (time >= settled)
        return 1;
    const double phase =
        time < popped ? time / popped / 2 : 0.5 + (time - popped) / (settled - popped) / 2;
    return 1 + (largestScale - 1) * std::sin(phase * std::numbers::pi);
}

double opacityAt(double time)
{
    return time <= fading ? 1 : (1 - time) / (1 - fading);
}

/// The room that a bubble over \a rect takes when it is largest.
QRect roomFor(const QRect& rect)
{
    const int x = int(rect.width() * (largestScale - 1) / 2) + 2 * padding + 2 * shadow;
    const int y = int(rect.height() * (largestScale - 1) / 2) + 2 * padding + 2 * shadow;
    return rect.adjusted(-x, -y, x, y);
}

} // namespace

FindIndicator::FindIndicator(TextGeometry& geometry, TextViewport& viewport, QWidget* parent)
    : QWidget(parent), m_geometry(geometry), m_viewport(viewport)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
    m_animation.setDuration(duration);
    m_animation.setStartValue(0.0);
    m_animation.setEndValue(1.0);
    connect(&m_animation, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(&m_animation, &QVariantAnimation::finished, this, &FindIndicator::dismiss);
}

void FindIndicator::pop(TextRange range)
{
    dismiss();
    QRect room;
    for (const QRect& rect : visibleRects(m_geometry, m_viewport, range)) {
        const QRect inside = rect.intersected(parentWidget()->rect());
        if (inside.isEmpty())
            continue;
        m_bubbles.push_back({inside, textOf(inside)});
        room |= roomFor(inside);
    }
    if (m_bubbles.empty())
        return;
    m_still = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) == 0;
    setGeometry(room.intersected(parentWidget()->rect()));
    show();
    raise();
    m_animation.start();
}

void FindIndicator::dismiss()
{
    m_animation.stop();
    m_bubbles.clear();
    hide();
}

QPixmap FindIndicator::textOf(const QRect& rect) const
{
    const TextViewColours colours{textColour, bubbleColour, textColour, bubbleColour, bubbleColour};
    const Overlay plain;
    const std::vector<Selection> nothing;
    QPixmap text(rect.size() * devicePixelRatio());
    text.setDevicePixelRatio(devicePixelRatio());
    QPainter painter(&text);
    painter.translate(-rect.topLeft());
    TextPainter(painter, m_geometry, m_viewport, {plain, nothing, colours}).paint(rect);
    return text;
}

void FindIndicator::paintBubble(QPainter& painter, const Bubble& bubble, double scale) const
{
    const QRectF rect = bubble.rect.translated(-pos());
    painter.save();
    painter.translate(rect.center());
    painter.scale(scale, scale);
    painter.translate(-rect.center());
    const QRectF outline = rect.adjusted(-padding, -1, padding, 1);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 60));
    painter.drawRoundedRect(outline.translated(0, shadow), radius, radius);
    painter.setBrush(bubbleColour);
    painter.drawRoundedRect(outline, radius, radius);
    painter.drawPixmap(rect.topLeft(), bubble.text);
    painter.setPen(QPen(bubbleColour.darker(130), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(outline.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    painter.restore();
}

void FindIndicator::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const double time = m_still ? 0 : m_animation.currentValue().toDouble();
    painter.setOpacity(opacityAt(time));
    for (const Bubble& bubble : m_bubbles)
        paintBubble(painter, bubble, m_still ? 1 : scaleAt(time));
}

} // namespace quillory
