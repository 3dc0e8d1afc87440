#include "commands/VersionCheck.h"

#include "commands/WebClientPlugin.h"
#include "foundation/Background.h"

#include <QLocale>

namespace quillory {

VersionCheck::VersionCheck(QString plugins, QString current)
    : VersionCheck(std::move(plugins), std::move(current), Limits())
{}

VersionCheck::VersionCheck(QString plugins, QString current, const Limits& limits)
    : m_plugins(std::move(plugins)), m_current(std::move(current)), m_limits(limits)
{
    m_time.setSingleShot(true);
    connect(&m_time, &QTimer::timeout, this, [this] {
        const double seconds = std::chrono::duration<double>(m_limits.time).count();
        fail(tr("%1 did not answer within %2 seconds.").arg(QUrl(m_address).host()).arg(seconds));
    });
}

void VersionCheck::check(const QString& address)
{
    cancel();
    m_address = address.trimmed();
    if (m_address.isEmpty()) {
        fail(tr("There is no address of a version list. Enter one in the preferences, under "
                "Advanced."));
        return;
    }
    const QUrl url(m_address, QUrl::StrictMode);
    if (!isWebAddress(url)) {
        fail(tr("“%1” is no address of a web server: it has to begin with https:// or http://.")
                 .arg(m_address));
        return;
    }
    if (!m_client) {
        QString problem;
        m_client = loadWebClient(m_plugins, problem);
        if (!m_client) {
            fail(problem);
            return;
        }
    }
    WebClient::Events events;
    events.received = [this](const QByteArray& part) { receive(part); };
    events.finished = [this] { finish(); };
    events.failed = [this](const QString& description) { fail(description); };
    m_request = m_client->get(url, m_limits.redirects, events);
    m_time.start(m_limits.time);
}

void VersionCheck::cancel()
{
    ++m_question;
    m_time.stop();
    m_answer.clear();
    m_request.reset();
}

void VersionCheck::receive(const QByteArray& part)
{
    m_answer += part;
    if (m_answer.size() > m_limits.answer)
        fail(tr("What is at “%1” is too long for a version list: it has more than %2.")
                 .arg(m_address, QLocale().formattedDataSize(m_limits.answer, 0)));
}

void VersionCheck::finish()
{
    const QByteArray answer = std::exchange(m_answer, {});
    cancel();
    runInBackground(
        this, [answer] { return readVersionList(answer); },
        [this, question = m_question](const Result<std::vector<PublishedVersion>>& list) {
            if (question != m_question)
                return;
            if (list)
                Q_EMIT answered(newestAbove(m_current, *list));
            else
                fail(tr("What is at “%1” is no version list. %2")
                         .arg(m_address, list.failure().message));
        });
}

void VersionCheck::fail(const QString& description)
{
    cancel();
    Q_EMIT failed(description);
}

} // namespace quillory
