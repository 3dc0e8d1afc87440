#pragma once

#include <QStringList>
#include <QTextStream>

namespace quillory {

/// What a command-line run answers to its caller.
enum class ExitStatus
{
    Success = 0,
    Failure = 1, ///< a file could not be read or written
    Usage = 2    ///< the arguments make no sense
};

/// Where a run writes to.
struct CliStreams
{
    QTextStream& out;
    QTextStream& error;
};

/// One command of quillory-cli: its name, its line in the help, and what it does with the
/// arguments that follow its name.
struct CliCommand
{
    QLatin1StringView name;
    QLatin1StringView arguments;
    QLatin1StringView summary;
    ExitStatus (*run)(const QStringList& arguments, const CliStreams& streams);
};

/// Runs the command that \a arguments name (without the program's own name).
ExitStatus runCli(const QStringList& arguments, const CliStreams& streams);

ExitStatus runInfo(const QStringList& arguments, const CliStreams& streams);
ExitStatus runConvert(const QStringList& arguments, const CliStreams& streams);
ExitStatus runDefinitions(const QStringList& arguments, const CliStreams& streams);
ExitStatus runPreview(const QStringList& arguments, const CliStreams& streams);
ExitStatus runPrint(const QStringList& arguments, const CliStreams& streams);
ExitStatus runTransform(const QStringList& arguments, const CliStreams& streams);
ExitStatus runHighlight(const QStringList& arguments, const CliStreams& streams);
ExitStatus runFind(const QStringList& arguments, const CliStreams& streams);
ExitStatus runFunctions(const QStringList& arguments, const CliStreams& streams);
ExitStatus runSniff(const QStringList& arguments, const CliStreams& streams);
ExitStatus runStatistics(const QStringList& arguments, const CliStreams& streams);

/// Says what is wrong with the arguments of \a command and how to learn more.
ExitStatus usageError(const CliStreams& streams, QLatin1StringView command, const QString& what);

} // namespace quillory
