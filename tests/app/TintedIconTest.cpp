#include "app/TintedIcon.h"

#include <QApplication>
#include <QPalette>
#include <gtest/gtest.h>

/// Outside of any namespace, as the macro wants it.
static void readResources()
{
    Q_INIT_RESOURCE(quillory);
}

namespace quillory::test {
namespace {

/// The colour of the pixel of \a icon that covers most; invalid where none covers anything.
QColor inkOf(const QIcon& icon, QIcon::Mode mode)
{
    const QImage image = icon.pixmap(QSize(64, 64), 1, mode).toImage();
    QColor ink;
    int most = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (const QColor colour = image.pixelColor(x, y); colour.alpha() > most) {
                ink = colour;
                most = colour.alpha();
            }
        }
    }
    return ink;
}

TEST(TintedIcon, FollowsLightAndDark)
{
    readResources();
    const QPalette before = QApplication::palette();
    const QIcon icon = tintedIcon(QStringLiteral("actions"));
    for (const QColor colour : {QColor(Qt::black), QColor(Qt::white), QColor(200, 40, 40)}) {
        QPalette palette = before;
        palette.setColor(QPalette::ButtonText, colour);
        palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
        QApplication::setPalette(palette);
        EXPECT_EQ(inkOf(icon, QIcon::Normal).rgb(), colour.rgb());
        EXPECT_EQ(inkOf(icon, QIcon::Disabled).rgb(), QColor(Qt::gray).rgb());
    }
    QApplication::setPalette(before);
    EXPECT_FALSE(inkOf(tintedIcon(QStringLiteral("nothing")), QIcon::Normal).isValid());
}

} // namespace
} // namespace quillory::test
