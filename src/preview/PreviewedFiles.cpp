#include "preview/PreviewedFiles.h"

#include <QDir>
#include <QFile>
#include <QMimeDatabase>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>

namespace quillory {

namespace {

bool isHidden(const QString& relativePath)
{
    return relativePath.startsWith(u'.') || relativePath.contains(QStringLiteral("/."));
}

} // namespace

void PreviewedFiles::registerScheme()
{
    QWebEngineUrlScheme own{QByteArray(scheme.data(), scheme.size())};
    own.setSyntax(QWebEngineUrlScheme::Syntax::Path);
    // Every page is a stranger to all others.
    own.setFlags(QWebEngineUrlScheme::NoAccessAllowed | QWebEngineUrlScheme::CorsEnabled);
    QWebEngineUrlScheme::registerScheme(own);
}

QString PreviewedFiles::typeOf(const QString& path)
{
    return QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension).name();
}

void PreviewedFiles::setPage(const PreviewedPage& page)
{
    m_page = page;
    m_folder = page.folder.isEmpty() ? QString() : QFileInfo(page.folder).canonicalFilePath();
}

QUrl PreviewedFiles::address() const
{
    QUrl url;
    url.setScheme(scheme);
    url.setPath(m_page.path, QUrl::DecodedMode);
    return url;
}

QString PreviewedFiles::fileAt(const QString& path) const
{
    if (m_folder.isEmpty() || !path.startsWith(u'/'))
        return {};
    const QFileInfo file(path);
    QString real = file.canonicalFilePath();
    const QString prefix = m_folder.endsWith(u'/') ? m_folder : m_folder + u'/';
    if (!real.startsWith(prefix) || isHidden(real.mid(prefix.size())) || !file.isFile())
        return {};
    return real;
}

void PreviewedFiles::requestStarted(QWebEngineUrlRequestJob* job)
{
    const QString path = job->requestUrl().path(QUrl::FullyDecoded);
    const bool isPage = path == m_page.path;
    const QString found = isPage ? m_page.file : fileAt(path);
    if (found.isEmpty() || job->requestMethod() != "GET") {
        job->fail(QWebEngineUrlRequestJob::UrlNotFound);
        return;
    }
    auto* file = new QFile(found, job);
    if (file->open(QIODevice::ReadOnly))
        job->reply(isPage ? QByteArray("text/html") : typeOf(found).toUtf8(), file);
    else
        job->fail(QWebEngineUrlRequestJob::RequestFailed);
}

} // namespace quillory
