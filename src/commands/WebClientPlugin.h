#pragma once

#include "commands/WebClient.h"

namespace quillory {

/// Loads the plugin "quillory-network", which lies in the folder \a plugins. Null, with \a problem
/// set to words for the user, where that cannot be.
std::unique_ptr<WebClient> loadWebClient(const QString& plugins, QString& problem);

/// Whether \a url can be asked for: http or https, with a host.
bool isWebAddress(const QUrl& url);

} // namespace quillory
