#include "app/DesktopScheme.h"

#include "foundation/Background.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace quillory {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearance = QStringLiteral("org.freedesktop.appearance");
const QString colourScheme = QStringLiteral("color-scheme");

constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;

} // namespace

DesktopScheme::DesktopScheme(QObject* parent) : QObject(parent) {}

bool DesktopScheme::isPaletteDark()
{
    return QGuiApplication::palette().color(QPalette::Base).lightnessF() < 0.5F;
}

void DesktopScheme::follow()
{
    if (std::exchange(m_follows, true)) {
        Q_EMIT changed();
        return;
    }
    qApp->installEventFilter(this);
    // The bus is connected to aside: whoever does that waits for its answer.
    runInBackground(
        this, [] { return QDBusConnection::sessionBus().isConnected(); },
        [this](bool isConnected) {
            if (isConnected)
                askPortal();
            else
                Q_EMIT changed();
        });
}

void DesktopScheme::askPortal()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    // From whoever it comes: to know the sender's name in advance, one would have to wait for it.
    bus.connect(QString(), path, interface, QStringLiteral("SettingChanged"), this,
                SLOT(noteSetting(QDBusMessage)));
    QDBusMessage question =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("Read"));
    question << appearance << colourScheme;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        take(reply.isError() ? QVariant() : reply.value().variant());
    });
}

void DesktopScheme::noteSetting(const QDBusMessage& message)
{
    const QVariantList told = message.arguments(); // group, key, value
    if (told.size() == 3 && told[0] == appearance && told[1] == colourScheme)
        take(told[2].value<QDBusVariant>().variant());
}

/// "Read" wraps the value twice.
void DesktopScheme::take(const QVariant& scheme)
{
    const uint value = scheme.canConvert<QDBusVariant>()
                           ? scheme.value<QDBusVariant>().variant().toUInt()
                           : scheme.toUInt();
    m_asked.reset();
    if (value == prefersDark || value == prefersLight)
        m_asked = value == prefersDark;
    Q_EMIT changed();
}

bool DesktopScheme::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ApplicationPaletteChange && watched == qApp)
        Q_EMIT changed();
    return false;
}

} // namespace quillory
