#include "app/ProgressSheet.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace quillory {

namespace {

constexpr int widest = 460;        // pixels
constexpr int longestShown = 2000; // units of the command in its tool tip

QString minutesAndSeconds(qint64 seconds)
{
    return QStringLiteral("%1:%2").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

/// A command line on one line, whatever it quotes.
QString onOneLine(const QString& command)
{
    return command.left(longestShown).simplified();
}

} // namespace

ProgressSheet::ProgressSheet(QWidget* host)
    : QFrame(host), m_command(new QLabel(this)), m_time(new QLabel(this))
{
    hide();
    setObjectName(QStringLiteral("progressSheet"));
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    m_command->setTextFormat(Qt::PlainText);
    m_command->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_time->setAccessibleName(tr("Elapsed time"));
    auto* busy = new QProgressBar(this);
    busy->setRange(0, 0);
    busy->setTextVisible(false);
    busy->setMaximumHeight(8);
    auto* cancel = new QPushButton(tr("Cancel"), this);
    cancel->setToolTip(tr("End the program (Esc)"));
    cancel->setFocusPolicy(Qt::NoFocus); // the keyboard stays with the text
    connect(cancel, &QPushButton::clicked, this, &ProgressSheet::cancelled);

    auto* line = new QHBoxLayout;
    line->setSpacing(10);
    line->addWidget(busy, 1);
    line->addWidget(m_time);
    line->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 10, 14, 10);
    layout->setSpacing(6);
    layout->addWidget(m_command);
    layout->addLayout(line);

    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, &ProgressSheet::appear);
    m_ticks.setInterval(1000);
    connect(&m_ticks, &QTimer::timeout, this, &ProgressSheet::showTime);
    host->installEventFilter(this);
}

void ProgressSheet::begin(const QString& command)
{
    m_whole = tr("Running %1").arg(onOneLine(command));
    setAccessibleName(m_whole);
    m_elapsed.start();
    m_patience.start();
}

void ProgressSheet::end()
{
    m_patience.stop();
    m_ticks.stop();
    if (isHidden())
        return;
    hide();
    window()->removeEventFilter(this);
}

QString ProgressSheet::timeText() const
{
    return m_time->text();
}

void ProgressSheet::appear()
{
    showTime();
    m_ticks.start();
    place();
    show();
    raise();
    window()->installEventFilter(this);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void ProgressSheet::place()
{
    const QWidget& host = *parentWidget();
    const int width = std::min(widest, host.width());
    resize(width, sizeHint().height());
    move((host.width() - width) / 2, 0);
    const QMargins margins = layout()->contentsMargins();
    const int room = width - margins.left() - margins.right() - 2 * frameWidth();
    m_command->setText(m_command->fontMetrics().elidedText(m_whole, Qt::ElideMiddle, room));
    m_command->setToolTip(m_whole);
}

void ProgressSheet::showTime()
{
    m_time->setText(minutesAndSeconds(m_elapsed.elapsed() / 1000));
}

bool ProgressSheet::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible())
        place();
    // The window sees the keys that nothing in it had a use for.
    const bool isEscape = watched == window() && event->type() == QEvent::KeyPress &&
                          static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (!isEscape)
        return QFrame::eventFilter(watched, event);
    Q_EMIT cancelled();
    return true;
}

} // namespace quillory
