#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

namespace quillory {

/// The desktop's bell, and for those who do not hear it a short, faint flash of what it lies over,
/// a text view's viewport. Takes neither mouse nor keyboard.
class Bell : public QWidget
{
    Q_OBJECT

public:
    static constexpr int duration = 120; ///< of the flash, in milliseconds
    /// Between two rings, in milliseconds: a key that repeats does not ring at its pace. More than
    /// three flashes a second are a danger to some (WCAG 2.1, 2.3.1).
    static constexpr int leastPause = 350;

    explicit Bell(QWidget* parent);

    void ring();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QElapsedTimer m_lastRing;
    QTimer m_end;
};

} // namespace quillory
