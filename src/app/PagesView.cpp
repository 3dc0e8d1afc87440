#include "app/PagesView.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

namespace quillory {

namespace {

constexpr double pointsPerInch = 72;
constexpr int spacing = PageStack::spacing;
constexpr int longest = 1'000'000'000; // pixels of all pages together; scroll bars count in int
constexpr QColor markColour(255, 225, 80);
constexpr QColor currentMarkColour(255, 150, 50);

} // namespace

PagesView::PagesView(PageRenderer::Purpose purpose, QWidget* parent)
    : QAbstractScrollArea(parent), m_purpose(purpose), m_tiles(purpose)
{
    setFrameShape(QFrame::NoFrame);
    // One that comes and goes would change the width that pages are fitted to.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    connect(&m_tiles, &PageTiles::drawn, this, [this](const PageTile& tile) {
        viewport()->update(sight().rectOf(tile).toAlignedRect());
    });
}

void PagesView::setRenderer(PageRenderer* renderer)
{
    m_mayDraw = false;
    m_tiles.setRenderer(renderer);
    m_tiles.retire(sight());
    m_tiles.cancel();
}

void PagesView::setPageSizes(std::vector<QSizeF> sizes)
{
    const Place before = place();
    const bool wasEmpty = pageCount() == 0;
    m_mayDraw = m_tiles.hasRenderer();
    m_stack.setSizes(std::move(sizes));
    if (wasEmpty || before.page >= pageCount()) {
        refit();
        updateCurrent();
    } else {
        show(before);
    }
    viewport()->update();
}

void PagesView::redraw()
{
    m_tiles.retire(sight());
    m_tiles.cancel();
    viewport()->update();
}

// Scale

double PagesView::zoom() const
{
    return m_stack.scale() * pointsPerInch / logicalDpiY();
}

double PagesView::bounded(double scale) const
{
    const double printed = logicalDpiY() / pointsPerInch;
    return m_stack.bounded(std::clamp(scale, smallestZoom * printed, largestZoom * printed),
                           longest);
}

double PagesView::fittedScale() const
{
    if (m_fit == Fit::None || m_stack.widest() <= 0)
        return m_stack.scale();
    const int bar = verticalScrollBar()->sizeHint().width();
    const QSize room =
        maximumViewportSize() - QSize(2 * spacing + (verticalScrollBar()->isHidden() ? bar : 0), 0);
    double scale = room.width() / m_stack.widest();
    if (m_fit == Fit::Page && m_current < pageCount())
        scale = std::min(scale, (room.height() - 2 * spacing - m_stack.captionHeight()) /
                                    pageSize(m_current).height());
    return bounded(scale);
}

/// What is at \a anchor, a place of the viewport, stays there.
void PagesView::rescale(double scale, QPointF anchor)
{
    setHorizontalScrollBarPolicy(m_fit == Fit::None ? Qt::ScrollBarAsNeeded
                                                    : Qt::ScrollBarAlwaysOff);
    const int page = m_stack.pageAt(verticalScrollBar()->value() + int(anchor.y()));
    const QPointF point = page >= 0 ? inPage(page, anchor) : QPointF();
    if (scale != m_stack.scale())
        m_tiles.retire(sight());
    m_stack.setScale(scale);
    updateBars();
    if (page >= 0) {
        const QPointF moved = rectOf(page).topLeft() + point * m_stack.scale() - anchor;
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + qRound(moved.x()));
        verticalScrollBar()->setValue(verticalScrollBar()->value() + qRound(moved.y()));
    }
    viewport()->update();
    Q_EMIT zoomChanged();
    Q_EMIT scrolled();
}

void PagesView::setZoom(double zoom)
{
    m_fit = Fit::None;
    rescale(bounded(zoom * logicalDpiY() / pointsPerInch), viewport()->rect().center());
}

void PagesView::setFit(Fit fit)
{
    m_fit = fit;
    refit();
}

void PagesView::setCaptionHeight(int height)
{
    m_stack.setCaptionHeight(height);
    refit();
}

// Places

PageSight PagesView::sight() const
{
    return {m_stack, QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value()),
            viewport()->size(), devicePixelRatioF()};
}

