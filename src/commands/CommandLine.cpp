#include "commands/CommandLine.h"

#include <algorithm>

namespace quillory {

namespace {

bool isQuote(QChar unit)
{
    return unit == u'"' || unit == u'\'';
}

/// Where the quoted text from \a start ends: at its quote, or at the end of the line.
qsizetype endOfQuoted(const QString& line, qsizetype start, QChar quote)
{
    qsizetype end = line.indexOf(quote, start);
    while (end > start && line[end - 1] == u'\\')
        end = line.indexOf(quote, end + 1);
    return end < 0 ? line.size() : end;
}

} // namespace

std::vector<CommandWord> commandWords(const QString& commandLine)
{
    std::vector<CommandWord> words;
    if (std::none_of(commandLine.begin(), commandLine.end(), isQuote)) {
        for (const QString& word : commandLine.split(u' '))
            words.push_back({word});
        return words;
    }
    qsizetype place = 0;
    while (place < commandLine.size()) {
        const QChar unit = commandLine[place];
        if (unit == u' ') {
            ++place;
            continue;
        }
        const qsizetype start = isQuote(unit) ? place + 1 : place;
        qsizetype end = 0;
        if (isQuote(unit))
            end = endOfQuoted(commandLine, start, unit);
        else if (end = commandLine.indexOf(u' ', start); end < 0)
            end = commandLine.size();
        words.push_back({commandLine.sliced(start, end - start), isQuote(unit)});
        place = end + 1;
    }
    return words;
}

QStringList divideIntoArrayFromString(const QString& commandLine)
{
    QStringList texts;
    for (const CommandWord& word : commandWords(commandLine))
        texts.append(word.text);
    return texts;
}

} // namespace quillory
