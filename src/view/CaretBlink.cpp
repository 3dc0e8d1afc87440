#include "view/CaretBlink.h"

#include <QGuiApplication>
#include <QStyleHints>

namespace quillory {

CaretBlink::CaretBlink(QObject* parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &CaretBlink::toggle);
    connect(QGuiApplication::styleHints(), &QStyleHints::cursorFlashTimeChanged, this, [this] {
        if (m_active)
            restart();
    });
}

void CaretBlink::setActive(bool active)
{
    if (active == m_active)
        return;
    m_active = active;
    m_timer.stop();
    if (m_active)
        restart();
    Q_EMIT toggled();
}

void CaretBlink::restart()
{
    if (!m_active)
        return;
    if (!std::exchange(m_shown, true))
        Q_EMIT toggled();
    // The flash time is that of a whole period; 0 or less asks for a caret that stays.
    const std::chrono::milliseconds half{QGuiApplication::styleHints()->cursorFlashTime() / 2};
    if (half.count() <= 0) {
        m_timer.stop();
        return;
    }
    // An even number, so that the last one shows the carets.
    m_togglesLeft = int(patience / half) / 2 * 2;
    m_timer.start(half);
}

void CaretBlink::toggle()
{
    m_shown = !m_shown;
    if (--m_togglesLeft <= 0) {
        m_shown = true;
        m_timer.stop();
    }
    Q_EMIT toggled();
}

} // namespace quillory
