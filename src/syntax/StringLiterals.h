#pragma once

#include "syntax/ColouringState.h"
#include "text/TextRange.h"

#include <string_view>
#include <vector>

namespace quillory {

/// A string literal, and the character before it that belongs to the match.
struct StringLiteral
{
    TextOffset before = 0; ///< where that character begins
    TextOffset begin = 0;
    TextOffset end = 0;
    bool operator==(const StringLiteral&) const = default;
};

/// The three kinds of string literal; see prepareRegularExpressions for their patterns.
enum class StringKind
{
    oneLine,           ///< on one line
    breaksAfterEscape, ///< on one line up to the first backslash
    manyLines
};

/// True when a delimiter means nothing but itself in a pattern, so that StringLiteralScanner finds
/// what the pattern would.
bool isPlainDelimiter(QStringView delimiter);

/// The literals between two plain \a delimiter in \a units, as the pattern of \a kind matches them
/// one after the other. Linear, where the pattern itself would look at a text of nothing but
/// escaped delimiters again from each of them.
std::vector<StringLiteral> plainLiterals(std::u16string_view units, char16_t delimiter,
                                         StringKind kind);

struct StringLiterals
{
    std::vector<StringLiteral> found;
    bool hitLimit = false; ///< the pattern was given up; what it had found until then is there
};

/// \a state with patterns that no other thread uses: each serves one thread at a time.
ColouringState withOwnPatterns(const ColouringState& state);

/// The literals in \a units by the first or the second delimiter of \a state, whose patterns are
/// used for it.
StringLiterals firstStringLiterals(std::u16string_view units, const ColouringState& state);
StringLiterals secondStringLiterals(std::u16string_view units, const ColouringState& state);

} // namespace quillory
