#include "app/StartHandover.h"

#include "app/Handover.h"
#include "app/RunningInstance.h"

#include <QCoreApplication>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace quillory {

namespace {

constexpr int tries = 3;

/// Neither a signal of the terminal nor the end of who reads from a pipe is for this process.
void goToBackground()
{
    setsid();
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (descriptor != STDERR_FILENO || isatty(descriptor) == 0)
            dup2(nothing, descriptor);
    }
    close(nothing);
}

void say(const char* text)
{
    std::fputs(qUtf8Printable(QCoreApplication::translate("StartHandover", text)), stderr);
}

} // namespace

std::optional<int> handOver(StartOptions& options, RunningInstance& instance)
{
    using Delivery = RunningInstance::Delivery;
    const Handover handover = handoverOf(options);
    if (instance.isThis()) {
        const pid_t child = options.waits ? fork() : -1;
        if (child < 0)
            return std::nullopt;
        if (child == 0) {
            goToBackground();
            options.targets.clear();
            options.serves = true;
            return std::nullopt;
        }
        instance.leaveToChild();
    }
    const QByteArray request = encode(handover);
    for (int i = 0; i < tries; ++i) {
        switch (instance.deliver(request, handover.waits)) {
        case Delivery::Done:
            return 0;
        case Delivery::NotOpened:
            return 1;
        case Delivery::Lost:
            say("quillory: the editor ended before the files were closed.\n");
            return 1;
        case Delivery::NotTaken:
            instance.claim();
            if (instance.isThis())
                return std::nullopt;
        }
    }
    say("quillory: the Quillory that runs already does not answer, so another one is started.\n");
    return std::nullopt;
}

} // namespace quillory
