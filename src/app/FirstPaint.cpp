#include "app/FirstPaint.h"

#include <QEvent>
#include <QWidget>

namespace quillory {

using namespace std::chrono_literals;

FirstPaint::FirstPaint(QWidget& widget) : QObject(&widget)
{
    widget.installEventFilter(this);
    m_patience.setSingleShot(true);
    m_patience.setInterval(1s);
    connect(&m_patience, &QTimer::timeout, this, &FirstPaint::tell);
}

bool FirstPaint::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show) {
        m_patience.start();
    } else if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        // What is painted is flushed before the next event.
        m_patience.start(0);
    }
    return false;
}

void FirstPaint::tell()
{
    parent()->removeEventFilter(this);
    Q_EMIT happened();
    deleteLater();
}

} // namespace quillory
