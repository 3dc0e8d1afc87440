#include "app/Application.h"

#include "app/FirstValues.h"
#include "app/HandoverServer.h"
#include "app/HeadlessPrint.h"
#include "app/MessageBar.h"
#include "app/Recovery.h"
#include "app/RenderToPng.h"
#include "app/SessionEnd.h"
#include "app/Shell.h"
#include "app/WindowRestoration.h"
#include "foundation/Background.h"
#include "view/TextViewAccessible.h"

#include <QApplication>
#include <QIcon>
#include <QImageReader>
#include <QProcessEnvironment>
#include <QTimer>

// A static library's resources are linked in only when they are asked for.
static void initialiseResources()
{
    Q_INIT_RESOURCE(quillory);
}

namespace quillory {

namespace {

constexpr std::chrono::seconds patienceWithoutWindow{10};

void welcome(DocumentWindow& window)
{
    Shell::of(window).welcomeAtStart(window);
}

/// Waits for the first paint, which drawing the icon would delay.
void setIcon()
{
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/quillory.svg")));
}

} // namespace

Application::Application()
    : m_folders(ApplicationFolders::fromEnvironment(QProcessEnvironment::systemEnvironment(),
                                                    QCoreApplication::applicationDirPath())),
      m_defaults(m_folders.defaultsFile()), m_recovery(m_fileOps, m_folders.recoveryFolder()),
      m_versions(m_fileOps, m_folders.versionsFolder()),
      m_state(m_folders.state + QStringLiteral("/Windows.conf"), QSettings::IniFormat),
      m_environment{m_folders, m_defaults, m_notifications, m_fileOps, m_recovery, &m_versions},
      m_controller(m_environment, m_questions, m_state)
{
    initialiseResources();
    // A menu bar asks for the image of its button, for which the toolkit loads every reader that
    // there is.
    backgroundPool().start([] { QImageReader::supportedImageFormats(); });
    registerFirstValues(m_folders, m_defaults);
    installTextViewAccessibility();
    installMessageAccessibility();
}

int Application::run(const StartOptions& line, int listeningSocket)
{
    if (line.action == StartOptions::Action::Print)
        return printToFile(m_environment, line);
    bool opened = false;
    WindowRestoration* restoration = nullptr;
    const auto finish = [&] {
        // The windows that were closed meanwhile were not all that there are.
        if (restoration->isRestoring())
            return;
        QCoreApplication::exit(m_controller.hasOpened() || !m_controller.hasFailed() ? 0 : 1);
    };
    QObject::connect(&m_controller, &DocumentController::finished, qApp, finish,
                     Qt::QueuedConnection);
    QObject::connect(
        &m_controller, &DocumentController::windowOpened, qApp, [&](DocumentWindow* window) {
            if (!opened && line.action == StartOptions::Action::Render)
                renderToPng(*window, line.renderTo,
                            [](bool written) { QCoreApplication::exit(written ? 0 : 1); });
            if (!opened)
                QObject::connect(window, &DocumentWindow::firstPainted, qApp, setIcon);
            if (!opened && line.action == StartOptions::Action::Open)
                Shell::of(*window).checkForVersionLater();
            opened = true;
        });
    const HandoverServer server(listeningSocket, m_controller);
    const SessionEnd sessionEnd(m_controller);
    Recovery recovery(m_controller, m_environment);
    WindowRestoration windows(m_controller, m_environment, m_questions);
    restoration = &windows;
    windows.setException([&](const DocumentWindow& window) { return server.isWaitedFor(window); });
    windows.setRecovery(recovery);
    QObject::connect(&sessionEnd, &SessionEnd::stateWanted, &windows, &WindowRestoration::save);
    const auto openTargets = [&] {
        if (!line.targets.empty())
            m_controller.open(line.targets);
        else if (m_controller.windows().empty() && !windows.isRestoring())
            welcome(*m_controller.newDocument());
    };
    QObject::connect(&windows, &WindowRestoration::textsRestored, qApp, openTargets);
    QObject::connect(&windows, &WindowRestoration::restored, qApp, [&] {
        if (!opened && line.targets.empty())
            m_controller.newDocument();
        else
            m_controller.settle();
    });
    // One that another program waits for shows what that asks for, and nothing else.
    if (line.serves)
        QTimer::singleShot(patienceWithoutWindow, &m_controller, &DocumentController::settle);
    else if (line.restoresWindows())
        windows.start(!line.targets.empty());
    else if (line.action == StartOptions::Action::Open && !line.newInstance && !line.waits)
        recovery.recoverAll(openTargets);
    else
        openTargets();
    return QCoreApplication::exec();
}

} // namespace quillory
