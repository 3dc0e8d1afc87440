#pragma once

#include <QElapsedTimer>
#include <QFrame>
#include <QTimer>

class QLabel;

namespace quillory {

/// Drops over the upper edge of a window while a program is waited for: what runs, for how long,
/// and a way to end it. Comes only after a second, takes no keyboard, and leaves the text below to
/// be scrolled.
class ProgressSheet : public QFrame
{
    Q_OBJECT

public:
    static constexpr int patience = 1000; ///< milliseconds before it shows

    /// Over \a host, the part of a window that the text is in.
    explicit ProgressSheet(QWidget* host);

    void begin(const QString& command);
    void end();

    QString timeText() const;

Q_SIGNALS:
    /// By its button, or by Escape where nothing else in the window has a use for the key.
    void cancelled();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void appear();
    void place();
    void showTime();

    QLabel* m_command;
    QLabel* m_time;
    QString m_whole; ///< the command, not shortened
    QElapsedTimer m_elapsed;
    QTimer m_patience;
    QTimer m_ticks;
};

} // namespace quillory
