#include "app/Shell.h"

#include "app/CloudBrowser.h"
#include "app/DocumentController.h"
#include "app/UserQuestions.h"
#include "app/WelcomeWindow.h"
#include "document/Document.h"
#include "document/DocumentEnvironment.h"
#include "foundation/UserDefaults.h"

#include <QTimer>

namespace quillory {

namespace {

constexpr std::chrono::seconds versionCheckDelay{5}; ///< after the first window

} // namespace

Shell::Shell(DocumentController& controller, const DocumentEnvironment& environment)
    : QObject(&controller), m_controller(controller), m_environment(environment),
      m_versions(controller, environment)
{}

Shell& Shell::of(const DocumentWindow& window)
{
    DocumentController& controller = window.controller();
    auto* shell = controller.findChild<Shell*>(QString(), Qt::FindDirectChildrenOnly);
    return shell ? *shell : *new Shell(controller, window.environment());
}

void Shell::checkForVersionLater()
{
    QTimer::singleShot(versionCheckDelay, &m_versions, &VersionNotice::checkIfDue);
}

Shell::~Shell()
{
    delete m_welcome;
}

WelcomeWindow* Shell::welcomeWindow() const
{
    return m_welcome;
}

void Shell::showWelcome(DocumentWindow& window)
{
    if (!m_welcome) {
        m_welcome = new WelcomeWindow(m_controller, m_environment, window);
        m_welcome->adjustSize();
        m_welcome->move(window.frameGeometry().center() - m_welcome->rect().center());
    }
    m_welcome->show();
    m_welcome->raise();
    m_welcome->activateWindow();
}

void Shell::welcomeAtStart(DocumentWindow& window)
{
    UserDefaults& defaults = m_environment.defaults;
    const bool isFirst = !defaults.isWritten(keys::showWelcome);
    if (!isFirst && !defaults.value(keys::showWelcome))
        return;
    if (isFirst)
        defaults.setValue(keys::showWelcome, false);
    // Of the two that would come up by themselves one is enough.
    disconnect(&window.document(), &Document::settingsSheetRequested, &window, nullptr);
    // Over a window that stands.
    connect(
        &window, &DocumentWindow::firstPainted, this,
        [this, guard = QPointer(&window)] {
            if (guard)
                showWelcome(*guard);
        },
        Qt::QueuedConnection);
}

void Shell::showiCloudWindow(DocumentWindow& window)
{
    if (CloudBrowser::folderOf(m_environment).isEmpty()) {
        window.questions().showAlert(&window, tr("Error!"), tr("No Dropbox path provided."));
        return;
    }
    if (!m_cloudBrowser) {
        m_cloudBrowser = std::make_unique<CloudBrowser>(m_controller, m_environment);
        connect(m_cloudBrowser.get(), &CloudBrowser::preferencesRequested, this,
                [this] { m_controller.preferences().showWindow(*m_cloudBrowser); });
    }
    m_cloudBrowser->present(window);
}

} // namespace quillory
