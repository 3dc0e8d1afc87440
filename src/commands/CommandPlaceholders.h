#pragma once

#include "commands/CommandLine.h"
#include "text/TextSnapshot.h"

#include <QString>
#include <optional>

namespace quillory {

/// The words of a command's body that stand for something. They are looked for as they are,
/// anywhere; what is put in for one is not looked at again.
namespace placeholders {

inline constexpr QLatin1StringView clipboard{"CLIPBOARD"};
inline constexpr QLatin1StringView text{"TEXTORCODE"};
inline constexpr QLatin1StringView textAsFile{"TEXTORCODEASFILE"};
inline constexpr QLatin1StringView textAsString{"TEXTORCODEASSSTRING"}; ///< with three S

} // namespace placeholders

/// A template, cut where the selected text goes.
struct TagTemplate
{
    QString before;
    QString after;
    bool hasPlace = false; ///< without one, all of it is before

    /// Reads the first "%@" of \a written as that place and every "%%" as "%"; any other percent
    /// sign stays what it is.
    static TagTemplate from(const QString& written);
};

/// \a text as a template that stands for nothing but itself.
QString escapedForTemplate(QString text);

/// Whether the name of the program in \a body is to come from the text, which is never run.
bool hasPlaceholderAsProgram(const QString& body);

/// The program and the arguments of \a body with \a path in the place of TEXTORCODEASFILE. A path
/// stays within the word that it is put into, whatever it holds.
CommandLine commandLineWithFile(const QString& body, const QString& path);

/// The same with \a text in the place of TEXTORCODEASSSTRING. Within quotes it stays one word; a
/// word without them is divided again, as if the text had been written there.
CommandLine commandLineWithText(const QString& body, const QString& text);

} // namespace quillory
