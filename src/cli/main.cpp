#include "cli/Cli.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("quillory-cli"));
    const QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    QTextStream error(stderr);
    return int(quillory::runCli(QCoreApplication::arguments().mid(1), {out, error}));
}
