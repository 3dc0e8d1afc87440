#include "preview/Confinement.h"
#include "preview/EditorLink.h"
#include "preview/NetworkGate.h"
#include "preview/PreviewWindow.h"

#include <QApplication>
#include <QIcon>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int wrongUsage = 2;

/// A copy of \a file that no other program inherits; \a file becomes what \a replacement is.
int takeOver(int file, int replacement)
{
    const int own = ::fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::dup2(replacement, file);
    return own;
}

} // namespace

int main(int argc, char* argv[])
{
    if (::isatty(STDIN_FILENO)) {
        std::fputs("quillory-preview: this is a part of the editor, which starts it.\n", stderr);
        return wrongUsage;
    }
    std::signal(SIGPIPE, SIG_IGN);
    // Whatever a library prints is not for the editor.
    const int nothing = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    const int input = takeOver(STDIN_FILENO, nothing);
    const int output = takeOver(STDOUT_FILENO, STDERR_FILENO);

    const int gateSocket = quillory::confineEngine();
    if (gateSocket < 0) {
        std::perror("quillory-preview: no socket");
        return 1;
    }
    QCoreApplication::setApplicationName(QStringLiteral("Quillory"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.quillory.Quillory"));
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("org.quillory.Quillory")));
    quillory::followPalette();

    quillory::EditorLink link(input, output);
    quillory::NetworkGate gate(gateSocket);
    quillory::PreviewWindow window(gate);
    using quillory::EditorLink;
    using quillory::PreviewWindow;
    QObject::connect(&link, &EditorLink::received, &window, &PreviewWindow::receive);
    QObject::connect(&window, &PreviewWindow::tells, &link, &EditorLink::tell);
    QObject::connect(&link, &EditorLink::ended, &application, &QCoreApplication::quit);
    return QApplication::exec();
}
