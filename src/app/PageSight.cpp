#include "app/PageSight.h"

#include <algorithm>

namespace quillory {

namespace {

constexpr int tileSide = 1024; // device pixels

} // namespace

QRect PageSight::rectOf(int page) const
{
    const QSize pixels = stack.pixels(page);
    const int width = std::max(size.width(), stack.extent().width());
    return {QPoint((width - pixels.width()) / 2, stack.top(page)) - scrolled, pixels};
}

QRectF PageSight::rectOf(const PageTile& tile) const
{
    return {QPointF(rectOf(tile.page).topLeft()) + QPointF(tile.part.topLeft()) / ratio,
            QSizeF(tile.part.size()) / ratio};
}

std::vector<PageTile> PageSight::tilesOf(int page, const QRect& visible) const
{
    const QRect rect = rectOf(page);
    const QRect whole({}, (QSizeF(rect.size()) * ratio).toSize());
    const QRect seen = visible.intersected(rect).translated(-rect.topLeft());
    std::vector<PageTile> tiles;
    if (seen.isEmpty())
        return tiles;
    const auto first = [&](int place) { return int(place * ratio) / tileSide; };
    for (int y = first(seen.top()); y <= first(seen.bottom() + 1); ++y)
        for (int x = first(seen.left()); x <= first(seen.right() + 1); ++x) {
            const QRect part =
                QRect(x * tileSide, y * tileSide, tileSide, tileSide).intersected(whole);
            if (!part.isEmpty())
                tiles.push_back({page, stack.scale() * ratio, part});
        }
    return tiles;
}

std::vector<PageTile> PageSight::tiles() const
{
    std::vector<PageTile> found;
    const auto add = [&](const QRect& area) {
        const int first = std::max(0, stack.pageAt(scrolled.y() + area.top()));
        for (int page = first; page < stack.count(); ++page) {
            if (rectOf(page).top() > area.bottom())
                break;
            for (const PageTile& tile : tilesOf(page, area))
                if (std::find(found.begin(), found.end(), tile) == found.end())
                    found.push_back(tile);
        }
    };
    add(window());
    add(window().translated(0, size.height() / 2));
    return found;
}

} // namespace quillory