QPointF PagesView::inPage(int page, QPointF position) const
{
    return (position - rectOf(page).topLeft()) / m_stack.scale();
}

int PagesView::pageAt(QPoint position) const
{
    const int page = m_stack.pageAt(position.y() + verticalScrollBar()->value());
    return page >= 0 && rectOf(page).adjusted(0, 0, 0, m_stack.captionHeight()).contains(position)
               ? page
               : -1;
}

void PagesView::updateBars()
{
    const QSize room = viewport()->size();
    const QSize extent = m_stack.extent();
    const int last = pageCount() - 1;
    const int line = fontMetrics().height() * 3;
    QScrollBar& vertical = *verticalScrollBar();
    vertical.setRange(0, std::max(0, extent.height() - room.height()));
    vertical.setSingleStep(line);
    // A whole page that fits is turned; of others a little stays in sight.
    const int page = last < 0 ? 0 : m_stack.pixels(std::min(m_current, last)).height() + spacing;
    vertical.setPageStep(m_fit == Fit::Page ? page + m_stack.captionHeight()
                                            : std::max(line, room.height() - line));
    horizontalScrollBar()->setRange(0, std::max(0, extent.width() - room.width()));
    horizontalScrollBar()->setPageStep(room.width());
    horizontalScrollBar()->setSingleStep(line);
}

/// The first page of which half, or that fills half of the window.
void PagesView::updateCurrent()
{
    int page = m_stack.pageAt(verticalScrollBar()->value());
    if (page < 0)
        return;
    const QRect room = viewport()->rect();
    const auto isMostlySeen = [&](int each) {
        const QRect rect = rectOf(each);
        return 2 * rect.intersected(room).height() >= std::min(rect.height(), room.height());
    };
    while (page + 1 < pageCount() && rectOf(page + 1).top() < room.bottom() && !isMostlySeen(page))
        ++page;
    setCurrent(page);
}

void PagesView::setCurrent(int page)
{
    if (std::exchange(m_current, page) != page)
        Q_EMIT currentPageChanged(page);
}

std::pair<int, int> PagesView::pagesInSight() const
{
    const int top = verticalScrollBar()->value();
    return {std::max(0, m_stack.pageAt(top)), m_stack.pageAt(top + viewport()->height())};
}

void PagesView::goToPage(int page)
{
    if (pageCount() == 0)
        return;
    page = std::clamp(page, 0, pageCount() - 1);
    verticalScrollBar()->setValue(m_stack.top(page) - spacing);
    setCurrent(page); // also where the pages end too early for it to be at the top
}

void PagesView::reveal(int page, const QRectF& rect)
{
    if (page < 0 || page >= pageCount())
        return;
    const QRect shown(rectOf(page).topLeft() + (rect.topLeft() * m_stack.scale()).toPoint(),
                      (rect.size() * m_stack.scale()).toSize());
    constexpr int margin = 24; // pixels
    QScrollBar& vertical = *verticalScrollBar();
    const QRect room = viewport()->rect();
    if (shown.top() < 0 || shown.bottom() > room.bottom()) {
        const int top = m_stack.top(page) - spacing;
        // From the upper end of the page where that shows it too.
        const bool showsFromTop = shown.bottom() + vertical.value() - top < room.height() - margin;
        vertical.setValue(showsFromTop ? top
                                       : shown.center().y() + vertical.value() - room.height() / 2);
        setCurrent(page);
    }
    if (shown.left() < 0 || shown.right() > room.right())
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() + shown.left() - margin);
}

PagesView::Place PagesView::place() const
{
    const int page = m_stack.pageAt(verticalScrollBar()->value());
    return {m_fit, zoom(), std::max(0, page), page < 0 ? QPointF() : inPage(page, {})};
}

void PagesView::show(const Place& place)
{
    m_fit = place.fit;
    if (pageCount() == 0)
        return;
    rescale(m_fit == Fit::None ? bounded(place.zoom * logicalDpiY() / pointsPerInch)
                               : fittedScale(),
            {});
    const int page = std::min(place.page, pageCount() - 1);
    const QPoint corner = (place.corner * m_stack.scale()).toPoint() + rectOf(page).topLeft();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + corner.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + corner.y());
    updateCurrent();
    viewport()->update();
}

