#include "app/FirstPaint.h"

#include <QAbstractScrollArea>
#include <QEvent>

namespace quillory {

using namespace std::chrono_literals;

FirstPaint::FirstPaint(QAbstractScrollArea& area)
    : QObject(&area), m_area(area), m_viewport(*area.viewport())
{
    m_area.installEventFilter(this);
    m_viewport.installEventFilter(this);
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &FirstPaint::tell);
}

bool FirstPaint::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == &m_viewport) {
        // What is painted is flushed before the next event.
        if (event->type() == QEvent::Paint)
            m_patience.start(0);
    } else if (event->type() == QEvent::Show) {
        m_patience.start(1s);
    } else if (event->type() == QEvent::ShortcutOverride) {
        tell();
    }
    return false;
}

void FirstPaint::tell()
{
    m_patience.stop();
    m_area.removeEventFilter(this);
    m_viewport.removeEventFilter(this);
    Q_EMIT happened();
    deleteLater();
}

} // namespace quillory
