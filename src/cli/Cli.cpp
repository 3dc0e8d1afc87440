#include "cli/Cli.h"

namespace quillory {

namespace {

constexpr CliCommand commands[] = {
    {QLatin1StringView("info"), QLatin1StringView("[--format text|json] FILE"),
     QLatin1StringView("Tell a file's kind, encoding, line breaks and property-list form."),
     runInfo},
    {QLatin1StringView("convert"),
     QLatin1StringView("[--from N|NAME] [--encoding N|NAME] [--line-breaks unix|mac|windows]\n"
                       "          [--as text|archive] IN OUT"),
     QLatin1StringView("Write a file in another encoding, line-break format or kind."), runConvert},
    {QLatin1StringView("transform"), QLatin1StringView("trim|zap|unwrap|reformat [FILE|- [OUT]]"),
     QLatin1StringView("Clean up a file, or standard input."), runTransform},
    {QLatin1StringView("print"), QLatin1StringView("[--line-numbers] [--colours] FILE OUT.pdf"),
     QLatin1StringView("Print a file to a PDF file."), runPrint},
    {QLatin1StringView("preview"),
     QLatin1StringView("[--definition TITLE|FILE] [--base ADDRESS] FILE OUT.html"),
     QLatin1StringView("Write the web page that the preview of a file shows."), runPreview},
    {QLatin1StringView("definitions"), QLatin1StringView("[--format text|json]"),
     QLatin1StringView("List the installed definitions and what is wrong with them."),
     runDefinitions},
    {QLatin1StringView("highlight"),
     QLatin1StringView("[--definition TITLE|FILE] [--theme NAME|FILE] [--range LOCATION,LENGTH]\n"
                       "          [--default KEY=VALUE]... [--format ansi|html|json] FILE"),
     QLatin1StringView("Write a file's lines in the colours of its language."), runHighlight},
    {QLatin1StringView("find"),
     QLatin1StringView("[--regex] [--match-case] [--whole-words] [--format text|json] TEXT FILE"),
     QLatin1StringView("List the places of a file that hold a text."), runFind},
    {QLatin1StringView("functions"),
     QLatin1StringView("[--definition TITLE|FILE] [--format text|json] FILE"),
     QLatin1StringView("List the functions of a file, as its definition describes them."),
     runFunctions},
    {QLatin1StringView("statistics"),
     QLatin1StringView("[--range LOCATION,LENGTH] [--format text|json] FILE"),
     QLatin1StringView("Count the characters, words and lines of a file."), runStatistics},
    {QLatin1StringView("sniff"), QLatin1StringView("[--format text|json] FILE"),
     QLatin1StringView("Guess a file's encoding; the likeliest comes first."), runSniff},
};

void printHelp(QTextStream& out)
{
    out << "Usage: quillory-cli COMMAND [OPTION...] [FILE...]\n\n";
    for (const CliCommand& command : commands)
        out << "  " << command.name << ' ' << command.arguments << "\n      " << command.summary
            << '\n';
    out << "\n  --help     Print this text.\n  --version  Print the version.\n\n"
           "Exit status: 0 success, 1 failure, 2 wrong usage.\n";
}

} // namespace

ExitStatus runCli(const QStringList& arguments, const CliStreams& streams)
{
    const QString first = arguments.value(0);
    if (first == QLatin1StringView("--help") || first == QLatin1StringView("-h")) {
        printHelp(streams.out);
        return ExitStatus::Success;
    }
    if (first == QLatin1StringView("--version")) {
        streams.out << "quillory-cli " << QUILLORY_VERSION << '\n';
        return ExitStatus::Success;
    }
    for (const CliCommand& command : commands) {
        if (first == command.name)
            return command.run(arguments.mid(1), streams);
    }
    if (first.isEmpty())
        streams.error << "quillory-cli: no command given\n";
    else
        streams.error << "quillory-cli: “" << first << "” is not a command\n";
    streams.error << "Try “quillory-cli --help”.\n";
    return ExitStatus::Usage;
}

ExitStatus usageError(const CliStreams& streams, QLatin1StringView command, const QString& what)
{
    streams.error << "quillory-cli " << command << ": " << what << "\nTry “quillory-cli --help”.\n";
    return ExitStatus::Usage;
}

} // namespace quillory
