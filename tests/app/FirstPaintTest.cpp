#include "app/FirstPaint.h"

#include <QSignalSpy>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

namespace quillory::test {
namespace {

class Painted : public QWidget
{
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent*) override { ++paints; }
};

TEST(FirstPaintTest, IsToldOnceAndOnlyAfterThePaint)
{
    Painted widget;
    int paintsWhenTold = 0;
    QSignalSpy told(new FirstPaint(widget), &FirstPaint::happened);
    QObject::connect(widget.findChild<FirstPaint*>(), &FirstPaint::happened,
                     [&] { paintsWhenTold = widget.paints; });
    widget.show();
    ASSERT_TRUE(told.wait());
    EXPECT_GT(paintsWhenTold, 0);
    widget.repaint();
    EXPECT_FALSE(told.wait(100));
    EXPECT_EQ(told.count(), 1);
}

TEST(FirstPaintTest, IsNotWaitedForWhereNothingIsSeen)
{
    Painted window;
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.setUpdatesEnabled(false);
    QSignalSpy told(new FirstPaint(window), &FirstPaint::happened);
    window.show();
    ASSERT_TRUE(told.wait());
    EXPECT_EQ(window.paints, 0);
    window.setUpdatesEnabled(true);
    window.repaint();
    EXPECT_FALSE(told.wait(100));
    EXPECT_EQ(told.count(), 1);
}

} // namespace
} // namespace quillory::test
