#pragma once

#include <QObject>
#include <QTimer>

class QWidget;

namespace quillory {

/// Tells once that a widget was painted and its pixels were handed to the display: the time for what
/// the first sight of a window need not wait for. A widget that is shown and not painted for a
/// second, since its window is minimised or covered, is not waited for either.
class FirstPaint : public QObject
{
    Q_OBJECT

public:
    /// Becomes a child of \a widget, which is not shown yet.
    explicit FirstPaint(QWidget& widget);

Q_SIGNALS:
    void happened();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void tell();

    QTimer m_patience;
};

} // namespace quillory
