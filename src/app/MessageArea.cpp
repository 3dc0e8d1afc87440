#include "app/MessageArea.h"

#include "app/MessageBar.h"

#include <QAccessible>
#include <QVBoxLayout>

namespace quillory {

MessageArea::MessageArea(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    hide();
}

void MessageArea::show(Subject subject, const Message& message)
{
    clear(subject);
    auto* bar = new MessageBar(message, this);
    connect(bar, &MessageBar::dismissed, this, [this, subject] {
        clear(subject);
        Q_EMIT dismissed();
    });
    m_bars.insert(subject, bar);
    const auto place = std::distance(m_bars.constBegin(), m_bars.constFind(subject));
    static_cast<QVBoxLayout*>(layout())->insertWidget(int(place), bar);
    bar->QWidget::show();
    QWidget::show();
    QAccessibleEvent alert(bar, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void MessageArea::clear(Subject subject)
{
    MessageBar* bar = m_bars.take(subject);
    if (!bar)
        return;
    // A button of the bar may be what asked for this.
    bar->hide();
    layout()->removeWidget(bar);
    bar->deleteLater();
    setVisible(!m_bars.isEmpty());
}

void MessageArea::clearAll()
{
    const QList<Subject> subjects = m_bars.keys();
    for (const Subject subject : subjects) {
        if (subject != Subject::Version)
            clear(subject);
    }
}

QString MessageArea::text(Subject subject) const
{
    const MessageBar* bar = m_bars.value(subject);
    return bar ? bar->text() : QString();
}

} // namespace quillory
