#include "view/TextViewScrolling.h"

#include "view/ScrollBarStyle.h"

#include <QAbstractScrollArea>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QWheelEvent>

namespace quillory {

namespace {

/// What a bar shows of an \a extent that grows while one types: in steps, since painting the bar
/// takes longer than painting the line. In pixels, at least \a extent.
qint64 steadyExtent(qint64 extent, qint64 page)
{
    const qint64 step = std::max<qint64>(1, page / 4);
    return extent <= page ? extent : (extent + step - 1) / step * step;
}

} // namespace

TextViewScrolling::TextViewScrolling(QAbstractScrollArea& area, TextViewport& viewport)
    : m_area(area), m_viewport(viewport)
{
    auto* style = new ScrollBarStyle;
    style->setParent(this);
    for (QScrollBar* bar : {area.verticalScrollBar(), area.horizontalScrollBar()}) {
        bar->setFocusPolicy(Qt::NoFocus);
        bar->setStyle(style);
    }
    connect(area.verticalScrollBar(), &QScrollBar::actionTriggered, this,
            &TextViewScrolling::followBarAction);
}

void TextViewScrolling::updateBars()
{
    const QScopedValueRollback moving(m_movingBars, true);
    const int row = m_viewport.rowHeight();
    const QSize size = m_viewport.size();
    QScrollBar& vertical = *m_area.verticalScrollBar();
    m_vertical.fit(vertical, m_viewport.contentHeight(), size.height(), row);
    m_vertical.show(vertical, m_viewport.y());
    QScrollBar& horizontal = *m_area.horizontalScrollBar();
    const double left = m_viewport.minimumX();
    const double right = std::max(m_viewport.contentWidth(), m_viewport.x() + size.width());
    m_horizontal.fit(horizontal, steadyExtent(qint64(right - left), size.width()), size.width(),
                     row);
    m_horizontal.show(horizontal, qint64(m_viewport.x() - left));
}

void TextViewScrolling::followBars(int dx, int dy)
{
    if (m_movingBars)
        return;
    if (dy != 0)
        m_viewport.scrollToY(m_vertical.position(m_area.verticalScrollBar()->value()));
    if (dx != 0)
        m_viewport.scrollToX(double(m_horizontal.position(m_area.horizontalScrollBar()->value())) +
                             m_viewport.minimumX());
    Q_EMIT scrolled();
}

/// Steps and pages are exact, though the bar counts in estimates or in more than a pixel.
void TextViewScrolling::followBarAction(int action)
{
    const int row = m_viewport.rowHeight();
    const int page = std::max(row, m_viewport.size().height() - row);
    int pixels = 0;
    switch (action) {
    case QScrollBar::SliderSingleStepAdd:
        pixels = row;
        break;
    case QScrollBar::SliderSingleStepSub:
        pixels = -row;
        break;
    case QScrollBar::SliderPageStepAdd:
        pixels = page;
        break;
    case QScrollBar::SliderPageStepSub:
        pixels = -page;
        break;
    default:
        return;
    }
    const QScopedValueRollback moving(m_movingBars, true);
    QScrollBar& bar = *m_area.verticalScrollBar();
    m_viewport.scrollBy(pixels);
    m_vertical.show(bar, m_viewport.y());
    bar.setSliderPosition(bar.value());
    Q_EMIT scrolled();
}

void TextViewScrolling::by(QPoint pixels)
{
    if (pixels.y() != 0)
        m_viewport.scrollBy(pixels.y());
    if (pixels.x() != 0) {
        const double end = std::max(0.0, m_viewport.contentWidth() - m_viewport.size().width());
        m_viewport.scrollToX(std::clamp(m_viewport.x() + pixels.x(), m_viewport.minimumX(), end));
    }
    Q_EMIT scrolled();
}

void TextViewScrolling::wheel(const QWheelEvent& event)
{
    const WheelMove move = m_wheel.read(event, m_viewport.rowHeight());
    if (!move.pixels.isNull())
        by(move.pixels);
    if (move.zoomSteps != 0)
        Q_EMIT zoomRequested(move.zoomSteps);
}

} // namespace quillory
