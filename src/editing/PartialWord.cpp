#include "editing/PartialWord.h"

#include "text/CharacterSet.h"
#include "text/TextReader.h"
#include "text/TextUnits.h"

#include <algorithm>
#include <vector>

namespace quillory {

namespace {

/// No partial word is longer, in UTF-16 code units.
constexpr TextOffset longest = 128;

bool beginsOneOf(const QStringList& words, QStringView beginning)
{
    return std::any_of(words.begin(), words.end(), [&](const QString& word) {
        return word.startsWith(beginning, Qt::CaseInsensitive);
    });
}

} // namespace

bool isNameCharacter(char32_t character)
{
    return character == U'_' || CharacterSet::alphanumeric().contains(character);
}

TextRange partialWordBefore(const TextSnapshot& text, TextOffset caret, const QStringList& words)
{
    TextReader reader(text);
    TextOffset name = caret;            // where the name before the caret begins
    std::vector<TextOffset> beginnings; // of names and signs further left, from right to left
    bool isAfterName = false; // what lies right of `at` is the inside or beginning of a name
    for (TextOffset at = caret; at > 0;) {
        const char32_t character = reader.codePointBefore(at);
        if (CharacterSet::whitespaceAndNewline().contains(character))
            break;
        const TextOffset before = at - unitsOf(character);
        if (caret - before > longest) {
            if (name == at)
                return {caret, 0};
            if (isAfterName) // and that name goes on
                beginnings.pop_back();
            break;
        }
        const bool isName = isNameCharacter(character);
        if (isName && name == at)
            name = before;
        else if (isName && isAfterName)
            beginnings.back() = before;
        else
            beginnings.push_back(before);
        isAfterName = isName && name != before;
        at = before;
    }
    const QString typed =
        text.string(TextRange::between(beginnings.empty() ? name : beginnings.back(), caret));
    const auto begins = std::find_if(beginnings.rbegin(), beginnings.rend(), [&](TextOffset at) {
        return beginsOneOf(words, QStringView(typed).right(caret - at));
    });
    return TextRange::between(begins == beginnings.rend() ? name : *begins, caret);
}

} // namespace quillory
