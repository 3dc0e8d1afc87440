#include "commands/Sandbox.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace quillory {

namespace {

constexpr qint64 longestMetadata = 65536; ///< bytes

/// A snap with the rights of any other program.
bool isClassicSnap(const QString& folder)
{
    QFile file(folder + QStringLiteral("/meta/snap.yaml"));
    if (!file.open(QFile::ReadOnly))
        return false;
    const QList<QByteArray> lines = file.read(longestMetadata).split('\n');
    return std::any_of(lines.begin(), lines.end(), [](const QByteArray& line) {
        return line.startsWith("confinement:") && line.contains("classic");
    });
}

} // namespace

Sandbox Sandbox::of(const Surroundings& surroundings)
{
    const auto exists = [&](const char* path) {
        return QFileInfo::exists(surroundings.root + QLatin1StringView(path));
    };
    const QProcessEnvironment& environment = surroundings.environment;
    if (exists("/.flatpak-info"))
        return {Kind::Flatpak, QStringLiteral("Flatpak")};
    // Programs that a snap starts get its variables too.
    const QString snap = environment.value(QStringLiteral("SNAP"));
    if (!snap.isEmpty() && surroundings.program.startsWith(snap + u'/') && !isClassicSnap(snap))
        return {Kind::Snap, QStringLiteral("Snap")};
    const QString manager = environment.value(QStringLiteral("container"));
    if (!manager.isEmpty())
        return {Kind::Container, manager};
    if (exists("/run/.containerenv"))
        return {Kind::Container, QStringLiteral("podman")};
    if (exists("/.dockerenv"))
        return {Kind::Container, QStringLiteral("docker")};
    return {};
}

Sandbox Sandbox::aroundThisProgram()
{
    return of({QProcessEnvironment::systemEnvironment(), QCoreApplication::applicationFilePath(),
               QString()});
}

} // namespace quillory
