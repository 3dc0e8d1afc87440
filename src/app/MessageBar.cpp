#include "app/MessageBar.h"

#include "app/RefillingMenu.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace quillory {

namespace {

constexpr double tintStrength = 0.22; ///< of the message's colour over the window's own

QColor tintOf(Message::Kind kind)
{
    switch (kind) {
    case Message::Kind::Warning:
        return {0xf0, 0xa0, 0x10};
    case Message::Kind::Problem:
        return {0xe0, 0x30, 0x30};
    case Message::Kind::Note:
        break;
    }
    return {0x30, 0x80, 0xe0};
}

QStyle::StandardPixmap iconOf(Message::Kind kind)
{
    switch (kind) {
    case Message::Kind::Warning:
        return QStyle::SP_MessageBoxWarning;
    case Message::Kind::Problem:
        return QStyle::SP_MessageBoxCritical;
    case Message::Kind::Note:
        break;
    }
    return QStyle::SP_MessageBoxInformation;
}

QColor blended(const QColor& base, const QColor& tint, double strength)
{
    const auto mix = [strength](double from, double to) { return from + (to - from) * strength; };
    return QColor::fromRgbF(float(mix(base.redF(), tint.redF())),
                            float(mix(base.greenF(), tint.greenF())),
                            float(mix(base.blueF(), tint.blueF())));
}

QAccessibleInterface* makeInterface(const QString&, QObject* object)
{
    auto* bar = qobject_cast<MessageBar*>(object);
    // Screen readers speak of a notification as soon as it shows.
    return bar ? new QAccessibleWidget(bar, QAccessible::Notification) : nullptr;
}

} // namespace

void installMessageAccessibility()
{
    QAccessible::installFactory(makeInterface);
}

MessageBar::MessageBar(const Message& message, QWidget* parent)
    : QFrame(parent), m_kind(message.kind), m_icon(new QLabel(this)), m_text(new QLabel(this))
{
    setAutoFillBackground(true);
    m_text->setText(message.text);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize);
    m_icon->setPixmap(
        style()->standardIcon(iconOf(m_kind), nullptr, this).pixmap(QSize(iconSize, iconSize)));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(10, 5, 6, 6);
    layout->setSpacing(8);
    layout->addWidget(m_icon, 0, Qt::AlignTop);
    layout->addWidget(m_text, 1);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(6);
    layout->addLayout(buttons);
    m_buttons = buttons;
    for (const Message::WayOut& wayOut : message.waysOut)
        addButton(wayOut);

    auto* cross = new QToolButton(this);
    cross->setAutoRaise(true);
    cross->setText(QStringLiteral("✕")); // an icon might not show on a dark ground
    cross->setToolTip(tr("Put this message away"));
    cross->setAccessibleName(cross->toolTip());
    connect(cross, &QToolButton::clicked, this, &MessageBar::dismissed);
    layout->addWidget(cross);

    setAccessibleName(message.text);
    updateColours();
}

QString MessageBar::text() const
{
    return m_text->text();
}

void MessageBar::addButton(const Message::WayOut& wayOut)
{
    auto* button = new QPushButton(wayOut.label, this);
    button->setAutoDefault(true);
    if (wayOut.fill) {
        auto* menu = new QMenu(button);
        refillOnShow(*menu, wayOut.fill);
        button->setMenu(menu);
    } else {
        // The act may replace this message, and with it the function.
        connect(button, &QPushButton::clicked, this, [act = wayOut.act] {
            const std::function<void()> kept = act;
            kept();
        });
    }
    m_buttons->addWidget(button);
}

void MessageBar::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        updateColours();
}

/// The colours follow the desktop's light or dark ones, of which they are a shade.
void MessageBar::updateColours()
{
    const QColor base = QApplication::palette(this).color(QPalette::Window);
    const QColor ground = blended(base, tintOf(m_kind), tintStrength);
    if (palette().color(QPalette::Window) == ground)
        return;
    QPalette colours = palette();
    colours.setColor(QPalette::Window, ground);
    setPalette(colours);
}

void MessageBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setPen(blended(palette().color(QPalette::Window), tintOf(m_kind), 0.5));
    painter.drawLine(rect().bottomLeft(), rect().bottomRight());
}

void MessageBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        Q_EMIT dismissed();
    else
        QFrame::keyPressEvent(event);
}

} // namespace quillory
