#include "app/StartOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>
#include <QUrl>

namespace quillory {

namespace {

QString translate(const char* text)
{
    return QCoreApplication::translate("StartOptions", text);
}

/// QCommandLineParser's own help needs an application object, which needs a display.
QString helpText()
{
    return translate("Usage: quillory [--line LINE[:COLUMN]] [FILE | FILE:LINE[:COLUMN] | -]…\n"
                     "Edits text and source code; a file that does not exist is made by saving.\n"
                     "\n"
                     "  -                     edit what standard input delivers\n"
                     "  --line LINE[:COLUMN]  show this place of the first file\n"
                     "  --wait                return when the windows of the files are closed\n"
                     "  --new-instance        do not leave the files to the Quillory that runs\n"
                     "  --print-to PDF        print the file to a PDF file, without a window;\n"
                     "                        with --line-numbers, with --colours\n"
                     "  -h, --help            show this help\n"
                     "  -v, --version         show the version\n"
                     "  --                    what follows are files, whatever they begin with\n");
}

OpenTarget targetOf(const QString& argument, const std::function<bool(const QString&)>& exists)
{
    if (argument == QLatin1StringView("-") || exists(argument))
        return {argument, {}};
    if (argument.startsWith(QLatin1StringView("file:")))
        return {QUrl(argument).toLocalFile(), {}};
    // Compilers and search tools end the place with a colon.
    static const QRegularExpression placed(QStringLiteral("^(.+?):(\\d+(?::\\d+)?):?$"),
                                           QRegularExpression::DotMatchesEverythingOption);
    if (const QRegularExpressionMatch match = placed.match(argument); match.hasMatch()) {
        if (const std::optional<TextPlace> place = parseTextPlace(match.captured(2)))
            return {match.captured(1), place};
    }
    return {argument, {}};
}

StartOptions refused(const QString& reason)
{
    StartOptions line;
    line.action = StartOptions::Action::Refuse;
    line.text = reason + u'\n' + translate("Try “quillory --help”.") + u'\n';
    return line;
}

} // namespace

bool StartOptions::restoresWindows() const
{
    return action == Action::Open && !newInstance && !waits && !serves &&
           std::none_of(targets.begin(), targets.end(),
                        [](const OpenTarget& target) { return target.isStandardInput(); });
}

StartOptions parseStartOptions(const QStringList& arguments,
                               const std::function<bool(const QString&)>& exists)
{
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    const QCommandLineOption version(QStringList{QStringLiteral("v"), QStringLiteral("version")});
    const QCommandLineOption line(QStringLiteral("line"), {}, QStringLiteral("place"));
    const QCommandLineOption render(QStringLiteral("render"), {}, QStringLiteral("picture"));
    QCommandLineParser parser;
    const QCommandLineOption print(QStringLiteral("print-to"), {}, QStringLiteral("pdf"));
    const QCommandLineOption lineNumbers(QStringLiteral("line-numbers"));
    const QCommandLineOption colours(QStringLiteral("colours"));
    const QCommandLineOption wait(QStringLiteral("wait"));
    const QCommandLineOption newInstance(QStringLiteral("new-instance"));
    parser.addOptions(
        {help, version, line, wait, newInstance, render, print, lineNumbers, colours});
    const bool understood = parser.parse(arguments);

    StartOptions result;
    if (parser.isSet(help)) {
        result.action = StartOptions::Action::ShowHelp;
        result.text = helpText();
        return result;
    }
    if (parser.isSet(version)) {
        result.action = StartOptions::Action::ShowVersion;
        result.text = QStringLiteral("quillory %1\n").arg(QLatin1StringView(QUILLORY_VERSION));
        return result;
    }
    if (!understood)
        return refused(parser.errorText());

    for (const QString& argument : parser.positionalArguments()) {
        if (argument.isEmpty())
            return refused(translate("The name of a file cannot be empty."));
        result.targets.push_back(targetOf(argument, exists));
    }
    if (parser.isSet(line)) {
        const QString value = parser.value(line);
        const std::optional<TextPlace> place = parseTextPlace(value);
        if (!place)
            return refused(
                translate("“%1” is no place in a text: --line wants LINE or LINE:COLUMN.")
                    .arg(value));
        if (result.targets.empty())
            return refused(translate("--line wants a file to show the line of."));
        result.targets.front().place = place;
    }
    result.newInstance = parser.isSet(newInstance);
    result.waits = parser.isSet(wait);
    if (result.waits && result.targets.empty())
        return refused(translate("--wait wants a file to wait for."));
    if (parser.isSet(render)) {
        result.action = StartOptions::Action::Render;
        result.renderTo = parser.value(render);
    }
    if (parser.isSet(print)) {
        result.action = StartOptions::Action::Print;
        result.printTo = parser.value(print);
        result.printsLineNumbers = parser.isSet(lineNumbers);
        result.printsColours = parser.isSet(colours);
        if (result.targets.size() != 1 || result.targets.front().isStandardInput())
            return refused(translate("--print-to wants one file to print."));
    } else if (parser.isSet(lineNumbers) || parser.isSet(colours)) {
        return refused(translate("--line-numbers and --colours go with --print-to."));
    }
    return result;
}

} // namespace quillory
