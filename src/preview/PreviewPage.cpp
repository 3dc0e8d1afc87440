#include "preview/PreviewPage.h"

#include "preview/RequestGuard.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QWebEngineFileSystemAccessRequest>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>
#include <QWebEngineSettings>

namespace quillory {

namespace {

constexpr int longestMessage = 2000; ///< code units

/// What the engine asks in the page's place where a page wants to be asked before it is left.
QString leaveQuestion()
{
    return QCoreApplication::translate("QWebEnginePage",
                                       "Are you sure you want to leave this page? Changes that "
                                       "you made may not be saved.");
}

/// \a text as the rich text of a dialog that shows it as it stands.
QString verbatim(const QString& text)
{
    QString shown = text.left(longestMessage).toHtmlEscaped();
    return shown.replace(u'\n', QStringLiteral("<br>"));
}

} // namespace

PreviewPage::PreviewPage(QWebEngineProfile& profile, RequestGuard& guard, QWidget* window)
    : QWebEnginePage(&profile, window), m_guard(guard), m_window(window)
{
    QWebEngineSettings& settings = *this->settings();
    for (const auto attribute :
         {QWebEngineSettings::PluginsEnabled, QWebEngineSettings::PdfViewerEnabled,
          QWebEngineSettings::LocalContentCanAccessFileUrls,
          QWebEngineSettings::LocalContentCanAccessRemoteUrls,
          QWebEngineSettings::HyperlinkAuditingEnabled, QWebEngineSettings::DnsPrefetchEnabled,
          QWebEngineSettings::AutoLoadIconsForPage, QWebEngineSettings::NavigateOnDropEnabled,
          QWebEngineSettings::JavascriptCanAccessClipboard,
          QWebEngineSettings::AllowWindowActivationFromJavaScript,
          // The text is typed on in another window.
          QWebEngineSettings::FocusOnNavigationEnabled})
        settings.setAttribute(attribute, false);
    settings.setAttribute(QWebEngineSettings::WebRTCPublicInterfacesOnly, true);
    settings.setAttribute(QWebEngineSettings::PlaybackRequiresUserGesture, true);
    settings.setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
    refuseEverything();
    connect(this, &QWebEnginePage::newWindowRequested, this,
            [this](const QWebEngineNewWindowRequest& request) {
                if (m_guard.mayGo(request.requestedUrl(), url()))
                    go(request.requestedUrl());
            });
    connect(this, &QWebEnginePage::loadStarted, this, [this] {
        m_dialogs = 0;
        m_leaves = false;
    });
}

void PreviewPage::refuseEverything()
{
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl& origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
    connect(this, &QWebEnginePage::fullScreenRequested, this,
            [](QWebEngineFullScreenRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::quotaRequested, this,
            [](QWebEngineQuotaRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::fileSystemAccessRequested, this,
            [](QWebEngineFileSystemAccessRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
}

void PreviewPage::go(const QUrl& url)
{
    m_leaves = true;
    load(url);
}

void PreviewPage::renew()
{
    m_leaves = true;
    triggerAction(QWebEnginePage::Reload);
}

bool PreviewPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame)
{
    // What frames load is for the guard as a request.
    if (!isMainFrame || type == NavigationTypeTyped || type == NavigationTypeReload ||
        type == NavigationTypeBackForward)
        return true;
    return m_guard.mayGo(url, this->url());
}

bool PreviewPage::mayAsk()
{
    return m_window->isVisible() && m_dialogs++ < mostDialogs;
}

bool PreviewPage::showPanel(const QString& message, bool canCancel)
{
    if (!mayAsk())
        return false;
    QMessageBox box(QMessageBox::NoIcon, QString(), QStringLiteral("JavaScript"), QMessageBox::Ok,
                    m_window);
    box.setInformativeText(verbatim(message));
    if (canCancel)
        box.addButton(QMessageBox::Cancel);
    return box.exec() == QMessageBox::Ok;
}

void PreviewPage::javaScriptAlert(const QUrl& /*origin*/, const QString& message)
{
    showPanel(message, false);
}

bool PreviewPage::javaScriptConfirm(const QUrl& /*origin*/, const QString& message)
{
    return (m_leaves && message == leaveQuestion()) || showPanel(message, true);
}

bool PreviewPage::javaScriptPrompt(const QUrl& /*origin*/, const QString& message,
                                   const QString& suggestion, QString* answer)
{
    if (!mayAsk())
        return false;
    QInputDialog dialog(m_window);
    dialog.setWindowTitle(QStringLiteral("JavaScript"));
    dialog.setLabelText(verbatim(message));
    dialog.setTextValue(suggestion);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    *answer = dialog.textValue();
    return true;
}

QStringList PreviewPage::chooseFiles(FileSelectionMode mode, const QStringList& /*before*/,
                                     const QStringList& /*types*/)
{
    if (!mayAsk())
        return {};
    QFileDialog dialog(m_window);
    dialog.setFileMode(mode == FileSelectOpenMultiple   ? QFileDialog::ExistingFiles
                       : mode == FileSelectUploadFolder ? QFileDialog::Directory
                                                        : QFileDialog::ExistingFile);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

void PreviewPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/,
                                           const QString& /*message*/, int /*line*/,
                                           const QString& /*source*/)
{
    // It is in the inspector.
}

bool PreviewPage::isAsking() const
{
    const QList<QDialog*> dialogs = m_window->findChildren<QDialog*>();
    return std::any_of(dialogs.begin(), dialogs.end(),
                       [](const QDialog* dialog) { return dialog->isVisible(); });
}

void PreviewPage::closeDialogs()
{
    m_dialogs = mostDialogs;
    for (QDialog* dialog : m_window->findChildren<QDialog*>())
        dialog->reject();
}

} // namespace quillory
