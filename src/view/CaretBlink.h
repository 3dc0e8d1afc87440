#pragma once

#include <QObject>
#include <QTimer>
#include <chrono>

namespace quillory {

/// Whether carets show just now. They blink at the desktop's pace, for a while after they were
/// last moved; then they stay, and no timer runs.
class CaretBlink : public QObject
{
    Q_OBJECT

public:
    /// How long an untouched caret goes on blinking.
    static constexpr std::chrono::seconds patience{30};

    explicit CaretBlink(QObject* parent = nullptr);

    bool isShown() const { return m_active && m_shown; }
    bool isBlinking() const { return m_timer.isActive(); }

    /// Carets show while active, which they are not at first.
    void setActive(bool active);
    /// Shows the carets, and has them blink from now on.
    void restart();

Q_SIGNALS:
    void toggled();

private:
    void toggle();

    QTimer m_timer;
    bool m_active = false;
    bool m_shown = true;
    int m_togglesLeft = 0;
};

} // namespace quillory
