#pragma once

#include "cli/Cli.h"
#include "text/TextSnapshot.h"

#include <QCommandLineParser>
#include <functional>

namespace quillory {

/// Thrown to end a command with a message.
struct Refusal
{
    ExitStatus status;
    QString message;
};

/// Does the work of \a command, and says why it was refused where it was.
ExitStatus answered(QLatin1StringView command, const CliStreams& streams,
                    const std::function<void()>& work);

/// The arguments of a command that tells something as text or as JSON.
class CommandArguments
{
public:
    /// Takes "--format text|json", \a options, each with a value, and \a switches without one;
    /// refuses others.
    CommandArguments(QLatin1StringView command, const QStringList& arguments,
                     const QStringList& options = {}, const QStringList& switches = {});

    bool wantsJson() const { return m_wantsJson; }
    const QStringList& files() const { return m_files; }
    /// Refuses none, and more.
    const QString& onlyFile() const;
    bool has(const QString& option) const { return m_parser.isSet(option); }
    /// None where the option is not there.
    std::optional<QString> value(const QString& option) const;

private:
    QCommandLineParser m_parser;
    QStringList m_files;
    bool m_wantsJson = false;
};

/// The text of the file at \a path; refuses what cannot be read, or decoded.
TextSnapshot textOfFile(const QString& path);

/// The range of \a text that \a value, "LOCATION,LENGTH", names; refuses others.
TextRange rangeIn(const TextSnapshot& text, const QString& value);

} // namespace quillory
