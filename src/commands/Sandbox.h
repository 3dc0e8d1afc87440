#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace quillory {

/// What keeps the program apart from the system that it runs on.
struct Sandbox
{
    /// What is looked at to find out.
    struct Surroundings
    {
        QProcessEnvironment environment;
        QString program; ///< the running one's file, as an absolute path
        QString root;    ///< the folder that stands for "/"; empty for that itself
    };

    enum class Kind
    {
        None,
        Flatpak,   ///< has the file /.flatpak-info (flatpak-metadata)
        Snap,      ///< runs from the folder that SNAP names, unless that says "classic"
        Container, ///< of a container manager, which says so in "container" (systemd's interface)
                   ///< or leaves /run/.containerenv or /.dockerenv
    };

    Kind kind = Kind::None;
    QString name; ///< for the user; empty without any

    static Sandbox of(const Surroundings& surroundings);
    static Sandbox aroundThisProgram();

    /// The programs of the system cannot be reached. In a container those that are there are the
    /// ones that are meant.
    bool isSandboxed() const { return kind == Kind::Flatpak || kind == Kind::Snap; }
};

} // namespace quillory
