#include "app/TintedIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace quillory {

namespace {

class TintedIconEngine : public QIconEngine
{
public:
    explicit TintedIconEngine(QString name) : m_name(std::move(name)) {}

    QIconEngine* clone() const override { return new TintedIconEngine(m_name); }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPixmap pixmap = drawn(rect.size(), painter->device()->devicePixelRatioF(), mode);
        painter->drawPixmap(rect, pixmap);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        return drawn(size, 1, mode);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal) override
    {
        return drawn(size, 1, mode); // in device pixels already
    }

private:
    static QColor colourFor(QIcon::Mode mode)
    {
        const QPalette palette = QGuiApplication::palette();
        if (mode == QIcon::Disabled)
            return palette.color(QPalette::Disabled, QPalette::ButtonText);
        return palette.color(QPalette::Active, mode == QIcon::Selected ? QPalette::HighlightedText
                                                                       : QPalette::ButtonText);
    }

    QPixmap drawn(const QSize& size, qreal ratio, QIcon::Mode mode) const
    {
        const QColor colour = colourFor(mode);
        const QSize pixels = (QSizeF(size) * ratio).toSize();
        const QString key = QStringLiteral("tinted/%1/%2/%3x%4/%5")
                                .arg(m_name, colour.name(QColor::HexArgb))
                                .arg(pixels.width())
                                .arg(pixels.height())
                                .arg(ratio);
        QPixmap pixmap;
        if (QPixmapCache::find(key, &pixmap))
            return pixmap;
        pixmap = QPixmap(pixels);
        pixmap.fill(Qt::transparent);
        QFile file(QStringLiteral(":/icons/%1.svg").arg(m_name));
        if (file.open(QIODevice::ReadOnly)) {
            QSvgRenderer renderer(file.readAll().replace("currentColor", colour.name().toLatin1()));
            renderer.setAspectRatioMode(Qt::KeepAspectRatio);
            QPainter painter(&pixmap);
            painter.setOpacity(colour.alphaF());
            renderer.render(&painter);
        }
        pixmap.setDevicePixelRatio(ratio);
        QPixmapCache::insert(key, pixmap);
        return pixmap;
    }

    QString m_name;
};

} // namespace

QIcon tintedIcon(const QString& name)
{
    return QIcon(new TintedIconEngine(name));
}

} // namespace quillory
