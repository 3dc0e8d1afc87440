#include "editing/Blanks.h"

#include "text/CharacterSet.h"
#include "text/TextUnits.h"

#include <algorithm>

namespace quillory {

namespace {

/// All units at once: a loop that stops early is not vectorised.
template<class Unit>
bool areSpacesOrTabs(const Unit* units, TextOffset count)
{
    bool all = true;
    for (TextOffset i = 0; i < count; ++i)
        all &= (units[i] == ' ') | (units[i] == '\t');
    return all;
}

/// Blanks are nearly always spaces and tabs, and a line may consist of megabytes of them.
constexpr TextOffset block = 64;

/// The first unit that is not \a blank.
template<class View, class Blank>
TextOffset firstOther(View view, Blank blank)
{
    const auto* units = unitsOf(view);
    TextOffset i = 0;
    while (i + block <= view.size() && areSpacesOrTabs(units + i, block))
        i += block;
    while (i < view.size() && blank(units[i]))
        ++i;
    return i;
}

/// Where the last unit that is not \a blank ends; 0 where there is none.
template<class View, class Blank>
TextOffset endOfLastOther(View view, Blank blank)
{
    const auto* units = unitsOf(view);
    TextOffset end = view.size();
    while (end > 0 && blank(units[end - 1])) {
        --end;
        while (end >= block && areSpacesOrTabs(units + end - block, block))
            end -= block;
    }
    return end;
}

template<class Blank>
TextOffset runEnd(const TextSnapshot& text, TextRange range, Blank blank)
{
    TextOffset end = range.location;
    text.forEachPiece(range, [&](const TextPiece& piece) {
        const TextOffset run =
            std::visit([&](auto view) { return firstOther(view, blank); }, piece.units);
        end += run;
        return run == piece.length();
    });
    return end;
}

} // namespace

TextOffset blanksEnd(const TextSnapshot& text, TextRange range)
{
    const CharacterSet& blanks = CharacterSet::whitespace();
    return runEnd(text, range, [&](char16_t unit) { return blanks.contains(unit); });
}

bool isIndentation(const TextSnapshot& text, TextRange range)
{
    return runEnd(text, range, isSpaceOrTab) == range.end();
}

bool endsIn(const TextSnapshot& text, TextRange range, char16_t character)
{
    const CharacterSet& blanks = CharacterSet::whitespaceAndNewline();
    while (!range.isEmpty()) {
        TextPiece piece = text.pieceAt(range.end() - 1);
        piece = trimmed(piece, std::max<TextOffset>(range.location - piece.location, 0),
                        range.end() - std::max(range.location, piece.location));
        const TextOffset end = std::visit(
            [&](auto view) {
                return endOfLastOther(view, [&](char16_t unit) { return blanks.contains(unit); });
            },
            piece.units);
        if (end > 0)
            return text.at(piece.location + end - 1) == character;
        range.length -= piece.length();
    }
    return false;
}

} // namespace quillory
