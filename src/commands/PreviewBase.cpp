#include "commands/PreviewBase.h"

#include <QDir>
#include <QFileInfo>

namespace quillory {

namespace {

constexpr QLatin1StringView unnamed("/");

PreviewBase inFolder(const QString& folder, const QString& name)
{
    const QString path = QDir::cleanPath(folder);
    const QString slash(path.endsWith(u'/') ? QString() : QStringLiteral("/"));
    return {path, path + slash + name, {}};
}

} // namespace

PreviewBase PreviewBase::of(const QString& baseURL, const QString& documentPath)
{
    const QString written = baseURL.trimmed();
    const QFileInfo document(documentPath);
    const QUrl url(written);
    if ((url.scheme() == QLatin1StringView("http") || url.scheme() == QLatin1StringView("https")) &&
        !url.host().isEmpty())
        return {{}, unnamed, url};
    const QString local = url.isLocalFile() ? url.toLocalFile() : written;
    if (QDir::isAbsolutePath(local)) {
        const QFileInfo base(local);
        const bool isFolder = local.endsWith(u'/') || base.isDir();
        return inFolder(isFolder ? local : base.path(), document.fileName());
    }
    if (documentPath.isEmpty())
        return {{}, unnamed, {}};
    return inFolder(document.absolutePath(), document.fileName());
}

} // namespace quillory
