#pragma once

#include <QString>
#include <QUrl>

namespace quillory {

/// Where the links of a previewed text that do not say it themselves lead to.
struct PreviewBase
{
    QString folder; ///< absolute, with nothing of it where links lead elsewhere: empty
    QString path;   ///< absolute: where in there the page stands
    QUrl server;    ///< the address on a server that links are relative to; empty for none

    /// For a document at \a documentPath (empty before the first save) with the base address
    /// \a baseURL: an address of a server, or of a file or a folder, which may also be given as an
    /// absolute path. Anything else counts as none, and the document's own place serves.
    static PreviewBase of(const QString& baseURL, const QString& documentPath);
};

} // namespace quillory
