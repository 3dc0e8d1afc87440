#include "app/SessionEnd.h"

#include "app/DocumentController.h"
#include "app/SaveFlow.h"
#include "document/Document.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QSocketNotifier>
#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr std::array signalsToEnd{SIGTERM, SIGINT, SIGHUP};
using namespace std::chrono_literals;

/// For saves that are under way; those who end a session wait longer before they kill.
constexpr auto longestWait = 5s;
constexpr int signalledStatus = 128; ///< plus the signal, as shells count

// A handler of signals reaches nothing else. The write end is first.
std::array<int, 2> signalPipe{-1, -1};

void noteSignal(int number)
{
    const char byte = char(number);
    const int error = errno;
    (void)!write(signalPipe[0], &byte, 1);
    errno = error;
}

/// Who was started to ignore a signal, as by nohup, goes on to. The second signal ends the program
/// at once.
void handle(int number, bool on)
{
    struct sigaction before = {};
    struct sigaction action = {};
    action.sa_handler = on ? noteSignal : SIG_DFL;
    action.sa_flags = int(SA_RESETHAND) | SA_RESTART;
    if (sigaction(number, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
        sigaction(number, &action, nullptr);
}

bool isSaving(const DocumentWindow* window)
{
    return window->saving().isSaving();
}

} // namespace

SessionEnd::SessionEnd(DocumentController& controller) : m_controller(controller)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) == 0) {
        signalPipe = {ends[1], ends[0]};
        m_notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
            char number = 0;
            if (read(signalPipe[1], &number, 1) == 1)
                end(signalledStatus + number);
        });
        for (const int number : signalsToEnd)
            handle(number, true);
    }
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &SessionEnd::leave);
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &SessionEnd::prepare);
    qGuiApp->installEventFilter(this);
}

SessionEnd::~SessionEnd()
{
    if (!m_notifier)
        return;
    for (const int number : signalsToEnd)
        handle(number, false);
    m_notifier.reset();
    for (const int descriptor : std::exchange(signalPipe, {-1, -1}))
        close(descriptor);
}

/// The session's end may still be called off, so the windows stay as they are.
void SessionEnd::prepare()
{
    for (DocumentWindow* window : m_controller.windows())
        (void)window->journal().flush();
    Q_EMIT stateWanted();
}

void SessionEnd::end(int status)
{
    if (std::exchange(m_status, status))
        return;
    m_patience.start(longestWait);
    const std::vector<DocumentWindow*>& windows = m_controller.windows();
    // Who ends the session may have less patience.
    if (std::any_of(windows.begin(), windows.end(), isSaving))
        prepare();
    leaveWhenSaved();
}

/// A journal that does not know that its text was saved finds another file than it was about.
void SessionEnd::leaveWhenSaved()
{
    const std::vector<DocumentWindow*>& windows = m_controller.windows();
    const auto saving = std::find_if(windows.begin(), windows.end(), isSaving);
    if (saving == windows.end())
        leave();
    else
        (*saving)->saving().whenIdle([guard = QPointer(this)] {
            if (guard && guard->m_patience.isActive())
                guard->leaveWhenSaved();
        });
}

void SessionEnd::leave()
{
    m_patience.stop();
    for (DocumentWindow* window : m_controller.windows()) {
        if (!window->journal().leave())
            qWarning("quillory: not all edits of “%s” could be kept.",
                     qUtf8Printable(window->document().displayName()));
    }
    Q_EMIT stateWanted();
    QCoreApplication::exit(*m_status);
}

/// The session manager, unlike the user, asks the application to quit.
bool SessionEnd::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != qGuiApp || event->type() != QEvent::Quit)
        return QObject::eventFilter(watched, event);
    end(0);
    return true;
}

} // namespace quillory
