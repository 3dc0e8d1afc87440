#include "app/FirstPaint.h"

#include <QAbstractScrollArea>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace quillory::test {
namespace {

class Area : public QAbstractScrollArea
{
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent*) override { ++paints; }
};

class FirstPaintTest : public ::testing::Test
{
protected:
    Area area;
    QSignalSpy told{new FirstPaint(area), &FirstPaint::happened};
};

TEST_F(FirstPaintTest, IsToldOnceAndOnlyAfterThePaint)
{
    int paintsWhenTold = 0;
    QObject::connect(area.findChild<FirstPaint*>(), &FirstPaint::happened,
                     [&] { paintsWhenTold = area.paints; });
    area.show();
    ASSERT_TRUE(told.wait());
    EXPECT_GT(paintsWhenTold, 0);
    area.viewport()->repaint();
    QTest::keyClick(&area, Qt::Key_F9);
    EXPECT_FALSE(told.wait(100));
    EXPECT_EQ(told.count(), 1);
}

TEST_F(FirstPaintTest, IsToldBeforeAKeyIsTaken)
{
    area.show();
    QTest::keyClick(&area, Qt::Key_F9);
    EXPECT_EQ(told.count(), 1);
    EXPECT_FALSE(told.wait(100));
}

TEST_F(FirstPaintTest, IsNotWaitedForWhereNothingIsSeen)
{
    area.setUpdatesEnabled(false);
    area.show();
    ASSERT_TRUE(told.wait());
    EXPECT_EQ(area.paints, 0);
}

} // namespace
} // namespace quillory::test
