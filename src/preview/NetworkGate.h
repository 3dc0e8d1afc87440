#pragma once

#include <QTcpServer>
#include <functional>

class QTcpSocket;

namespace quillory {

/// The only way of the engine to the network, whatever the request is for: a proxy (SOCKS 5, RFC
/// 1928) that connects to those servers alone that are allowed. Names are looked up here, so none
/// is asked for before. The desktop's own proxy is used where there is one.
class NetworkGate : public QObject
{
    Q_OBJECT

public:
    using Rule = std::function<bool(const QString& host, int port)>;

    /// A socket that listens on this machine, at a free port that goes to \a port; -1 where there
    /// is none. For the engine to be told before there is an application object.
    static int openSocket(int& port);

    /// Takes such a socket.
    explicit NetworkGate(int socket, QObject* parent = nullptr);

    /// Nothing is allowed without one.
    void setRule(const Rule& isAllowed) { m_isAllowed = isAllowed; }

Q_SIGNALS:
    void refused(const QString& host, int port);

private:
    void greet(QTcpSocket& client);
    void connectTo(QTcpSocket& client, const QString& host, quint16 port);

    QTcpServer m_server;
    Rule m_isAllowed;
};

} // namespace quillory
