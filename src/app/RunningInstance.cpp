#include "app/RunningInstance.h"

#include "app/Handover.h"

#include <QFile>
#include <QRegularExpression>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace quillory {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 10s; // for an answer; a program that starts takes a part of a second
constexpr auto betweenTries = 10ms;
constexpr int triesToConnect = 200;
constexpr int backlog = 128;

/// Only this user can write to \a folder, which is made where it is missing.
bool makePrivate(const QByteArray& folder)
{
    if (mkdir(folder.constData(), S_IRWXU) != 0 && errno != EEXIST)
        return false;
    struct stat status = {};
    return stat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

std::optional<sockaddr_un> addressOf(const QByteArray& path)
{
    sockaddr_un address = {};
    if (size_t(path.size()) >= sizeof address.sun_path)
        return std::nullopt;
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    return address;
}

int socketOf(int flags)
{
    return socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
}

bool sendAll(int descriptor, const QByteArray& bytes)
{
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            send(descriptor, bytes.constData() + sent, size_t(bytes.size() - sent), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR)
            return false;
        sent += std::max<ssize_t>(count, 0);
    }
    return true;
}

/// Nothing when the other side is gone, or \a timeout milliseconds (-1: no limit) went by.
std::optional<HandoverAnswer> receive(int descriptor, int timeout)
{
    pollfd waiting = {descriptor, POLLIN, 0};
    int ready = 0;
    do
        ready = poll(&waiting, 1, timeout);
    while (ready < 0 && errno == EINTR);
    char answer = 0;
    if (ready <= 0 || recv(descriptor, &answer, 1, 0) != 1)
        return std::nullopt;
    return HandoverAnswer(answer);
}

} // namespace

RunningInstance::RunningInstance(const QString& folder, const QString& screen)
{
    static const QRegularExpression unsuited(QStringLiteral("[^A-Za-z0-9.-]"));
    const QByteArray path = QFile::encodeName(folder);
    const QByteArray name =
        path + "/screen-" + QString(screen).replace(unsuited, QStringLiteral("_")).toLatin1();
    if (!makePrivate(path) || !addressOf(name + ".socket"))
        return;
    m_socketPath = name + ".socket";
    m_lockPath = name + ".lock";
    claim();
}

RunningInstance::~RunningInstance()
{
    for (const int descriptor : {m_lock, m_listening}) {
        if (descriptor >= 0)
            close(descriptor);
    }
}

void RunningInstance::claim()
{
    const int lock = open(m_lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    m_isThis = lock < 0 || flock(lock, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    if (lock < 0)
        return;
    if (!m_isThis) {
        close(lock);
        return;
    }
    m_lock = lock;
    // What may lie there was left by one that was killed.
    unlink(m_socketPath.constData());
    const std::optional<sockaddr_un> address = addressOf(m_socketPath);
    m_listening = socketOf(SOCK_NONBLOCK);
    if (bind(m_listening, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
        listen(m_listening, backlog) != 0) {
        close(m_listening);
        m_listening = -1;
    }
}

int RunningInstance::takeListeningSocket()
{
    return std::exchange(m_listening, -1);
}

void RunningInstance::leaveToChild()
{
    // The lock is of the open file, which the child has too.
    for (int* descriptor : {&m_lock, &m_listening}) {
        if (*descriptor >= 0)
            close(*descriptor);
        *descriptor = -1;
    }
    m_isThis = false;
}

int RunningInstance::connectToOther() const
{
    const std::optional<sockaddr_un> address = addressOf(m_socketPath);
    const int descriptor = socketOf(0);
    // Between taking the lock and listening there is a moment.
    for (int i = 0; i < triesToConnect; ++i) {
        if (connect(descriptor, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) == 0)
            return descriptor;
        std::this_thread::sleep_for(betweenTries);
    }
    close(descriptor);
    return -1;
}

RunningInstance::Delivery RunningInstance::deliver(const QByteArray& request, bool waits) const
{
    const int descriptor = connectToOther();
    if (descriptor < 0)
        return Delivery::NotTaken;
    const auto taken = sendAll(descriptor, request)
                           ? receive(descriptor, std::chrono::milliseconds(patience).count())
                           : std::nullopt;
    std::optional<HandoverAnswer> end;
    if (taken && waits)
        end = receive(descriptor, -1);
    close(descriptor);
    if (!taken)
        return Delivery::NotTaken;
    if (!waits)
        return Delivery::Done;
    if (!end)
        return Delivery::Lost;
    return *end == HandoverAnswer::NotOpened ? Delivery::NotOpened : Delivery::Done;
}

} // namespace quillory
