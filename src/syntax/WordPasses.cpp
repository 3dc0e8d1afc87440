#include "syntax/ColouringPasses.h"

namespace quillory {

namespace {

TextOffset skip(std::u16string_view units, TextOffset from, const CharacterSet& set, bool inSet)
{
    while (size_t(from) < units.size()) {
        const char32_t character = characterAt(units, from);
        if (set.contains(character) != inSet)
            break;
        from += unitsOf(character);
    }
    return from;
}

/// Calls \a visit with the range of each word: from a character of \a start to the next one of
/// \a end. A start that is the last character of the units is no word.
template<class Visit>
void forEachWord(std::u16string_view units, const CharacterSet& start, const CharacterSet& end,
                 bool endsInSet, Visit&& visit)
{
    const auto length = TextOffset(units.size());
    for (TextOffset at = 0;;) {
        const TextOffset begin = skip(units, at, start, false);
        if (begin >= length)
            return;
        const TextOffset second = begin + unitsOf(characterAt(units, begin));
        if (second >= length)
            return;
        at = skip(units, second, end, !endsInSet);
        visit(begin, at);
    }
}

struct WordPass
{
    const ColouringState::Words* words;
    ColourRole role;
    bool foldsCase;
};

/// The lists that hold words, in the order of their passes.
std::vector<WordPass> wordPasses(const ColouringState& state)
{
    const bool folds = !state.keywordsCaseSensitive;
    const WordPass all[] = {
        {&state.keywords, ColourRole::keyword, folds},
        {&state.values, ColourRole::other, false},
        {&state.main, ColourRole::object, false},
        {&state.ns, ColourRole::classRole, false},
        {&state.statements, ColourRole::other2, false},
        {&state.types, ColourRole::type, false},
        {&state.enums, ColourRole::constant, false},
        {&state.functs, ColourRole::basic, false},
        {&state.simple, ColourRole::method, false},
        {&state.autocompleteWords, ColourRole::autocomplete, folds},
    };
    std::vector<WordPass> passes;
    std::ranges::copy_if(all, std::back_inserter(passes),
                         [](const WordPass& pass) { return !pass.words->isEmpty(); });
    return passes;
}

} // namespace

void colourNumbers(ColourCanvas& canvas, const ColouringState& state)
{
    if (!state.colorNumbers)
        return;
    const std::u16string_view units = canvas.units();
    const CharacterSet& digits = CharacterSet::decimalDigit();
    forEachWord(units, state.attributesCharacterSet, state.letterCharacterSet, false,
                [&](TextOffset begin, TextOffset end) {
                    if (digits.contains(characterAt(units, begin)) &&
                        (state.shouldBeRecolered || !canvas.isIn(begin, ColourRole::command)))
                        canvas.paint(begin, end, ColourRole::number);
                });
}

// All the passes find the same words, and a word's colour depends on nothing but itself and what
// its first character carries, so each word is looked up in all lists at once.
void colourWords(ColourCanvas& canvas, const ColouringState& state)
{
    const std::vector<WordPass> passes = wordPasses(state);
    if (passes.empty())
        return;
    const bool folds = !state.keywordsCaseSensitive;
    const std::u16string_view units = canvas.units();
    forEachWord(units, state.keywordStartCharacterSet, state.keywordEndCharacterSet, true,
                [&](TextOffset begin, TextOffset end) {
                    ColourRole role = canvas.roleAt(begin);
                    bool isListed = false;
                    const auto word = QString::fromRawData(
                        reinterpret_cast<const QChar*>(units.data() + begin), end - begin);
                    const QString folded = folds ? word.toLower() : word;
                    for (const WordPass& pass : passes) {
                        if (!state.shouldBeRecolered &&
                            canvas.roles().same(role, ColourRole::command))
                            break;
                        if (pass.words->contains(pass.foldsCase ? folded : word)) {
                            role = pass.role;
                            isListed = true;
                        }
                    }
                    if (isListed)
                        canvas.paint(begin, end, role);
                });
}

} // namespace quillory
