#pragma once

#include "text/TextSnapshot.h"

#include <functional>
#include <optional>
#include <vector>

namespace quillory {

/// One place in a text that can be gone to.
struct NavigationItem
{
    qint64 lineNumber = 0; ///< from 1
    QString name;          ///< may be empty, and may hold line breaks

    bool operator==(const NavigationItem&) const = default;
};

using NavigationItems = std::vector<NavigationItem>; ///< in the order of the text

/// The line, counted from 1, in which the character at \a offset stands. Behind the last one it is
/// that of the last character, so a text that ends in a line break has no line after it here; 0 in
/// the empty text. O(log n).
qint64 lineNumberAt(const TextSnapshot& text, TextOffset offset);

/// Finds the functions of a text: a value that may run on any thread.
struct FunctionScan
{
    TextSnapshot text;
    QString functionDefinition;      ///< regular expression; an empty one finds nothing
    std::optional<QString> ignoring; ///< is no part of a name, in whatever case

    /// Told often, but with pauses of a millisecond or so in between, whether to give up.
    using IsOver = std::function<bool()>;

    /// Every match, case aside and with ^ and $ at each line, in one walk over the text; an
    /// expression that is not one finds nothing, and one that is given up for the stack or the time
    /// that it wants what it found before. None at all when \a isOver said so.
    std::optional<NavigationItems> run(const IsOver& isOver = {}) const;
};

/// What the match \a matched is called: without blanks and line breaks before it, and without
/// blanks and opening braces after it (line breaks there stay), without \a ignoring wherever it
/// stands, and at most 61 units long, or 60 and an ellipsis.
QString navigationLabel(QStringView matched, const std::optional<QString>& ignoring);

/// The number of the line and the name, with tabs between them so that the names stand below each
/// other.
QString navigationTitle(const NavigationItem& item);

} // namespace quillory
