#include "app/Popover.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

namespace quillory {

Popover::Popover(QWidget* window) : QFrame(window)
{
    setAutoFillBackground(true);
    setFocusPolicy(Qt::StrongFocus);
    hide();
}

void Popover::appear()
{
    if (isVisible())
        return;
    place();
    show();
    raise();
    qApp->installEventFilter(this);
}

void Popover::close()
{
    if (!isVisible())
        return;
    qApp->removeEventFilter(this);
    const bool hadFocus = isAncestorOf(QApplication::focusWidget()) || hasFocus();
    hide();
    Q_EMIT closed(hadFocus);
}

/// Sees what happens in the window around: its size, clicks beside the pop-over, and typing.
bool Popover::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        place();
    const auto* widget = qobject_cast<QWidget*>(watched);
    const bool isOpener = m_opener && (widget == m_opener || m_opener->isAncestorOf(widget));
    const bool isOutside = widget && widget->window() == window() && widget != this &&
                           !isAncestorOf(widget) && !isOpener;
    if (isOutside && (event->type() == QEvent::MouseButtonPress ||
                      event->type() == QEvent::KeyPress || event->type() == QEvent::InputMethod))
        close();
    return QFrame::eventFilter(watched, event);
}

void Popover::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QFrame::keyPressEvent(event);
}

void Popover::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace quillory
