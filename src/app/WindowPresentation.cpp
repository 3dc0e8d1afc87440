#include "app/WindowPresentation.h"

#include "app/AutoHidingMenuBar.h"
#include "app/DocumentWindow.h"
#include "app/TitleBarButtons.h"
#include "document/Document.h"
#include "foundation/NotificationCenter.h"
#include "view/TextViewWidget.h"

#include <QEvent>
#include <QWindow>

namespace quillory {

WindowPresentation::WindowPresentation(DocumentWindow& window)
    : QObject(&window), m_window(window), m_menuBar(new AutoHidingMenuBar(window))
{
    window.setMenuBar(m_menuBar);
    window.installEventFilter(this);
}

bool WindowPresentation::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (!std::exchange(m_followsScreen, true))
            connect(m_window.windowHandle(), &QWindow::screenChanged, this,
                    &WindowPresentation::windowDidChangeScreen);
        followState();
        break;
    case QEvent::WindowStateChange:
        followState();
        break;
    case QEvent::WindowActivate:
        windowDidBecomeKey();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

/// The other lists of the window are arranged whenever they are looked at.
void WindowPresentation::windowDidBecomeKey()
{
    m_window.document().syntaxColouring().rearrangeDefinitions();
}

// Floating

bool WindowPresentation::isFloating() const
{
    return m_window.windowFlags() & Qt::WindowStaysOnTopHint;
}

void WindowPresentation::toggleFloatingWindow()
{
    const Qt::WindowFlags flags = m_window.windowFlags() ^ Qt::WindowStaysOnTopHint;
    // QWidget::setWindowFlags() would hide the window and make it anew.
    m_window.overrideWindowFlags(flags);
    if (QWindow* window = m_window.windowHandle())
        window->setFlags(flags);
}

// Screens

void WindowPresentation::windowDidChangeScreen()
{
    m_window.environment().notifications.post(notifications::windowDidChangeScreen);
    if (!m_isFullScreen)
        m_window.titleBarButtons().setAlpha(TitleBarButtons::usualAlpha);
    // The other screen may have pixels of another size.
    m_window.titleBarButtons().update();
    m_window.view().viewport()->update();
    m_window.update();
}

// Full screen

void WindowPresentation::followState()
{
    if (m_window.isFullScreen() == m_isFullScreen)
        return;
    m_isFullScreen = m_window.isFullScreen();
    if (m_isFullScreen)
        windowDidEnterFullScreen();
    else
        windowDidExitFullScreen();
}

void WindowPresentation::windowDidEnterFullScreen()
{
    m_window.titleBarButtons().setAlpha(0);
    m_menuBar->setAutoHiding(true);
}

void WindowPresentation::windowDidExitFullScreen()
{
    m_window.titleBarButtons().setAlpha(TitleBarButtons::usualAlpha);
    m_menuBar->setAutoHiding(false);
}

} // namespace quillory
