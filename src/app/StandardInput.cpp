#include "app/StandardInput.h"

#include "document/DocumentType.h"

#include <QCoreApplication>
#include <array>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr int glance = 100; ///< milliseconds between two looks at whether the user has cancelled

bool writeAll(int file, const char* bytes, ssize_t size)
{
    while (size > 0) {
        const ssize_t count = write(file, bytes, size_t(size));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        bytes += count;
        size -= count;
    }
    return true;
}

/// The errno of what failed, or 0.
int copyInput(int target, const std::atomic_bool& cancelled)
{
    std::array<char, 65536> buffer;
    while (!cancelled) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        const int ready = poll(&input, 1, glance);
        if (ready == 0 || (ready < 0 && errno == EINTR))
            continue;
        const ssize_t count = ready < 0 ? -1 : read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count == 0)
            return 0;
        if (count < 0 && (errno == EINTR || errno == EAGAIN))
            continue;
        if (count < 0 || !writeAll(target, buffer.data(), count))
            return errno;
    }
    return ECANCELED;
}

} // namespace

/// The bytes are gathered in a file in memory, so that the one way of reading does for them too.
ReadResult readStandardInput(const std::atomic_bool& cancelled)
{
    ReadResult result;
    const int memory = memfd_create("standard input", MFD_CLOEXEC);
    const int error = memory < 0 ? errno : copyInput(memory, cancelled);
    if (error == 0)
        result = readDocument(QStringLiteral("/proc/self/fd/%1").arg(memory), DocumentType::text,
                              &cancelled);
    else
        result.message =
            QCoreApplication::translate("StandardInput", "Standard input could not be read: %1.")
                .arg(QString::fromLocal8Bit(std::strerror(error)));
    if (memory >= 0)
        close(memory);
    result.path.clear();
    return result;
}

} // namespace quillory
