#pragma once

#include <QStringList>
#include <vector>

namespace quillory {

/// A program and what it is told, as the system takes them: no shell reads them again.
struct CommandLine
{
    QString program; ///< a path; only absolute ones are run
    QStringList arguments;

    bool operator==(const CommandLine&) const = default;
};

/// The words of a written command line. Without quotes they are what stands between single spaces,
/// so two spaces enclose an empty word. With a quote of either kind anywhere, a word that begins
/// with one is the text up to the next quote of that kind that no backslash precedes, or to the
/// end, as it stands; "" is an empty word, and any number of spaces separates words.
QStringList divideIntoArrayFromString(const QString& commandLine);

/// The same words, with how they were written.
struct CommandWord
{
    QString text;
    bool isQuoted = false;
};
std::vector<CommandWord> commandWords(const QString& commandLine);

} // namespace quillory
