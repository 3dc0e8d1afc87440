#pragma once

#include "commands/CommandItem.h"

#include <QString>

namespace quillory {

class Definition;

/// What the user is asked before a command of a definition that he got from somewhere runs.
struct TrustQuestion
{
    CommandItem item;
    QString definition; ///< its title
    /// What runs, for people to read: the program and each of its arguments on a line of its own,
    /// or the address. Characters that show as nothing, or turn the text around, are written out.
    QString command;
};

/// \a text with line breaks, controls and characters of no width or direction as "\u{…}".
QString withVisibleCharacters(const QString& text);

/// Which commands may reach beyond the text without a question: those of the definitions that come
/// with the program, and those that the user has agreed to. The answer holds for the command, word
/// for word, in whatever definition it is.
class CommandTrust
{
public:
    /// \a shipped is the folder of the definitions that come with the program; \a state, where
    /// commands are kept in a file of this folder, need not exist. Without it nothing is kept.
    CommandTrust(QString shipped, const QString& state);

    /// Whether \a item can do anything that needs trust: run a program, send the text to a server,
    /// or open what is no page or mail.
    static bool needsTrust(const CommandItem& item);

    /// Reads \a definition's file and the one that was shipped under its name.
    bool isTrusted(const CommandItem& item, const Definition& definition) const;
    void trust(const CommandItem& item) const;

    /// \a item must need trust.
    static TrustQuestion question(const CommandItem& item, const Definition& definition);

private:
    bool isShipped(const CommandItem& item, const Definition& definition) const;

    QString m_shipped;
    QString m_file; ///< empty where nothing is kept
};

} // namespace quillory
