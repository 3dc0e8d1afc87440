#pragma once

#include <QUrl>
#include <QWebEngineUrlSchemeHandler>

namespace quillory {

/// The page that is previewed.
struct PreviewedPage
{
    QString file;   ///< that holds it, as UTF-8
    QString path;   ///< absolute: where it stands for the links in it
    QString folder; ///< absolute: what it may load lies in here; empty for nothing
};

/// The one way of a page to the disk: addresses of a scheme of its own, which lead to the page's
/// text and to what lies in its folder, wherever the links in there lead to. Hidden files are left
/// out, since the folder may be the user's home. What pages may do with a file is for RequestGuard.
class PreviewedFiles : public QWebEngineUrlSchemeHandler
{
    Q_OBJECT

public:
    static constexpr QLatin1StringView scheme{"quillory-preview"};
    /// To be called before there is an application object.
    static void registerScheme();

    /// The MIME type that a file counts as, by its name.
    static QString typeOf(const QString& path);

    void setPage(const PreviewedPage& page);
    /// The page's own address.
    QUrl address() const;

    void requestStarted(QWebEngineUrlRequestJob* job) override;

private:
    /// The file that \a path leads to; empty where there is none that may be seen.
    QString fileAt(const QString& path) const;

    PreviewedPage m_page;
    QString m_folder; ///< canonical
};

} // namespace quillory
