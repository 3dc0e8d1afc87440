#pragma once

#include "app/PageMarks.h"
#include "app/PageTiles.h"

#include <QAbstractScrollArea>

namespace quillory {

/// Pages one below the other. Draws what is in sight, in tiles, and keeps a bounded number of them;
/// a page may be drawn later than it is scrolled to, and is white until then.
class PagesView : public QAbstractScrollArea
{
    Q_OBJECT

public:
    enum class Fit
    {
        Width, ///< the widest page is as wide as the window
        Page,  ///< a whole page is in sight
        None
    };

    /// What is in sight.
    struct Place
    {
        Fit fit = Fit::Width;
        double zoom = 1; ///< 1 for the printed size, where nothing else is fitted
        int page = 0;
        QPointF corner; ///< of the window, from that of the page; points
    };

    static constexpr double smallestZoom = 0.1;
    static constexpr double largestZoom = 8;

    explicit PagesView(PageRenderer::Purpose purpose = PageRenderer::Reading,
                       QWidget* parent = nullptr);

    /// What draws the pages, once their sizes are set. It may be null, or else goes only after
    /// another one was set, or this is gone.
    void setRenderer(PageRenderer* renderer);
    /// Of all pages, in points. Those in sight stay so as far as they are there.
    void setPageSizes(std::vector<QSizeF> sizes);
    /// The pages look different now.
    void redraw();

    int pageCount() const { return m_stack.count(); }
    QSizeF pageSize(int page) const { return m_stack.points(page); } ///< points
    int currentPage() const { return m_current; }                    ///< from 0
    /// The first and the last; the last is before the first where there are none.
    std::pair<int, int> pagesInSight() const;
    /// Shows its upper end.
    void goToPage(int page);
    /// Scrolls no more than it takes to have it in sight.
    void reveal(int page, const QRectF& rect);

    double zoom() const; ///< 1 for the printed size
    Fit fit() const { return m_fit; }
    void setZoom(double zoom);
    void setFit(Fit fit);
    void zoomIn() { setZoom(zoom() * zoomStep); }
    void zoomOut() { setZoom(zoom() / zoomStep); }

    Place place() const;
    void show(const Place& place);
    using QWidget::show;

    /// In the order of their pages; one of them, counted from 0, is marked differently, -1 for
    /// none.
    void setMarks(std::vector<PageMarks> marks, int current);

    /// True when all that is in sight was drawn.
    bool isDrawn() const { return m_tiles.isComplete(); }

Q_SIGNALS:
    void currentPageChanged(int page);
    void zoomChanged();
    /// Other pages may be in sight.
    void scrolled();

protected:
    /// Below a page there is room for a caption.
    void setCaptionHeight(int height);
    virtual void paintCaption(QPainter& painter, int page, const QRect& rect);
    /// The page at a place of the viewport, its caption included; -1 for none.
    int pageAt(QPoint position) const;

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    static constexpr double zoomStep = 1.2;

    double bounded(double scale) const;
    double fittedScale() const;
    void rescale(double scale, QPointF anchor);
    void refit() { rescale(fittedScale(), viewport()->rect().center()); }
    void updateBars();
    void updateCurrent();
    void setCurrent(int page);

    PageSight sight() const;
    QRect rectOf(int page) const { return sight().rectOf(page); } ///< of the viewport
    QPointF inPage(int page, QPointF position) const;
    void paintMarks(QPainter& painter, int page, const QRect& rect);

    PageRenderer::Purpose m_purpose;
    bool m_mayDraw = false; ///< the sizes are those of its pages
    PageStack m_stack;
    Fit m_fit = Fit::Width;
    int m_current = 0;
    PageTiles m_tiles;
    std::vector<PageMarks> m_marks;
    int m_currentMark = -1;
    QPoint m_dragged; ///< where the mouse was last
    bool m_isDragging = false;
};

} // namespace quillory
