#pragma once

#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>

namespace quillory::test {

/// A web server on this machine that writes down who connects and what is asked for. It answers
/// with what stands in `answers` for a path, else with an empty page.
class RecordingServer : public QTcpServer
{
public:
    RecordingServer()
    {
        EXPECT_TRUE(listen(QHostAddress::LocalHost));
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = nextPendingConnection()) {
                ++connections;
                connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { read(*socket); });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }

    QString address() const { return QStringLiteral("127.0.0.1:%1").arg(serverPort()); }
    QString url(const QString& path = {}) const
    {
        return QStringLiteral("http://%1/%2").arg(address(), path);
    }
    bool wasAskedFor(const QString& path) const { return paths.contains(u'/' + path); }

    int connections = 0;
    QStringList paths; ///< in the order in which they were asked for
    QHash<QString, QByteArray> answers;

    static QByteArray page(const QByteArray& body, const QByteArray& headers = {})
    {
        return "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: text/html\r\n" + headers +
               "Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
    }
    static QByteArray redirect(const QString& to)
    {
        return "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " +
               to.toUtf8() + "\r\n\r\n";
    }

private:
    void read(QTcpSocket& socket)
    {
        const QByteArray sofar = socket.property("request").toByteArray() + socket.readAll();
        socket.setProperty("request", sofar);
        if (!sofar.contains("\r\n\r\n"))
            return;
        const QString path = QString::fromLatin1(sofar.split(' ').value(1));
        paths += path;
        socket.write(answers.value(path.section(u'?', 0, 0), page({})));
        socket.disconnectFromHost();
    }
};

} // namespace quillory::test
