#include "preview/Confinement.h"

#include "preview/NetworkGate.h"
#include "preview/PreviewedFiles.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QPalette>

namespace quillory {

namespace {

void addFlags(const QByteArray& flags)
{
    constexpr const char* variable = "QTWEBENGINE_CHROMIUM_FLAGS";
    qputenv(variable, qgetenv(variable) + flags);
}

} // namespace

int confineEngine()
{
    int port = 0;
    const int gate = NetworkGate::openSocket(port);
    const QByteArray proxy = QByteArray::number(port);
    const QByteArray flags = // to this machine too, which is left out otherwise
        " --proxy-server=socks5://127.0.0.1:" + proxy +
        " --proxy-bypass-list=<-loopback>"
        // The gate looks names up.
        " --host-resolver-rules=\"MAP * ~NOTFOUND , EXCLUDE 127.0.0.1\""
        // No datagrams
        " --force-webrtc-ip-handling-policy=disable_non_proxied_udp --disable-quic"
        " --disable-blink-features=WebTransport"
        " --disable-background-networking --no-pings";
    addFlags(flags);
    PreviewedFiles::registerScheme();
    return gate;
}

void followPalette()
{
    const QPalette palette = QGuiApplication::palette();
    if (palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness())
        addFlags(" --blink-settings=preferredColorScheme=0");
}

} // namespace quillory
