#pragma once

#include "commands/VersionList.h"
#include "commands/WebClient.h"

#include <QObject>
#include <QTimer>
#include <chrono>

namespace quillory {

/// Asks for a version list, and finds what is newer than this program in it. One question at a
/// time; what is on its way when this goes ends without a word.
class VersionCheck : public QObject
{
    Q_OBJECT

public:
    struct Limits
    {
        std::chrono::milliseconds time{15'000}; ///< from asking to the last byte
        qint64 answer = 1 << 18;                ///< bytes
        int redirects = 5;
    };

    /// \a plugins is the folder of the plugin "quillory-network", which is loaded for the first
    /// question; \a current is the version that runs.
    VersionCheck(QString plugins, QString current);
    VersionCheck(QString plugins, QString current, const Limits& limits);

    /// Asks for the list at \a address (http or https); gives up a question that is on its way.
    void check(const QString& address);
    void cancel();
    bool isRunning() const { return m_request != nullptr; }

Q_SIGNALS:
    /// There was a list; \a newer is none where nothing in it is newer.
    void answered(const std::optional<quillory::PublishedVersion>& newer);
    /// In words for the user.
    void failed(const QString& description);

private:
    void receive(const QByteArray& part);
    void finish();
    void fail(const QString& description);

    QString m_plugins;
    QString m_current;
    Limits m_limits;
    std::unique_ptr<WebClient> m_client;
    std::unique_ptr<WebConnection> m_request;
    QString m_address;
    QByteArray m_answer;
    QTimer m_time;
    int m_question = 0; ///< the last one
};

} // namespace quillory
