#include "preview/RequestGuard.h"

#include "preview/PreviewedFiles.h"

namespace quillory {

namespace {

bool isOneOf(const QString& scheme, std::initializer_list<const char*> schemes)
{
    return std::any_of(schemes.begin(), schemes.end(),
                       [&](const char* one) { return scheme == QLatin1StringView(one); });
}

using Info = QWebEngineUrlRequestInfo;

/// A page may show and run what is made for that. Data it gets to see none, since it could tell it
/// to a server later.
bool mayLoad(Info::ResourceType what, const QString& type)
{
    switch (what) {
    case Info::ResourceTypeMainFrame:
    case Info::ResourceTypeSubFrame:
        return true;
    case Info::ResourceTypeStylesheet:
        return type == QLatin1StringView("text/css");
    case Info::ResourceTypeScript:
        return type.endsWith(QLatin1StringView("javascript"));
    case Info::ResourceTypeImage:
        return type.startsWith(QLatin1StringView("image/"));
    case Info::ResourceTypeFontResource:
        return type.contains(QLatin1StringView("font"));
    case Info::ResourceTypeMedia:
        return type.startsWith(QLatin1StringView("audio/")) ||
               type.startsWith(QLatin1StringView("video/"));
    default:
        return false;
    }
}

} // namespace

QString RequestGuard::serverOf(const QString& host, int port)
{
    const QString shown = host.contains(u':') ? u'[' + host + u']' : host;
    return port < 0 || port == 80 || port == 443 ? shown : shown + u':' + QString::number(port);
}

QString RequestGuard::serverOf(const QUrl& url)
{
    return serverOf(url.host(QUrl::FullyEncoded), url.port());
}

bool RequestGuard::isOfNetwork(const QUrl& url)
{
    return isOneOf(url.scheme(), {"http", "https", "ws", "wss"});
}

bool RequestGuard::mayGo(const QUrl& url, const QUrl& from)
{
    if (isOfNetwork(url)) {
        if (isAllowed(serverOf(url)))
            return true;
        Q_EMIT pageRefused(url);
        return false;
    }
    // Servers do not get to know what there is on the disk.
    return isOneOf(url.scheme(), {"about", "blob"}) ||
           (url.scheme() == PreviewedFiles::scheme && !isOfNetwork(from));
}

void RequestGuard::interceptRequest(QWebEngineUrlRequestInfo& info)
{
    const QUrl url = info.requestUrl();
    const bool isPage = info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame;
    if (isOfNetwork(url)) {
        if (isAllowed(serverOf(url)))
            return;
        info.block(true);
        if (isPage)
            Q_EMIT pageRefused(url);
        else
            Q_EMIT refused(serverOf(url));
        return;
    }
    // Servers do not get to know what there is on the disk.
    const bool isAskedByServer = isOfNetwork(info.initiator()) || isOfNetwork(info.firstPartyUrl());
    const bool passes =
        isOneOf(url.scheme(), {"data", "blob", "about"}) ||
        (url.scheme() == QLatin1StringView("devtools") &&
         (isPage || info.firstPartyUrl().scheme() == QLatin1StringView("devtools"))) ||
        (url.scheme() == PreviewedFiles::scheme && (isPage || !isAskedByServer) &&
         mayLoad(info.resourceType(), PreviewedFiles::typeOf(url.path())));
    info.block(!passes);
}

} // namespace quillory
