#include "commands/WebClientPlugin.h"

#include <QCoreApplication>
#include <QPluginLoader>

namespace quillory {

std::unique_ptr<WebClient> loadWebClient(const QString& plugins, QString& problem)
{
    QPluginLoader plugin(plugins + QStringLiteral("/quillory-network.so"));
    if (auto* factory = qobject_cast<WebClientFactory*>(plugin.instance()))
        return factory->newClient();
    problem = QCoreApplication::translate("WebClientPlugin",
                                          "The part of the program that asks servers is not "
                                          "installed (%1). Install Quillory anew.")
                  .arg(plugin.errorString());
    return nullptr;
}

bool isWebAddress(const QUrl& url)
{
    const QString scheme = url.scheme();
    return url.isValid() && !url.host().isEmpty() && (scheme == u"http" || scheme == u"https");
}

} // namespace quillory
