#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace quillory {

/// The folders that the application uses, as absolute paths. None of them need exist.
///
/// The first four follow freedesktop.org's rules for base directories (XDG basedir, 0.8): a
/// variable that is not an absolute path counts as not set.
struct ApplicationFolders
{
    QString applicationSupport; ///< definitions, themes and the encoding list, the user's own
    QString caches;
    QString configuration;
    QString state;     ///< windows of the last session, recovery records
    QString runtime;   ///< what is there while the program runs; empty without XDG_RUNTIME_DIR
    QString resources; ///< what is shipped: starter definitions, themes and the encoding list
    QString plugins;   ///< parts of the program that are loaded when they are first used

    /// \a executableFolder is where the running program lies. The resources are in the folder that
    /// QUILLORY_RESOURCES names, else beside the program in an installation or a build tree, else
    /// where the installation was configured to put them. The plugins are in ../lib/quillory of an
    /// installation, and beside the program of a build tree.
    static ApplicationFolders fromEnvironment(const QProcessEnvironment& environment,
                                              const QString& executableFolder);

    /// The file of the user defaults.
    QString defaultsFile() const { return configuration + QStringLiteral("/Quillory.conf"); }
    /// The user's text replacements.
    QString replacementsFile() const
    {
        return applicationSupport + QStringLiteral("/Replacements.plist");
    }
    /// The windows of the last session.
    QString sessionFile() const { return state + QStringLiteral("/Session.plist"); }
    /// Of texts that are not safely in their files.
    QString recoveryFolder() const { return state + QStringLiteral("/Recovery"); }
    /// Of what files held before they were saved.
    QString versionsFolder() const { return state + QStringLiteral("/Versions"); }
};

} // namespace quillory
