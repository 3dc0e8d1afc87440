#include "cli/CommandArguments.h"
#include "cli/InstalledDefinitions.h"
#include "commands/FunctionScan.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace quillory {

namespace {

void printJson(const NavigationItems& items, QTextStream& out)
{
    QJsonArray list;
    for (const NavigationItem& item : items)
        list.append(QJsonObject{{QStringLiteral("lineNumber"), item.lineNumber},
                                {QStringLiteral("name"), item.name}});
    out << QJsonDocument(list).toJson();
}

void printText(const NavigationItems& items, QTextStream& out)
{
    for (const NavigationItem& item : items)
        out << navigationTitle({item.lineNumber, item.name.simplified()}) << '\n';
}

} // namespace

ExitStatus runFunctions(const QStringList& arguments, const CliStreams& streams)
{
    constexpr QLatin1StringView command("functions");
    return answered(command, streams, [&] {
        const QString definitionOption = QStringLiteral("definition");
        const CommandArguments given(command, arguments, {definitionOption});
        const Definition definition =
            definitionFor(installedFolders(), given.value(definitionOption), given.onlyFile());
        const auto value = [&](const char* key) {
            return definition.string(QLatin1StringView(key));
        };
        const FunctionScan scan{textOfFile(given.onlyFile()),
                                value("functionDefinition").value_or(QString()),
                                value("ignoreAsAFunctionComponent")};
        const NavigationItems items = scan.run().value_or(NavigationItems());
        given.wantsJson() ? printJson(items, streams.out) : printText(items, streams.out);
    });
}

} // namespace quillory
