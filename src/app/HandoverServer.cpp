#include "app/HandoverServer.h"

#include "app/DocumentController.h"

#include <QDir>
#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <sys/socket.h>
#include <unistd.h>

namespace quillory {

namespace {

bool isOfThisUser(int descriptor)
{
    ucred credentials = {};
    socklen_t size = sizeof credentials;
    return getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &credentials, &size) == 0 &&
           credentials.uid == geteuid();
}

/// A byte always finds room. Who is gone already wants none.
void answer(int descriptor, HandoverAnswer what)
{
    const char byte = char(what);
    (void)send(descriptor, &byte, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
}

} // namespace

HandoverServer::HandoverServer(int listeningSocket, DocumentController& controller, QObject* parent)
    : QObject(parent), m_controller(controller), m_socket(listeningSocket)
{
    if (m_socket < 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &HandoverServer::accept);
    connect(&m_controller, &DocumentController::windowOpened, this, &HandoverServer::noteOpened);
    connect(&m_controller, &DocumentController::settled, this, &HandoverServer::answerWaiting);
}

HandoverServer::~HandoverServer()
{
    m_notifier.reset();
    if (m_socket >= 0)
        close(m_socket);
    for (const auto& start : m_starts) {
        start->notifier.reset();
        close(start->descriptor);
    }
}

void HandoverServer::accept()
{
    const int descriptor = accept4(m_socket, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (descriptor < 0)
        return;
    if (!isOfThisUser(descriptor)) {
        close(descriptor);
        return;
    }
    auto start = std::make_unique<Start>();
    start->descriptor = descriptor;
    start->notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(start->notifier.get(), &QSocketNotifier::activated, this,
            [this, start = start.get()] { read(*start); });
    m_starts.push_back(std::move(start));
}

void HandoverServer::read(Start& start)
{
    std::array<char, 65536> buffer;
    const ssize_t count = recv(start.descriptor, buffer.data(), buffer.size(), 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    bool broken = count <= 0 || start.waits; // who waits has said everything
    std::optional<Handover> handover;
    if (!broken) {
        start.received.append(buffer.data(), count);
        handover = decode(start.received, broken);
    }
    if (broken)
        drop(start);
    else if (handover)
        take(start, *handover);
}

void HandoverServer::take(Start& start, const Handover& handover)
{
    answer(start.descriptor, HandoverAnswer::Taken);
    // Qt takes it from here when a window asks to be activated.
    if (!handover.activationToken.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", handover.activationToken);
    if (handover.targets.empty())
        m_controller.raise(*m_controller.newDocument());
    else
        m_controller.open(handover.targets);
    if (!handover.waits) {
        drop(start);
        return;
    }
    start.waits = true;
    for (const OpenTarget& target : handover.targets)
        start.unopened.append(QDir::cleanPath(target.path));
    for (DocumentWindow* window : m_controller.windows())
        noteOpened(window);
    answerWaiting();
}

void HandoverServer::noteOpened(DocumentWindow* window)
{
    for (const auto& start : m_starts) {
        const auto shown = [&](const QString& path) {
            return m_controller.windowShowing(path) == window;
        };
        if (start->unopened.removeIf(shown) > 0)
            start->windows.emplace_back(window);
    }
}

bool HandoverServer::isWaitedFor(const DocumentWindow& window) const
{
    const auto isIn = [&](const std::unique_ptr<Start>& start) {
        return std::find(start->windows.begin(), start->windows.end(), &window) !=
               start->windows.end();
    };
    return std::any_of(m_starts.begin(), m_starts.end(), isIn);
}

/// Those whose files are neither shown nor about to be.
void HandoverServer::answerWaiting()
{
    const auto ended = [this](const std::unique_ptr<Start>& start) {
        if (!start->waits)
            return false;
        const auto failed = [this](const QString& path) { return !m_controller.isOpening(path); };
        start->failed |= start->unopened.removeIf(failed) > 0;
        const auto& open = m_controller.windows();
        std::erase_if(start->windows, [&](const QPointer<DocumentWindow>& window) {
            return std::find(open.begin(), open.end(), window) == open.end();
        });
        return start->unopened.isEmpty() && start->windows.empty();
    };
    for (size_t i = m_starts.size(); i-- > 0;) {
        if (!ended(m_starts[i]))
            continue;
        answer(m_starts[i]->descriptor,
               m_starts[i]->failed ? HandoverAnswer::NotOpened : HandoverAnswer::Closed);
        drop(*m_starts[i]);
    }
}

void HandoverServer::drop(const Start& start)
{
    const auto it = std::find_if(m_starts.begin(), m_starts.end(),
                                 [&](const auto& each) { return each.get() == &start; });
    // This may be called by its own notifier.
    it->get()->notifier->setEnabled(false);
    it->get()->notifier.release()->deleteLater();
    close(it->get()->descriptor);
    m_starts.erase(it);
}

} // namespace quillory
