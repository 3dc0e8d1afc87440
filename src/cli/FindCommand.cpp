#include "cli/CommandArguments.h"
#include "editing/find/FindQuery.h"
#include "editing/find/FindWalk.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace quillory {

namespace {

/// A place as it is told: its line, its column in UTF-16 code units, and the whole line.
void print(const TextSnapshot& text, TextRange match, bool asJson, QJsonArray& all,
           QTextStream& out)
{
    const LineIndex line = text.lineAt(match.location);
    const TextRange content = text.lineContent(line);
    const qint64 number = line.value() + 1;
    const qint64 column = match.location - content.location + 1;
    if (asJson)
        all.append(QJsonObject{{QStringLiteral("location"), match.location},
                               {QStringLiteral("length"), match.length},
                               {QStringLiteral("line"), number},
                               {QStringLiteral("column"), column},
                               {QStringLiteral("text"), text.string(match)}});
    else
        out << number << ':' << column << ": " << text.string(content) << '\n';
}

} // namespace

ExitStatus runFind(const QStringList& arguments, const CliStreams& streams)
{
    constexpr QLatin1StringView command("find");
    return answered(command, streams, [&] {
        const QString regex = QStringLiteral("regex");
        const QString matchCase = QStringLiteral("match-case");
        const QString wholeWords = QStringLiteral("whole-words");
        const CommandArguments given(command, arguments, {}, {regex, matchCase, wholeWords});
        if (given.files().size() != 2 || given.files().constFirst().isEmpty())
            throw Refusal{ExitStatus::Usage, QStringLiteral("name what to find and a file")};
        const TextSnapshot text = textOfFile(given.files().constLast());
        try {
            FindWalk walk(text, FindQuery{given.files().constFirst(), given.has(regex),
                                          given.has(matchCase), given.has(wholeWords)}
                                    .pattern());
            QJsonArray all;
            while (const std::optional<TextRange> match = walk.next())
                print(text, *match, given.wantsJson(), all, streams.out);
            if (given.wantsJson())
                streams.out << QJsonDocument(all).toJson();
        } catch (const ICUException& exception) {
            throw Refusal{exception.isLimit() ? ExitStatus::Failure : ExitStatus::Usage,
                          exception.isLimit() ? QStringLiteral("the expression takes too long")
                                              : exception.reason()};
        }
    });
}

} // namespace quillory
