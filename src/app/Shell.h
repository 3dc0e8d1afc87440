#pragma once

#include "app/VersionNotice.h"

#include <QObject>
#include <QPointer>
#include <memory>

namespace quillory {

class CloudBrowser;
class DocumentController;
class DocumentWindow;
class WelcomeWindow;
struct DocumentEnvironment;

/// The windows that the program has beside those of its documents. Each is made when it is first
/// shown.
class Shell : public QObject
{
    Q_OBJECT

public:
    ~Shell() override;

    /// The one of the program that \a window belongs to; a child of its controller.
    static Shell& of(const DocumentWindow& window);

    /// Opens the browser of the shared folder; tells that none was chosen.
    void showiCloudWindow(DocumentWindow& window);
    /// Shows where one can begin, over \a window.
    void showWelcome(DocumentWindow& window);
    /// The same after a start without files: the first time, and when the user wants it.
    void welcomeAtStart(DocumentWindow& window);
    /// Looks for a new version of the program, and tells in \a window what came of it.
    void checkForVersion(DocumentWindow& window) { m_versions.checkNow(window); }
    /// Does so in a while, if the user wants it and it is due.
    void checkForVersionLater();

    /// Null until it was first shown.
    CloudBrowser* cloudBrowser() const { return m_cloudBrowser.get(); }
    /// Null while it is not shown.
    WelcomeWindow* welcomeWindow() const;

private:
    Shell(DocumentController& controller, const DocumentEnvironment& environment);

    DocumentController& m_controller;
    const DocumentEnvironment& m_environment;
    VersionNotice m_versions;
    std::unique_ptr<CloudBrowser> m_cloudBrowser;
    QPointer<WelcomeWindow> m_welcome;
};

} // namespace quillory
