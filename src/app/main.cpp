#include "app/Application.h"
#include "app/Preloading.h"
#include "app/RunningInstance.h"
#include "app/StartHandover.h"
#include "app/StartOptions.h"

#include <QApplication>
#include <QFileInfo>
#include <csignal>
#include <cstdio>

namespace {

constexpr int wrongUsage = 2;

quillory::StartOptions parse(const QStringList& arguments)
{
    return quillory::parseStartOptions(arguments,
                                       [](const QString& path) { return QFileInfo::exists(path); });
}

/// True when the command line wants no window; \a status is the exit status then.
bool answersAlone(const quillory::StartOptions& line, int& status)
{
    using Action = quillory::StartOptions::Action;
    if (line.action == Action::Open || line.action == Action::Render ||
        line.action == Action::Print)
        return false;
    const bool refuses = line.action == Action::Refuse;
    std::fputs(qUtf8Printable(line.text), refuses ? stderr : stdout);
    status = refuses ? wrongUsage : 0;
    return true;
}

bool hasDisplay()
{
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
}

/// Programs on different screens do not know of each other.
QString screenName()
{
    QStringList names;
    for (const char* variable : {"WAYLAND_DISPLAY", "DISPLAY", "QT_QPA_PLATFORM"})
        names += qEnvironmentVariable(variable);
    return names.join(u'-');
}

bool canBeHandedOver(const quillory::StartOptions& line)
{
    const auto isStandardInput = [](const quillory::OpenTarget& target) {
        return target.isStandardInput();
    };
    return line.action == quillory::StartOptions::Action::Open && !line.newInstance &&
           std::none_of(line.targets.begin(), line.targets.end(), isStandardInput);
}

} // namespace

int main(int argc, char* argv[])
{
    // A file-size limit is for the save to tell of (EFBIG), not to end the program.
    std::signal(SIGXFSZ, SIG_IGN);
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    const bool choosesPlatform = arguments.contains(QStringLiteral("-platform"));
    int status = 0;
    // Help is for those without a display too. Wrong options have to wait: some are the toolkit's.
    const quillory::StartOptions early = parse(arguments);
    if ((early.action != quillory::StartOptions::Action::Refuse ||
         !(hasDisplay() || choosesPlatform)) &&
        answersAlone(early, status))
        return status;
    // Nothing is shown, so that a display that cannot be reached is no hindrance.
    if (early.action == quillory::StartOptions::Action::Print && !choosesPlatform)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!hasDisplay() && !choosesPlatform) {
        std::fputs(qUtf8Printable(QCoreApplication::translate(
                       "main", "quillory: there is no display to open a window on: neither DISPLAY "
                               "nor WAYLAND_DISPLAY is set.\n")),
                   stderr);
        return 1;
    }

    const auto folders =
        quillory::ApplicationFolders::fromEnvironment(QProcessEnvironment::systemEnvironment(), {});
    std::optional<quillory::RunningInstance> instance;
    bool serves = false;
    if (canBeHandedOver(early)) {
        instance.emplace(folders.runtime, screenName());
        quillory::StartOptions handed = early;
        if (const std::optional<int> exitStatus = handOver(handed, *instance))
            return *exitStatus;
        serves = handed.serves;
    }

    QCoreApplication::setApplicationName(QStringLiteral("Quillory"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLORY_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.quillory.Quillory"));
    quillory::Preloading preloading;
    QApplication qtApplication(argc, argv);
    preloading.waitForFonts();
    QApplication::setQuitOnLastWindowClosed(false);

    quillory::StartOptions line = parse(QCoreApplication::arguments());
    if (answersAlone(line, status))
        return status;
    if (serves)
        line.targets.clear();
    line.serves = serves;
    quillory::Application application;
    return application.run(line, instance ? instance->takeListeningSocket() : -1);
}
