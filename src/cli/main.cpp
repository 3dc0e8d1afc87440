#include "cli/Cli.h"

#include <QCoreApplication>
#include <csignal>

int main(int argc, char** argv)
{
    std::signal(SIGXFSZ, SIG_IGN); // a file-size limit is told of as a failed write
    QCoreApplication::setApplicationName(QStringLiteral("quillory-cli"));
    const QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    QTextStream error(stderr);
    return int(quillory::runCli(QCoreApplication::arguments().mid(1), {out, error}));
}
