#include "app/FullScreenWidth.h"

#include "foundation/UserDefaults.h"

#include <QLayout>
#include <QMainWindow>
#include <QWindowStateChangeEvent>

namespace quillory {

FullScreenWidth::FullScreenWidth(QMainWindow& window, const UserDefaults& defaults)
    : QObject(&window), m_window(window), m_defaults(defaults)
{
    window.installEventFilter(this);
    connect(&defaults, &UserDefaults::changed, this, [this](QLatin1StringView key) {
        if (key == QLatin1StringView(keys::proposedSize.name))
            update();
    });
}

bool FullScreenWidth::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::WindowStateChange) {
        const Qt::WindowStates before = static_cast<QWindowStateChangeEvent*>(event)->oldState();
        if (!(before & Qt::WindowFullScreen))
            m_wasMaximised = before & Qt::WindowMaximized;
        update();
    } else if (event->type() == QEvent::Resize) {
        update();
    }
    return QObject::eventFilter(watched, event);
}

void FullScreenWidth::update()
{
    QWidget* const content = m_window.centralWidget();
    if (!content)
        return;
    const bool narrows =
        m_window.isFullScreen() && !m_wasMaximised && m_defaults.value(keys::proposedSize);
    const int spare =
        narrows ? std::max(0, m_window.width() - m_window.normalGeometry().width()) : 0;
    content->layout()->setContentsMargins(spare / 2, 0, spare - spare / 2, 0);
}

} // namespace quillory
