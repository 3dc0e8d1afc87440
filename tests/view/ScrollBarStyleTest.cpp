#include "view/ScrollBarStyle.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOptionSlider>
#include <gtest/gtest.h>

namespace quillory::test {
namespace {

/// Counts how often it paints a groove.
class CountingStyle : public QProxyStyle
{
public:
    explicit CountingStyle(const QString& key) : QProxyStyle(key) {}

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override
    {
        grooves += option->subControls.testFlag(SC_ScrollBarGroove) ? 1 : 0;
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }

    mutable int grooves = 0;
};

QStyleOptionSlider bar(Qt::Orientation orientation, int position)
{
    QStyleOptionSlider option;
    option.orientation = orientation;
    option.rect = orientation == Qt::Vertical ? QRect(0, 0, 16, 400) : QRect(0, 0, 400, 16);
    option.state = QStyle::State_Enabled | QStyle::State_Active;
    if (orientation == Qt::Horizontal)
        option.state |= QStyle::State_Horizontal;
    option.subControls = QStyle::SC_All;
    option.maximum = 1000;
    option.pageStep = 300;
    option.sliderPosition = option.sliderValue = position;
    return option;
}

QImage drawn(const QStyle& style, const QStyleOptionSlider& option, double ratio)
{
    QImage image((QSizeF(420, 420) * ratio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    painter.translate(3, 5);
    painter.setClipRect(option.rect); // as a widget does
    style.drawComplexControl(QStyle::CC_ScrollBar, &option, &painter);
    return image;
}

TEST(ScrollBarStyleTest, LooksLikeTheStyleBelow)
{
    const QString fusion = QStringLiteral("Fusion");
    const QProxyStyle plain(fusion);
    const ScrollBarStyle style(QStyleFactory::create(fusion));
    for (const double ratio : {1.0, 1.25, 2.0})
        for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal})
            for (const int position : {0, 1, 500, 700, 1000}) {
                QStyleOptionSlider option = bar(orientation, position);
                const auto same = [&](const char* state) {
                    EXPECT_EQ(drawn(style, option, ratio), drawn(plain, option, ratio))
                        << ratio << ' ' << orientation << ' ' << position << ' ' << state;
                };
                same("at rest");
                option.activeSubControls = QStyle::SC_ScrollBarSlider;
                option.state |= QStyle::State_MouseOver;
                same("under the pointer");
                option.activeSubControls = QStyle::SC_ScrollBarAddLine;
                option.state |= QStyle::State_Sunken;
                same("pressed");
                option.palette.setColor(QPalette::Button, Qt::darkBlue);
                option.palette.setColor(QPalette::Window, Qt::darkBlue);
                same("in other colours");
                option.rect.setWidth(option.rect.width() - 2);
                same("of another size");
            }
}

TEST(ScrollBarStyleTest, PaintsTheGrooveOnce)
{
    auto* below = new CountingStyle(QStringLiteral("Fusion"));
    const ScrollBarStyle style(below);
    for (int position = 100; position < 200; ++position)
        for (const Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal})
            drawn(style, bar(orientation, position), 1);
    EXPECT_EQ(below->grooves, 2);
}

} // namespace
} // namespace quillory::test
