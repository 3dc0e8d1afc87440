#include "commands/network/NetworkClient.h"

#include <QNetworkReply>
#include <QPointer>

namespace quillory {

namespace {

constexpr int firstErrorStatus = 400;

/// The server answered, be it with an error of its own, which it describes.
bool isAnswer(const QNetworkReply& reply)
{
    switch (reply.error()) {
    case QNetworkReply::NoError:
        return true;
    case QNetworkReply::RemoteHostClosedError:
    case QNetworkReply::TimeoutError:
    case QNetworkReply::OperationCanceledError:
    case QNetworkReply::UnknownNetworkError:
        return false;
    default:
        return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() >=
               firstErrorStatus;
    }
}

class NetworkConnection : public QObject, public WebConnection
{
public:
    NetworkConnection(QNetworkReply* reply, WebClient::Events events)
        : m_reply(reply), m_events(std::move(events))
    {
        connect(reply, &QNetworkReply::readyRead, this, [this] { read(); });
        connect(reply, &QNetworkReply::finished, this, [this] { finish(); });
    }

    ~NetworkConnection() override
    {
        m_reply->disconnect(this);
        m_reply->abort();
        m_reply->deleteLater();
    }

private:
    // Each event may end this, and with it the function.

    void read()
    {
        const auto received = m_events.received;
        received(m_reply->readAll());
    }

    void finish()
    {
        const QPointer<QObject> self(this);
        if (m_reply->bytesAvailable() > 0)
            read();
        if (!self)
            return;
        const WebClient::Events events = m_events;
        if (isAnswer(*m_reply))
            events.finished();
        else
            events.failed(m_reply->errorString());
    }

    QNetworkReply* m_reply;
    WebClient::Events m_events;
};

} // namespace

std::unique_ptr<WebConnection> NetworkClient::get(const QUrl& url, int redirects, Events events)
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(redirects);
    return std::make_unique<NetworkConnection>(m_manager.get(request), std::move(events));
}

} // namespace quillory
