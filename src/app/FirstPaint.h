#pragma once

#include <QObject>
#include <QTimer>

class QAbstractScrollArea;
class QWidget;

namespace quillory {

/// Tells once that a widget was painted and its pixels were handed to the display: the time for
/// what the first sight of a window need not wait for.
///
/// It is told sooner when a key is pressed, which may be for what is missing yet; and a second
/// after the widget was shown where it is not painted, since its window is minimised or covered.
class FirstPaint : public QObject
{
    Q_OBJECT

public:
    /// Becomes a child of \a area, which is not shown yet and is the one that keys go to.
    explicit FirstPaint(QAbstractScrollArea& area);

Q_SIGNALS:
    void happened();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void tell();

    QWidget& m_area;
    QWidget& m_viewport;
    QTimer m_patience;
};

} // namespace quillory
