#pragma once

#include "app/PageSight.h"

#include <QCache>
#include <QImage>
#include <QObject>

class QPainter;

namespace quillory {

/// The tiles of pages that were drawn: a bounded number of those that are shown, and, until these
/// are all there, those that were shown before.
class PageTiles : public QObject
{
    Q_OBJECT

public:
    explicit PageTiles(PageRenderer::Purpose purpose, QObject* parent = nullptr);

    /// What draws them; null for nothing. It goes only after another one was set, or this is gone.
    void setRenderer(PageRenderer* renderer);
    bool hasRenderer() const { return m_renderer != nullptr; }

    /// The pages will look different: keeps what is in sight, so that nothing is white meanwhile.
    void retire(const PageSight& sight);
    /// What was asked for is not wanted any more.
    void cancel() { m_wanted.clear(); }
    /// Asks for what \a sight lacks.
    void request(const PageSight& sight);
    /// True when all that was asked for is there.
    bool isComplete() const { return m_wanted.empty(); }

    /// Paints the part \a exposed of the window, as far as it is drawn.
    void paint(QPainter& painter, int page, const QRect& exposed, const PageSight& sight) const;

Q_SIGNALS:
    void drawn(const quillory::PageTile& tile);

private:
    struct Retired
    {
        int page;
        QRectF place; ///< points
        QImage image;
    };

    void take(const PageTile& tile, const QImage& image);

    PageRenderer::Purpose m_purpose;
    PageRenderer* m_renderer = nullptr;
    QCache<PageTile, QImage> m_tiles;
    std::vector<Retired> m_retired;
    std::vector<PageTile> m_wanted;
};

} // namespace quillory
