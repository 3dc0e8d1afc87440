#pragma once

#include <QString>
#include <functional>
#include <optional>

class QObject;

namespace quillory {

/// Tells \a tell the text of the clipboard, with line feeds for its line breaks; nothing where it
/// holds none. Another program's is waited for on another thread, on an X server; it is told later
/// then, unless \a context is gone.
void fetchClipboardText(QObject* context,
                        const std::function<void(const std::optional<QString>&)>& tell);

} // namespace quillory
