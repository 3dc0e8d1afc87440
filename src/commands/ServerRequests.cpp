#include "commands/ServerRequests.h"

#include "commands/PercentEscapes.h"
#include "commands/WebClientPlugin.h"
#include "foundation/Background.h"
#include "text/TextEncoder.h"

#include <QLocale>
#include <QStringDecoder>
#include <QTimer>

namespace quillory {

namespace {

constexpr qsizetype quickLength = 1 << 18; // UTF-16 code units that are encoded at once

/// Nothing where \a bytes are not UTF-8.
QString decodedAnswer(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString() : text;
}

} // namespace

ServerRequests::ServerRequests(QString plugins, std::function<TextForm()> form)
    : ServerRequests(std::move(plugins), std::move(form), Limits())
{}

ServerRequests::ServerRequests(QString plugins, std::function<TextForm()> form,
                               const Limits& limits)
    : m_plugins(std::move(plugins)), m_form(std::move(form)), m_limits(limits)
{}

ServerRequests::~ServerRequests()
{
    const QSignalBlocker quiet(this);
    cancel();
}

QString ServerRequests::urlEncodeValue(const QString& text)
{
    const QLatin1StringView also("?=&+"); // would end the value, or mean a space
    const auto escaped = withPercentEscapes(text, StringEncoding::utf8, also);
    // Without unpaired surrogates, which is all that can fail, where it did.
    return escaped ? *escaped
                   : withPercentEscapes(QString::fromUcs4(text.toStdU32String().c_str()),
                                        StringEncoding::utf8, also)
                         .value_or(QString());
}

void ServerRequests::urlRequestWithURL(const QString& url, const TextSnapshot& andWithString,
                                       bool asData)
{
    if (asData) {
        prepareData(andWithString);
        return;
    }
    const QLatin1StringView placeholder("TEXTORCODE");
    QString address = url;
    if (url.contains(placeholder)) {
        if (andWithString.length() > m_limits.text) {
            const QLocale locale;
            fail(tr("The text is too long to be sent: it has %1 characters, and an address can "
                    "take %2 at most. Select less of it.")
                     .arg(locale.toString(andWithString.length()), locale.toString(m_limits.text)));
            return;
        }
        // In one pass: what is sent may hold the word itself.
        address.replace(placeholder, urlEncodeValue(andWithString.string()));
    }
    const QUrl target(address, QUrl::StrictMode);
    if (!isWebAddress(target)) {
        fail(tr("“%1” is no address of a web server: it has to begin with http:// or https://, and "
                "blanks in it have to be written as %20.")
                 .arg(url));
        return;
    }

    send(target);
}

/// Null, after an alert, where the plugin cannot be loaded.
WebClient* ServerRequests::client()
{
    if (!m_client) {
        QString problem;
        m_client = loadWebClient(m_plugins, problem);
        if (!m_client)
            fail(problem);
    }
    return m_client.get();
}

void ServerRequests::send(const QUrl& url)
{
    WebClient* const asked = client();
    if (!asked)
        return;
    const int connection = ++m_lastConnection;
    WebClient::Events events;
    events.received = [=, this](const QByteArray& part) {
        connectionDidReceiveData(connection, part);
    };
    events.finished = [=, this] { connectionDidFinishLoading(connection); };
    events.failed = [=, this](const QString& description) {
        connectionDidFailWithError(connection, description);
    };
    m_connections[connection] = {url.host(), {}, asked->get(url, m_limits.redirects, events)};
    QTimer::singleShot(m_limits.time, this, [this, connection, host = url.host()] {
        const double seconds = std::chrono::duration<double>(m_limits.time).count();
        connectionDidFailWithError(
            connection, tr("%1 did not answer within %2 seconds.").arg(host).arg(seconds));
    });
    Q_EMIT runningChanged();
}

/// As the document is saved; how that comes out is all that is told of it.
void ServerRequests::prepareData(const TextSnapshot& text)
{
    const auto prepared = [text, form = m_form()] {
        return encoded(converted(text, form.lineBreaks), form.encoding).has_value();
    };
    const auto tell = [this](bool fits) {
        if (!fits)
            fail(tr("Could not create data."));
    };
    if (text.length() <= quickLength)
        tell(prepared());
    else
        runInBackground(this, prepared, tell);
}

void ServerRequests::connectionDidReceiveData(int connection, const QByteArray& data)
{
    Connection& asked = m_connections.at(connection);
    asked.connectionData += data;
    if (asked.connectionData.size() > m_limits.answer)
        connectionDidFailWithError(
            connection, tr("The answer of %1 is too long to be shown: it has more than %2.")
                            .arg(asked.host, QLocale().formattedDataSize(m_limits.answer, 0)));
}

void ServerRequests::connectionDidFinishLoading(int connection)
{
    const QString answer = decodedAnswer(m_connections.at(connection).connectionData);
    drop(connection);
    Q_EMIT alertRequested(tr("Server Response"), answer);
}

void ServerRequests::connectionDidFailWithError(int connection, const QString& description)
{
    if (!m_connections.contains(connection))
        return; // its time ran out when it was over already
    drop(connection);
    fail(description);
}

void ServerRequests::fail(const QString& description)
{
    Q_EMIT alertRequested(tr("Error!"), description);
}

QStringList ServerRequests::hosts() const
{
    QStringList hosts;
    for (const auto& [number, connection] : m_connections)
        hosts += connection.host;
    return hosts;
}

void ServerRequests::cancel()
{
    while (!m_connections.empty())
        drop(m_connections.begin()->first);
}

void ServerRequests::drop(int connection)
{
    m_connections.erase(connection);
    Q_EMIT runningChanged();
}

} // namespace quillory
