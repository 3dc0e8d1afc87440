#pragma once

#include <QByteArray>
#include <QUrl>
#include <QtPlugin>
#include <functional>
#include <memory>

namespace quillory {

/// One request on its way. It ends with this, and nothing more is heard of it then.
class WebConnection
{
public:
    virtual ~WebConnection() = default;
};

/// Asks web servers, as the plugin "quillory-network" does.
class WebClient
{
public:
    /// Called on the thread that asked, and never while it asks. They may end the connection.
    struct Events
    {
        std::function<void(const QByteArray& part)> received;
        /// The server answered, be it with an error of its own.
        std::function<void()> finished;
        std::function<void(const QString& description)> failed;
    };

    virtual ~WebClient() = default;

    /// Gets \a url, whatever was got from there before, and follows \a redirects at most: to http
    /// and https alone, and never from https to http.
    virtual std::unique_ptr<WebConnection> get(const QUrl& url, int redirects, Events events) = 0;
};

/// What the plugin answers to.
class WebClientFactory
{
public:
    virtual ~WebClientFactory() = default;

    virtual std::unique_ptr<WebClient> newClient() = 0;
};

} // namespace quillory

Q_DECLARE_INTERFACE(quillory::WebClientFactory, "quillory.WebClientFactory/1")
