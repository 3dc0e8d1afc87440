#include "cli/CommandArguments.h"
#include "cli/InstalledDefinitions.h"
#include "syntax/ColouringPreparation.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace quillory {

namespace {

std::vector<DefinitionFault> contentFaults(const Definition& definition)
{
    ColouringState state;
    return prepareColoring(definition, {}, state);
}

/// What is wrong with the list, and then with each of its definitions.
std::vector<DefinitionFault> allFaults(const DefinitionList& list)
{
    std::vector<DefinitionFault> all = list.faults();
    for (const Definition& definition : list.arrangedObjects()) {
        const std::vector<DefinitionFault> faults = contentFaults(definition);
        all.insert(all.end(), faults.begin(), faults.end());
    }
    return all;
}

void printJson(const DefinitionList& list, QTextStream& out)
{
    QJsonArray definitions;
    for (const Definition& definition : list.arrangedObjects())
        definitions.append(QJsonObject{
            {QStringLiteral("title"), definition.title()},
            {QStringLiteral("extensions"), QJsonArray::fromStringList(definition.extensions())},
            {QStringLiteral("isDefault"), definition.isDefault()},
            {QStringLiteral("file"), definition.path()},
        });
    QJsonArray faults;
    for (const DefinitionFault& fault : allFaults(list))
        faults.append(QJsonObject{{QStringLiteral("definition"), fault.definition},
                                  {QStringLiteral("key"), fault.key},
                                  {QStringLiteral("problem"), fault.problem}});
    out << QJsonDocument(QJsonObject{{QStringLiteral("definitions"), definitions},
                                     {QStringLiteral("faults"), faults}})
               .toJson();
}

void printText(const DefinitionList& list, QTextStream& out)
{
    for (const Definition& definition : list.arrangedObjects()) {
        out << definition.title() << (definition.isDefault() ? " (for new documents)" : "")
            << "\n  Extensions: " << definition.extensions().join(u' ')
            << "\n  File:       " << definition.path() << '\n';
    }
}

} // namespace

ExitStatus runDefinitions(const QStringList& arguments, const CliStreams& streams)
{
    constexpr QLatin1StringView command("definitions");
    return answered(command, streams, [&] {
        const CommandArguments given(command, arguments);
        if (!given.files().isEmpty())
            throw Refusal{ExitStatus::Usage, QStringLiteral("it takes no files")};
        const DefinitionList list = installedDefinitions(installedFolders());
        if (given.wantsJson()) {
            printJson(list, streams.out);
            return;
        }
        printText(list, streams.out);
        for (const DefinitionFault& fault : allFaults(list))
            streams.error << "quillory-cli definitions: " << fault.description() << '\n';
    });
}

} // namespace quillory
