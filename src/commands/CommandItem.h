#pragma once

#include "foundation/PropertyList.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace quillory {

/// What a command item does; its numbers are those of the definition files. Any other number may
/// occur, and does nothing.
enum class CommandKind : int
{
    Clipboard = 0,
    Command = 1,
    Snippet = 2,
    Template = 3,
    Url = 4,
    Server = 5,
    Terminal = 6,
    Script = 7,
    Help = 8,
    Separator = 9,
    LaTeX = 61,
};

/// One of a definition's "commandItems". A value of a kind that its key cannot have counts as
/// absent; what is absent is false, 0 or nothing.
struct CommandItem
{
    CommandKind kind = CommandKind::Clipboard;
    std::optional<QString> title;
    std::optional<QString> string; ///< the command's body
    std::optional<QString> stringWithout;
    std::optional<QString> keyString;
    std::optional<QString> commandKeyAddition;
    bool onlyValidForSelection = false;
    bool sendAsData = false;
    bool shouldRun = false;
    bool outputCanReplaceDocument = false;
    bool shouldOpenPDFPreview = false;

    static CommandItem from(const PropertyList& dictionary);

    /// Of the values of all keys: two items that differ in any do not share one. 64 hexadecimal
    /// digits (SHA-256).
    QString fingerprint() const;

    bool operator==(const CommandItem&) const = default;
};

} // namespace quillory
