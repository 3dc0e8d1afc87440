#pragma once

#include "syntax/ColouringState.h"
#include "text/TextSnapshot.h"

#include <memory>
#include <vector>

namespace quillory {

class SyntaxColouring;

/// Text that words are looked for in, and how it was written.
struct ProseRange
{
    enum class Style : quint8
    {
        Plain,   ///< by people for people
        Markup,  ///< the same between tags or commands
        Comment, ///< in a program's source, with names and bits of code in it
        Literal, ///< a string of a program, with escape sequences
    };

    TextRange range;
    Style style = Style::Plain;
    bool operator==(const ProseRange&) const = default;
};

/// Which parts of a text are for people to read.
///
/// All of plain text. Of markup what is no tag, command, instruction, entity or formula; markup is
/// what a definition describes that can make a PDF preview, or that closes tags and has no words of
/// its own outside of tags. Of all other sources the comments, and the string literals with a blank
/// in them: those without one are names.
class SpellingScope
{
public:
    /// Everything is prose.
    SpellingScope() = default;
    /// By the definition that \a colouring has selected, as it stands now.
    explicit SpellingScope(const SyntaxColouring& colouring);

    /// Within \a range, in order. Where a line goes on for long outside of the range, what is there
    /// is not taken into account. One thread at a time; O(length of the range and its lines).
    std::vector<ProseRange> proseIn(const TextSnapshot& text, TextRange range) const;

    /// One of the words that the definition lists.
    bool isDefined(const QString& word) const;

private:
    enum class Kind
    {
        Prose,
        Markup,
        Source
    };

    std::vector<ProseRange> proseInMarkup(const TextSnapshot& text, TextRange range) const;
    std::vector<ProseRange> proseInSource(const TextSnapshot& text, TextRange range) const;

    Kind m_kind = Kind::Prose;
    std::shared_ptr<const ColouringState> m_state; ///< null for prose
};

} // namespace quillory
