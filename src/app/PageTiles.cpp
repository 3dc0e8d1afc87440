#include "app/PageTiles.h"

#include <QPainter>
#include <algorithm>

namespace quillory {

namespace {

constexpr int cacheSize = 96 * 1024; // KB

} // namespace

PageTiles::PageTiles(PageRenderer::Purpose purpose, QObject* parent)
    : QObject(parent), m_purpose(purpose), m_tiles(cacheSize)
{}

void PageTiles::setRenderer(PageRenderer* renderer)
{
    if (m_renderer)
        disconnect(m_renderer, nullptr, this, nullptr);
    m_renderer = renderer;
    if (m_renderer)
        connect(m_renderer, &PageRenderer::rendered, this, &PageTiles::take);
}

void PageTiles::retire(const PageSight& sight)
{
    std::vector<Retired> seen;
    for (const PageTile& tile : m_tiles.keys()) {
        if (tile.page >= sight.stack.count() || !sight.rectOf(tile).intersects(sight.window()))
            continue;
        const double scale = tile.scale;
        seen.push_back(
            {tile.page,
             QRectF(QPointF(tile.part.topLeft()) / scale, QSizeF(tile.part.size()) / scale),
             *m_tiles.object(tile)});
    }
    if (!seen.empty())
        m_retired = std::move(seen);
    m_tiles.clear();
}

void PageTiles::request(const PageSight& sight)
{
    std::vector<PageTile> wanted = sight.tiles();
    std::erase_if(wanted, [this](const PageTile& tile) { return m_tiles.contains(tile); });
    if (!m_renderer || wanted == m_wanted)
        return;
    m_wanted = std::move(wanted);
    m_renderer->request(m_purpose, m_wanted);
}

void PageTiles::take(const PageTile& tile, const QImage& image)
{
    const auto wanted = std::find(m_wanted.begin(), m_wanted.end(), tile);
    if (wanted == m_wanted.end())
        return;
    m_wanted.erase(wanted);
    m_tiles.insert(tile, new QImage(image), int(image.sizeInBytes() / 1024) + 1);
    Q_EMIT drawn(tile);
    if (m_wanted.empty())
        m_retired.clear();
}

void PageTiles::paint(QPainter& painter, int page, const QRect& exposed,
                      const PageSight& sight) const
{
    const QPointF corner = sight.rectOf(page).topLeft();
    const double scale = sight.stack.scale();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const Retired& retired : m_retired)
        if (retired.page == page)
            painter.drawImage(
                QRectF(corner + retired.place.topLeft() * scale, retired.place.size() * scale),
                retired.image);
    for (const PageTile& tile : sight.tilesOf(page, exposed))
        if (const QImage* image = m_tiles.object(tile)) {
            painter.fillRect(sight.rectOf(tile), Qt::white);
            painter.drawImage(sight.rectOf(tile), *image);
        }
}

} // namespace quillory
