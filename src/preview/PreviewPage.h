#pragma once

#include <QWebEnginePage>

namespace quillory {

class RequestGuard;

/// A page of the preview: it asks by dialogs, opens no second window, and is granted nothing.
class PreviewPage : public QWebEnginePage
{
    Q_OBJECT

public:
    /// Dialogs that a page can show until it is loaded anew; further ones are answered with no.
    static constexpr int mostDialogs = 20;

    PreviewPage(QWebEngineProfile& profile, RequestGuard& guard, QWidget* window);

    /// Loads \a url without asking the page that is shown now.
    void go(const QUrl& url);
    /// Loads the page that is shown anew, at the place in it that is in sight.
    void renew();
    /// Answers what is asked now with no.
    void closeDialogs();
    /// A dialog is open, for which the page waits.
    bool isAsking() const;
    /// Counts a dialog that the page brings up; false where it may show none any more.
    bool mayAsk();

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptAlert(const QUrl& origin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& message) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& message, const QString& suggestion,
                          QString* answer) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& before,
                            const QStringList& types) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                  int line, const QString& source) override;

private:
    void refuseEverything();
    bool showPanel(const QString& message, bool canCancel);

    RequestGuard& m_guard;
    QWidget* m_window;
    int m_dialogs = 0;
    bool m_leaves = false; ///< the page is not asked whether it may be left
};

} // namespace quillory