// Events

void PagesView::resizeEvent(QResizeEvent*)
{
    // The upper end stays where it is.
    rescale(fittedScale(), QPointF());
    updateCurrent();
}

void PagesView::scrollContentsBy(int, int)
{
    updateCurrent();
    viewport()->update();
    Q_EMIT scrolled();
}

void PagesView::keyPressEvent(QKeyEvent* event)
{
    QScrollBar& bar = *verticalScrollBar();
    switch (event->key()) {
    case Qt::Key_Home:
        bar.setValue(0);
        break;
    case Qt::Key_End:
        bar.setValue(bar.maximum());
        break;
    case Qt::Key_Space:
        bar.triggerAction(event->modifiers() & Qt::ShiftModifier
                              ? QAbstractSlider::SliderPageStepSub
                              : QAbstractSlider::SliderPageStepAdd);
        break;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void PagesView::wheelEvent(QWheelEvent* event)
{
    // Thumbnails are as wide as their bar.
    if (!(event->modifiers() & Qt::ControlModifier) || m_purpose == PageRenderer::Overview) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    constexpr double step = 120; // of a wheel, as Qt counts
    const double factor = std::pow(zoomStep, event->angleDelta().y() / step);
    m_fit = Fit::None;
    rescale(bounded(m_stack.scale() * factor), event->position());
    event->accept();
}

void PagesView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_isDragging = true;
    m_dragged = event->pos();
    viewport()->setCursor(Qt::ClosedHandCursor);
}

void PagesView::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_isDragging)
        return;
    const QPoint moved = m_dragged - event->pos();
    m_dragged = event->pos();
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() + moved.y());
}

void PagesView::mouseReleaseEvent(QMouseEvent*)
{
    m_isDragging = false;
    viewport()->unsetCursor();
}

void PagesView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        viewport()->update();
}

// Drawing

void PagesView::setMarks(std::vector<PageMarks> marks, int current)
{
    m_marks = std::move(marks);
    m_currentMark = current;
    viewport()->update();
}

void PagesView::paintEvent(QPaintEvent* event)
{
    constexpr int darkness = 112; // per cent, as QColor::darker() has it
    QPainter painter(viewport());
    painter.fillRect(event->rect(), palette().color(QPalette::Window).darker(darkness));
    const int y =
        verticalScrollBar()->value() + event->rect().top() - m_stack.captionHeight() - spacing;
    for (int page = std::max(0, m_stack.pageAt(y)); page < pageCount(); ++page) {
        const QRect rect = rectOf(page);
        if (rect.top() > event->rect().bottom())
            break;
        painter.setPen(QColor(0, 0, 0, 90));
        painter.drawRect(rect.adjusted(-1, -1, 0, 0));
        painter.fillRect(rect, Qt::white);
        painter.save();
        painter.setClipRect(rect);
        m_tiles.paint(painter, page, event->rect(), sight());
        paintMarks(painter, page, rect);
        painter.restore();
        if (m_stack.captionHeight() > 0)
            paintCaption(
                painter, page,
                QRect(rect.left(), rect.bottom() + 1, rect.width(), m_stack.captionHeight()));
    }
    painter.end();
    if (m_mayDraw && pageCount() > 0)
        m_tiles.request(sight());
}

void PagesView::paintMarks(QPainter& painter, int page, const QRect& rect)
{
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    const auto first =
        std::partition_point(m_marks.begin(), m_marks.end(),
                             [page](const PageMarks& marks) { return marks.page < page; });
    for (auto each = first; each != m_marks.end() && each->page == page; ++each) {
        const bool isCurrent = each - m_marks.begin() == m_currentMark;
        QRegion region; // in which those that overlap are one
        for (const QRectF& mark : each->rects)
            region += QRectF(rect.topLeft() + mark.topLeft() * m_stack.scale(),
                             mark.size() * m_stack.scale())
                          .adjusted(-1, -1, 1, 1)
                          .toAlignedRect();
        for (const QRect& part : region)
            painter.fillRect(part, isCurrent ? currentMarkColour : markColour);
    }
}

void PagesView::paintCaption(QPainter&, int, const QRect&) {}

} // namespace quillory
