#include "view/Grain.h"

#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <cmath>
#include <random>

namespace quillory {

namespace {

constexpr int side = 64;          ///< logical pixels
constexpr double fraction = 0.04; ///< of the noise in what it is laid over

QPixmap grainTile(double devicePixelRatio)
{
    const QString key = QStringLiteral("quillory.grain.%1").arg(devicePixelRatio);
    QPixmap tile;
    if (QPixmapCache::find(key, &tile))
        return tile;
    const int pixels = int(std::ceil(side * devicePixelRatio));
    QImage noise(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    std::minstd_rand random; // the same grain every time
    const int alpha = int(std::lround(255 * fraction));
    for (int y = 0; y < pixels; ++y) {
        auto* line = reinterpret_cast<QRgb*>(noise.scanLine(y));
        for (int x = 0; x < pixels; ++x) {
            const int grey = int(random() >> 8U) % (alpha + 1);
            line[x] = qRgba(grey, grey, grey, alpha);
        }
    }
    tile = QPixmap::fromImage(std::move(noise));
    tile.setDevicePixelRatio(devicePixelRatio);
    QPixmapCache::insert(key, tile);
    return tile;
}

} // namespace

void paintGrain(QPainter& painter, const QRect& rect)
{
    const QPixmap tile = grainTile(painter.device()->devicePixelRatioF());
    const double step = tile.deviceIndependentSize().width();
    const auto first = [step](int place) { return int(std::floor(place / step)); };
    painter.save();
    // Tiles painted as one, and smooth ones, would be shared out to threads and waited for.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.setClipRect(rect, Qt::IntersectClip);
    for (int row = first(rect.top()); row <= first(rect.bottom()); ++row)
        for (int column = first(rect.left()); column <= first(rect.right()); ++column)
            painter.drawPixmap(QPointF(column * step, row * step), tile);
    painter.restore();
}

} // namespace quillory
