#pragma once

#include <QFrame>
#include <QPointer>

namespace quillory {

/// A small frame over a part of its window. Escape puts it away, and so do a click elsewhere in the
/// window and typing there.
class Popover : public QFrame
{
    Q_OBJECT

public:
    explicit Popover(QWidget* window);

    /// Puts it away.
    void close();

Q_SIGNALS:
    void closed(bool hadFocus);

protected:
    /// Shows it, in its place.
    void appear();
    /// Moves it to where it belongs in the window, whenever that may have changed.
    virtual void place() = 0;
    /// Clicks on \a opener do not put it away: it opens and closes it itself.
    void setOpener(QWidget* opener) { m_opener = opener; }

    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QPointer<QWidget> m_opener;
};

} // namespace quillory
