#include "preview/NetworkGate.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QTcpSocket>
#include <QtEndian>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr qint64 mostBuffered = 1 << 20; ///< bytes on the way in one direction

// RFC 1928
constexpr char version = 5;
constexpr char commandConnect = 1;
enum AddressType : char
{
    AddressV4 = 1,
    AddressName = 3,
    AddressV6 = 4
};
enum Reply : char
{
    Succeeded = 0,
    NotAllowed = 2,
    Unreachable = 4,
    CommandUnknown = 7
};

QByteArray replied(Reply reply)
{
    const char bytes[] = {version, reply, 0, AddressV4, 0, 0, 0, 0, 0, 0};
    return {bytes, sizeof bytes};
}

struct Destination
{
    QString host;
    quint16 port = 0;
};

/// Nothing while \a request is not whole; an empty host where it makes no sense.
std::optional<Destination> destinationIn(const QByteArray& request)
{
    if (request.size() < 5)
        return std::nullopt;
    const bool isName = request[3] == AddressName;
    const qsizetype start = isName ? 5 : 4;
    const qsizetype length = isName                    ? quint8(request[4])
                             : request[3] == AddressV4 ? 4
                             : request[3] == AddressV6 ? 16
                                                       : 0;
    if (length == 0 || request[1] != commandConnect)
        return Destination();
    if (request.size() < start + length + 2)
        return std::nullopt;
    const char* const address = request.data() + start;
    const auto port = qFromBigEndian<quint16>(address + length);
    if (isName)
        return Destination{QString::fromLatin1(address, length), port};
    if (length == 4)
        return Destination{QHostAddress(qFromBigEndian<quint32>(address)).toString(), port};
    return Destination{QHostAddress(reinterpret_cast<const quint8*>(address)).toString(), port};
}

QNetworkProxy systemProxy(const QString& host, quint16 port)
{
    const QList<QNetworkProxy> proxies =
        QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(host, port));
    return proxies.isEmpty() ? QNetworkProxy(QNetworkProxy::NoProxy) : proxies.first();
}

void pump(QTcpSocket& from, QTcpSocket& to)
{
    while (from.bytesAvailable() > 0 && to.bytesToWrite() < mostBuffered)
        to.write(from.read(mostBuffered));
}

/// What comes from one goes to the other, until one of them ends.
void join(QTcpSocket& a, QTcpSocket& b)
{
    const auto oneWay = [](QTcpSocket& from, QTcpSocket& to) {
        QObject::connect(&from, &QTcpSocket::readyRead, &to, [&] { pump(from, to); });
        QObject::connect(&to, &QTcpSocket::bytesWritten, &from, [&] { pump(from, to); });
        QObject::connect(&from, &QTcpSocket::disconnected, &to, [&] {
            to.write(from.readAll());
            to.disconnectFromHost();
        });
        pump(from, to);
    };
    oneWay(a, b);
    oneWay(b, a);
}

} // namespace

int NetworkGate::openSocket(int& port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (socket < 0 || ::bind(socket, generic, size) != 0 || ::listen(socket, SOMAXCONN) != 0 ||
        ::getsockname(socket, generic, &size) != 0) {
        ::close(socket);
        return -1;
    }
    port = ntohs(address.sin_port);
    return socket;
}

NetworkGate::NetworkGate(int socket, QObject* parent) : QObject(parent)
{
    m_server.setProxy(QNetworkProxy::NoProxy);
    m_server.setSocketDescriptor(socket);
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* client = m_server.nextPendingConnection()) {
            client->setReadBufferSize(mostBuffered);
            connect(client, &QTcpSocket::disconnected, client, &QObject::deleteLater);
            connect(client, &QTcpSocket::readyRead, this, [this, client] { greet(*client); });
        }
    });
}

/// Takes the next step of the client's opening words, as far as they have come.
void NetworkGate::greet(QTcpSocket& client)
{
    constexpr const char* wasGreeted = "wasGreeted";
    const QByteArray said = client.peek(mostBuffered);
    if (!client.property(wasGreeted).toBool()) {
        if (said.size() < 2 || said.size() < 2 + quint8(said[1]))
            return;
        client.setProperty(wasGreeted, true);
        client.skip(2 + quint8(said[1]));
        const char noAuthentication[] = {version, 0};
        client.write(noAuthentication, sizeof noAuthentication);
        if (client.bytesAvailable() > 0)
            greet(client);
        return;
    }
    const std::optional<Destination> destination = destinationIn(said);
    if (!destination)
        return;
    disconnect(&client, &QTcpSocket::readyRead, this, nullptr);
    if (destination->host.isEmpty()) {
        client.write(replied(CommandUnknown));
        client.disconnectFromHost();
        return;
    }
    if (!m_isAllowed || !m_isAllowed(destination->host, destination->port)) {
        client.write(replied(NotAllowed));
        client.disconnectFromHost();
        Q_EMIT refused(destination->host, destination->port);
        return;
    }
    client.readAll(); // it says nothing before the answer
    connectTo(client, destination->host, destination->port);
}

void NetworkGate::connectTo(QTcpSocket& client, const QString& host, quint16 port)
{
    auto* const server = new QTcpSocket(&client);
    server->setReadBufferSize(mostBuffered);
    server->setProxy(systemProxy(host, port));
    connect(server, &QTcpSocket::errorOccurred, &client, [&client] {
        client.write(replied(Unreachable));
        client.disconnectFromHost();
    });
    connect(server, &QTcpSocket::connected, &client, [&client, server] {
        disconnect(server, &QTcpSocket::errorOccurred, &client, nullptr);
        client.write(replied(Succeeded));
        join(client, *server);
    });
    server->connectToHost(host, port);
}

} // namespace quillory
