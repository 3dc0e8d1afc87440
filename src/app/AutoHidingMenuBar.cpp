#include "app/AutoHidingMenuBar.h"

#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QWindow>

namespace quillory {

namespace {

constexpr int edge = 2; // logical pixels at the window's top that bring the bar back

} // namespace

/// Sees the events of the whole program, since what is below the pointer hears of it first. A menu
/// bar itself comes and goes as a filter of them.
class AutoHidingMenuBar::Watch : public QObject
{
public:
    explicit Watch(AutoHidingMenuBar& bar) : QObject(&bar), m_bar(bar)
    {
        qApp->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        m_bar.noteEvent(watched, event);
        return false;
    }

private:
    AutoHidingMenuBar& m_bar;
};

AutoHidingMenuBar::AutoHidingMenuBar(QMainWindow& window) : QMenuBar(&window), m_window(window)
{
    setAutoFillBackground(true);
    m_later.setSingleShot(true);
    m_later.setInterval(0);
    connect(&m_later, &QTimer::timeout, this, &AutoHidingMenuBar::follow);
}

void AutoHidingMenuBar::setAutoHiding(bool hides)
{
    if (m_hides == hides)
        return;
    m_hides = hides;
    m_revealed = false;
    delete std::exchange(m_watch, hides ? new Watch(*this) : nullptr);
    updateGeometry();
    Q_EMIT revealedChanged(isRevealed());
    follow();
}

/// The window sends events until it is gone.
AutoHidingMenuBar::~AutoHidingMenuBar()
{
    delete m_watch;
}

QSize AutoHidingMenuBar::sizeHint() const
{
    return m_hides ? QSize(0, 0) : QMenuBar::sizeHint();
}

QSize AutoHidingMenuBar::minimumSizeHint() const
{
    return m_hides ? QSize(0, 0) : QMenuBar::minimumSizeHint();
}

int AutoHidingMenuBar::heightForWidth(int width) const
{
    return m_hides ? 0 : QMenuBar::heightForWidth(width);
}

void AutoHidingMenuBar::noteEvent(const QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseMove:
        m_pointer = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        follow();
        break;
    case QEvent::Leave:
        if (watched == m_window.windowHandle())
            m_pointer.reset();
        m_later.start();
        break;
    case QEvent::FocusIn:
    case QEvent::FocusOut:
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
    case QEvent::Show:
    case QEvent::Hide:
        // It is not known yet what comes of it.
        m_later.start();
        break;
    default:
        break;
    }
}

bool AutoHidingMenuBar::event(QEvent* event)
{
    const bool taken = QMenuBar::event(event);
    // The layout has its own idea of where a bar without a height is.
    if (m_hides && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        place();
    return taken;
}

bool AutoHidingMenuBar::isNeeded() const
{
    if (const QWidget* popup = QApplication::activePopupWidget()) {
        const QWidget* owner = popup->parentWidget();
        return owner == this || (m_revealed && isAncestorOf(owner));
    }
    if (!m_window.isActiveWindow())
        return false;
    if (hasFocus())
        return true;
    const int reach = m_revealed ? QMenuBar::heightForWidth(m_window.width()) : edge;
    return m_pointer &&
           QRect(0, 0, m_window.width(), reach).contains(m_window.mapFromGlobal(*m_pointer));
}

void AutoHidingMenuBar::follow()
{
    if (!m_hides)
        return;
    const bool needed = isNeeded();
    if (needed == m_revealed)
        return;
    m_revealed = needed;
    place();
    Q_EMIT revealedChanged(needed);
}

void AutoHidingMenuBar::place()
{
    const int height = m_revealed ? QMenuBar::heightForWidth(m_window.width()) : 0;
    const QRect wanted(0, 0, m_window.width(), height);
    if (geometry() == wanted)
        return;
    setGeometry(wanted);
    raise();
}

} // namespace quillory
