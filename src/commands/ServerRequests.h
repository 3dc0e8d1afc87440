#pragma once

#include "commands/WebClient.h"
#include "text/LineBreaks.h"
#include "text/StringEncoding.h"
#include "text/TextSnapshot.h"

#include <QObject>
#include <chrono>
#include <map>

namespace quillory {

/// Asks web servers what they make of a text, and has their answers shown. Any number of requests
/// may be on their way at a time; those that still are when this goes end without a word.
class ServerRequests : public QObject
{
    Q_OBJECT

public:
    struct Limits
    {
        std::chrono::milliseconds time{30'000}; ///< from asking to the last byte
        qint64 answer = 1 << 20;                ///< bytes; an alert cannot show more to any use
        qsizetype text = 1 << 20;               ///< UTF-16 code units; far more than servers take
        int redirects = 10;
    };

    /// How the document's text is saved.
    struct TextForm
    {
        StringEncoding encoding = StringEncoding::utf8;
        LineBreakFormat lineBreaks = LineBreakFormat::unixLf;
    };

    /// \a plugins is the folder of the plugin "quillory-network", which is loaded for the first
    /// request; \a form is asked at each.
    ServerRequests(QString plugins, std::function<TextForm()> form);
    ServerRequests(QString plugins, std::function<TextForm()> form, const Limits& limits);
    ~ServerRequests() override;

    /// \a text as the value of a query, see withPercentEscapes(): the marks "?=&+" are escaped too.
    /// Unpaired surrogates become replacement characters.
    static QString urlEncodeValue(const QString& text);

    /// Asks for \a url (http or https) with each "TEXTORCODE" in it replaced by the encoded \a
    /// andWithString. What comes back is shown, as is what goes wrong. As data, \a andWithString is
    /// only put into the form in which the document is saved, and it is told when it does not fit:
    /// nothing is sent.
    void urlRequestWithURL(const QString& url, const TextSnapshot& andWithString, bool asData);

    bool isRunning() const { return !m_connections.empty(); }
    /// The servers that are waited for.
    QStringList hosts() const;
    /// Gives all requests up, without a word.
    void cancel();

Q_SIGNALS:
    void alertRequested(const QString& title, const QString& message);
    void runningChanged();

private:
    struct Connection
    {
        QString host;
        QByteArray connectionData; ///< what has come of the answer
        std::unique_ptr<WebConnection> request;
    };

    WebClient* client();
    void prepareData(const TextSnapshot& text);
    void send(const QUrl& url);
    void connectionDidReceiveData(int connection, const QByteArray& data);
    void connectionDidFinishLoading(int connection);
    void connectionDidFailWithError(int connection, const QString& description);
    void fail(const QString& description);
    void drop(int connection);

    QString m_plugins;
    std::function<TextForm()> m_form;
    Limits m_limits;
    std::unique_ptr<WebClient> m_client; ///< made for the first request
    int m_lastConnection = 0;
    std::map<int, Connection> m_connections; ///< by numbers of their own
};

} // namespace quillory
