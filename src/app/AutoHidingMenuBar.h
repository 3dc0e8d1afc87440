#pragma once

#include <QMenuBar>
#include <QTimer>
#include <optional>

class QMainWindow;

namespace quillory {

/// A menu bar that can hide above the window's upper edge. It comes over the content, which does
/// not move, while the pointer is at that edge or in the bar, and while the keyboard uses it or one
/// of its menus is open. The keys of its commands work all the time.
class AutoHidingMenuBar : public QMenuBar
{
    Q_OBJECT

public:
    explicit AutoHidingMenuBar(QMainWindow& window);
    ~AutoHidingMenuBar() override;

    void setAutoHiding(bool hides);
    bool isAutoHiding() const { return m_hides; }
    /// Whether it is in sight.
    bool isRevealed() const { return !m_hides || m_revealed; }

    // While it hides it takes no room in the window's layout.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

Q_SIGNALS:
    void revealedChanged(bool revealed);

protected:
    bool event(QEvent* event) override;

private:
    class Watch;

    void noteEvent(const QObject* watched, QEvent* event);
    bool isNeeded() const;
    void follow();
    void place();

    QMainWindow& m_window;
    Watch* m_watch = nullptr; ///< while it hides
    QTimer m_later;
    bool m_hides = false;
    bool m_revealed = false;
    std::optional<QPoint> m_pointer; ///< on all screens; none while it is in no window
};

} // namespace quillory
