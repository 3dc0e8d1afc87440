#include "commands/CommandPlaceholders.h"

namespace quillory {

namespace {

CommandLine commandLineOf(QStringList words)
{
    CommandLine line;
    if (!words.isEmpty())
        line.program = words.takeFirst();
    line.arguments = std::move(words);
    return line;
}

} // namespace

TagTemplate TagTemplate::from(const QString& written)
{
    TagTemplate result;
    for (qsizetype i = 0; i < written.size(); ++i) {
        QString& part = result.hasPlace ? result.after : result.before;
        const QChar next = i + 1 < written.size() ? written[i + 1] : QChar();
        if (written[i] != u'%' || (next != u'%' && (next != u'@' || result.hasPlace))) {
            part += written[i];
            continue;
        }
        ++i;
        if (next == u'%')
            part += next;
        else
            result.hasPlace = true;
    }
    return result;
}

QString escapedForTemplate(QString text)
{
    return text.replace(u'%', QStringLiteral("%%"));
}

bool hasPlaceholderAsProgram(const QString& body)
{
    const std::vector<CommandWord> words = commandWords(body);
    return !words.empty() && words.front().text.contains(placeholders::text);
}

CommandLine commandLineWithFile(const QString& body, const QString& path)
{
    QStringList words;
    for (const CommandWord& word : commandWords(body))
        words += QString(word.text).replace(placeholders::textAsFile, path);
    return commandLineOf(std::move(words));
}

CommandLine commandLineWithText(const QString& body, const QString& text)
{
    QStringList words;
    for (const CommandWord& word : commandWords(body)) {
        const bool isOfText = word.text.contains(placeholders::textAsString);
        const QString full = QString(word.text).replace(placeholders::textAsString, text);
        if (isOfText && !word.isQuoted)
            words += divideIntoArrayFromString(full);
        else
            words += full;
    }
    return commandLineOf(std::move(words));
}

} // namespace quillory
