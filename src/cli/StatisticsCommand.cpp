#include "cli/CommandArguments.h"
#include "document/TextStatistics.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace quillory {

namespace {

void printJson(const TextStatistics& statistics, QTextStream& out)
{
    const QJsonObject object{
        {QStringLiteral("characters"), statistics.characters},
        {QStringLiteral("charactersWithoutSpaces"), statistics.charactersWithoutSpaces},
        {QStringLiteral("words"), statistics.words},
        {QStringLiteral("lines"), statistics.lines ? QJsonValue(*statistics.lines) : QJsonValue()},
    };
    out << QJsonDocument(object).toJson();
}

void printText(const TextStatistics& statistics, QTextStream& out)
{
    out << "Characters:     " << thousandFormatedStringFromNumber(statistics.characters) << '\n'
        << "Without spaces: "
        << thousandFormatedStringFromNumber(statistics.charactersWithoutSpaces) << '\n'
        << "Words:          " << statistics.words << '\n';
    if (statistics.lines)
        out << "Lines:          " << thousandFormatedStringFromNumber(*statistics.lines) << '\n';
}

} // namespace

ExitStatus runStatistics(const QStringList& arguments, const CliStreams& streams)
{
    constexpr QLatin1StringView command("statistics");
    return answered(command, streams, [&] {
        const CommandArguments given(command, arguments, {QStringLiteral("range")});
        const TextSnapshot text = textOfFile(given.onlyFile());
        std::vector<TextRange> selected;
        if (const auto range = given.value(QStringLiteral("range")))
            selected.push_back(rangeIn(text, *range));
        StatisticsCount count(text, selected);
        while (count.step())
            ;
        given.wantsJson() ? printJson(count.statistics(), streams.out)
                          : printText(count.statistics(), streams.out);
    });
}

} // namespace quillory
