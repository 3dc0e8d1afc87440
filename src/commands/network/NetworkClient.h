#pragma once

#include "commands/WebClient.h"

#include <QNetworkAccessManager>

namespace quillory {

class NetworkClient : public WebClient
{
public:
    std::unique_ptr<WebConnection> get(const QUrl& url, int redirects, Events events) override;

private:
    QNetworkAccessManager m_manager;
};

class NetworkClientFactory : public QObject, public WebClientFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "quillory.WebClientFactory/1")
    Q_INTERFACES(quillory::WebClientFactory)

public:
    std::unique_ptr<WebClient> newClient() override { return std::make_unique<NetworkClient>(); }
};

} // namespace quillory
