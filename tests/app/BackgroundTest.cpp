#include "foundation/Background.h"

#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QThread>
#include <gtest/gtest.h>

namespace quillory {
namespace {

TEST(Background, KeepsNoPaintingWaiting)
{
    constexpr int work = 1500; // milliseconds
    for (int i = 0; i < 2 * QThread::idealThreadCount(); ++i)
        backgroundPool().start([] { QThread::msleep(work); });
    QImage image(2000, 2000, QImage::Format_ARGB32_Premultiplied);
    QElapsedTimer elapsed;
    elapsed.start();
    QPainter painter(&image);
    painter.fillRect(image.rect(), QColor(1, 2, 3, 100));
    painter.end();
    EXPECT_LT(elapsed.elapsed(), work);
    backgroundPool().waitForDone();
}

} // namespace
} // namespace quillory
