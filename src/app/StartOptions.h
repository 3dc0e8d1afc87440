#pragma once

#include "app/TextPlace.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

namespace quillory {

/// A file to open, and the place in it to show.
struct OpenTarget
{
    QString path; ///< as given, or "-" for standard input
    std::optional<TextPlace> place;

    bool isStandardInput() const { return path == QLatin1StringView("-"); }
    bool operator==(const OpenTarget&) const = default;
};

/// What the user asked for when starting the editor.
struct StartOptions
{
    enum class Action
    {
        Open,
        Render,      ///< draw the window of the first target to renderTo, then quit
        Print,       ///< write the pages of the only target to printTo, without a window
        ShowHelp,    ///< print text
        ShowVersion, ///< print text
        Refuse       ///< text says on standard error what is wrong; the exit status is 2
    };

    Action action = Action::Open;
    std::vector<OpenTarget> targets;
    QString renderTo;
    QString printTo;
    bool printsLineNumbers = false;
    bool printsColours = false;
    bool newInstance = false; ///< whether or not the program runs already
    bool waits = false;       ///< for the windows of the targets to be closed
    bool serves = false;      ///< opens nothing before another start hands something over
    QString text;

    /// The start is one that brings back the windows of the last session.
    bool restoresWindows() const;
};

/// Reads \a arguments, the first of which is the program's name. \a exists tells whether a path
/// names something on disk: "notes:12" is a file of that name where there is one, and line 12 of
/// "notes" otherwise.
StartOptions parseStartOptions(const QStringList& arguments,
                               const std::function<bool(const QString&)>& exists);

} // namespace quillory
