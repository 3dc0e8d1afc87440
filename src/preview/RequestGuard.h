#pragma once

#include <QSet>
#include <QUrl>
#include <QWebEngineUrlRequestInterceptor>

namespace quillory {

/// Lets no request of a page pass but those that need no network and those to the servers that the
/// user allowed.
class RequestGuard : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT

public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    /// What the user allows or not: the host, with its port where that is an unusual one.
    static QString serverOf(const QString& host, int port);
    static QString serverOf(const QUrl& url);
    static bool isOfNetwork(const QUrl& url);

    void allow(const QString& server) { m_allowed.insert(server); }
    bool isAllowed(const QString& server) const { return m_allowed.contains(server); }
    /// Whether the window may go to \a url from the page at \a from, where a page asks for it.
    /// Tells of what the user could allow.
    bool mayGo(const QUrl& url, const QUrl& from);

    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

Q_SIGNALS:
    /// Something was to be loaded from there, which the user may allow.
    void refused(const QString& server);
    /// The window was to go there.
    void pageRefused(const QUrl& url);

private:
    QSet<QString> m_allowed;
};

} // namespace quillory
