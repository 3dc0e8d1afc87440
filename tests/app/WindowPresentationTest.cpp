#include "AppFixture.h"

#include "app/AutoHidingMenuBar.h"
#include "app/TitleBarButtons.h"
#include "app/WindowPresentation.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QApplication>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QWindow>

namespace quillory {
namespace {

class WindowPresentationTest : public test::AppFixture
{
protected:
    DocumentWindow& openShown()
    {
        DocumentWindow& window = openNew();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        return window;
    }
    static AutoHidingMenuBar& menuBar(DocumentWindow& window)
    {
        return *qobject_cast<AutoHidingMenuBar*>(window.menuBar());
    }
    static void point(DocumentWindow& window, QPoint place)
    {
        QTest::mouseMove(window.windowHandle(), place);
        QCoreApplication::processEvents();
    }
};

TEST_F(WindowPresentationTest, FloatingTwiceIsNormalAgain)
{
    DocumentWindow& window = openShown();
    const Qt::WindowFlags flags = window.windowFlags();
    const QWindow* handle = window.windowHandle();
    const QString floats = QStringLiteral("View/Keep on Top");
    EXPECT_FALSE(command(window, floats)->isChecked());
    choose(window, floats);
    EXPECT_TRUE(command(window, floats)->isChecked());
    EXPECT_TRUE(handle->flags() & Qt::WindowStaysOnTopHint);
    choose(window, floats);
    EXPECT_FALSE(command(window, floats)->isChecked());
    EXPECT_EQ(window.windowFlags(), flags);
    EXPECT_FALSE(handle->flags() & Qt::WindowStaysOnTopHint);
    // It was neither hidden nor made anew.
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.windowHandle(), handle);
}

TEST_F(WindowPresentationTest, BarHidesInFullScreenAndComesBackAtTheEdge)
{
    DocumentWindow& window = openShown();
    TitleBarButtons& buttons = window.titleBarButtons();
    EXPECT_EQ(buttons.alpha(), 0.7);
    EXPECT_TRUE(menuBar(window).isRevealed());
    const int textTop = window.view().mapTo(&window, QPoint()).y();
    ASSERT_GT(textTop, 10);

    press(window, {QStringLiteral("F11")});
    ASSERT_TRUE(QTest::qWaitFor([&] { return menuBar(window).height() == 0; }));
    EXPECT_EQ(buttons.alpha(), 0.0);
    EXPECT_EQ(window.view().mapTo(&window, QPoint()).y(), 0);

    point(window, {200, 300});
    EXPECT_FALSE(menuBar(window).isRevealed());
    point(window, {200, 0});
    EXPECT_TRUE(menuBar(window).isRevealed());
    EXPECT_GT(menuBar(window).height(), 10);
    EXPECT_TRUE(buttons.infoButton().isVisible());
    // The text stays where it is below.
    EXPECT_EQ(window.view().mapTo(&window, QPoint()).y(), 0);
    point(window, {200, menuBar(window).height() - 2});
    EXPECT_TRUE(menuBar(window).isRevealed());
    point(window, {200, 300});
    EXPECT_FALSE(menuBar(window).isRevealed());
    EXPECT_EQ(menuBar(window).height(), 0);

    // The keyboard brings it too, and its commands work without it.
    menuBar(window).setFocus();
    QCoreApplication::processEvents();
    EXPECT_TRUE(menuBar(window).isRevealed());
    window.view().setFocus();
    QCoreApplication::processEvents();
    EXPECT_FALSE(menuBar(window).isRevealed());
    QTest::keyPress(window.windowHandle(), Qt::Key_Alt);
    QTest::keyClick(window.windowHandle(), Qt::Key_V, Qt::AltModifier);
    QTest::keyRelease(window.windowHandle(), Qt::Key_Alt);
    QWidget* menu = QApplication::activePopupWidget();
    ASSERT_TRUE(menu);
    QCoreApplication::processEvents();
    EXPECT_TRUE(menuBar(window).isRevealed());
    QTest::keyClick(menu, Qt::Key_Escape);
    if (menuBar(window).hasFocus())
        QTest::keyClick(&menuBar(window), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !menuBar(window).isRevealed(); }));
    press(window, {QStringLiteral("'ab'"), QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(textOf(window), QString());

    press(window, {QStringLiteral("F11")});
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return window.view().mapTo(&window, QPoint()).y() == textTop; }));
    EXPECT_TRUE(menuBar(window).isRevealed());
    EXPECT_EQ(buttons.alpha(), 0.7);
}

TEST_F(WindowPresentationTest, AnotherScreenIsToldOf)
{
    DocumentWindow& window = openShown();
    window.titleBarButtons().setAlpha(0.2);
    QSignalSpy posted(&notifications, &NotificationCenter::posted);
    Q_EMIT window.windowHandle()->screenChanged(window.screen());
    ASSERT_EQ(posted.size(), 1);
    EXPECT_EQ(posted[0][0].toString(), u"WINDOWDIDCHANGESCREENNF");
    EXPECT_EQ(window.titleBarButtons().alpha(), 0.7);
}

TEST_F(WindowPresentationTest, WindowKeepsItsWidthInFullScreen)
{
    defaults.setValue(keys::proposedSize, true);
    DocumentWindow& window = openShown();
    for (const int normal : {600, 601}) {
        window.resize(normal, 400);
        ASSERT_TRUE(QTest::qWaitFor([&] { return window.width() == normal; }));
        QCoreApplication::processEvents();
        const int width = window.view().width();
        press(window, {QStringLiteral("F11")});
        ASSERT_TRUE(QTest::qWaitFor([&] { return window.width() > normal; }));
        QCoreApplication::processEvents();
        EXPECT_EQ(window.view().width(), width);
        EXPECT_GT(window.view().height(), 400);
        press(window, {QStringLiteral("F11")});
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window.isFullScreen(); }));
    }
}

} // namespace
} // namespace quillory
