#pragma once

#include <QObject>

class QMainWindow;

namespace quillory {

class UserDefaults;

/// Keeps what is in a full-screen window as wide as the window was before, in the middle of the
/// screen, while the user default "proposedSize" is on.
class FullScreenWidth : public QObject
{
    Q_OBJECT

public:
    /// \a window must have its central widget, and outlive this as \a defaults must.
    FullScreenWidth(QMainWindow& window, const UserDefaults& defaults);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void update();

    QMainWindow& m_window;
    const UserDefaults& m_defaults;
    bool m_wasMaximised = false; ///< before it was full-screen
};

} // namespace quillory
