#include "syntax/ColouringPreparation.h"

#include "foundation/UserDefaults.h"
#include "syntax/regex/ICUPattern.h"

#include <algorithm>

namespace quillory {

using namespace Qt::StringLiterals;

namespace {

constexpr std::pair<const char*, ColouringState::Words ColouringState::*> wordLists[] = {
    {"keywords", &ColouringState::keywords},
    {"others", &ColouringState::values},
    {"objects", &ColouringState::main},
    {"classes", &ColouringState::ns},
    {"others2", &ColouringState::statements},
    {"types", &ColouringState::types},
    {"constants", &ColouringState::enums},
    {"basics", &ColouringState::functs},
    {"methods", &ColouringState::simple},
    {"autocompleteWords", &ColouringState::autocompleteWords},
};

constexpr std::pair<const char*, QString ColouringState::*> texts[] = {
    {"beginCommand", &ColouringState::beginCommand},
    {"endCommand", &ColouringState::endCommand},
    {"beginInstruction", &ColouringState::beginInstruction},
    {"endInstruction", &ColouringState::endInstruction},
    {"firstString", &ColouringState::firstString},
    {"secondString", &ColouringState::secondString},
    {"firstSingleLineComment", &ColouringState::firstSingleLineComment},
    {"secondSingleLineComment", &ColouringState::secondSingleLineComment},
    {"beginFirstMultiLineComment", &ColouringState::beginFirstMultiLineComment},
    {"endFirstMultiLineComment", &ColouringState::endFirstMultiLineComment},
    {"beginSecondMultiLineComment", &ColouringState::beginSecondMultiLineComment},
    {"endSecondMultiLineComment", &ColouringState::endSecondMultiLineComment},
    {"functionDefinition", &ColouringState::functionDefinition},
    {"ignoreAsAFunctionComponent", &ColouringState::ignoreAsAFunctionComponent},
};

// A character that is not of a word, the delimiter, what is not the delimiter, where a backslash
// takes the meaning from the character after it, and the delimiter. They differ in where a literal
// may go on to the next line: only after a backslash; anywhere after the first backslash; anywhere.
constexpr QLatin1StringView oneLine(R"(\W%@[^%@\\\r\n]*+(?:\\(?:.|$)[^%@\\\r\n]*+)*+%@)");
constexpr QLatin1StringView oneLineUntilEscaped(R"(\W%@[^%@\\\r\n]*+(?:\\(?:.|$)[^%@\\]*+)*+%@)");
constexpr QLatin1StringView manyLines(R"(\W%@[^%@\\]*+(?:\\(?:.|$)[^%@\\]*+)*+%@)");

ColouringState::Words setOf(const QStringList& words)
{
    return {words.begin(), words.end()};
}

void prepareWords(const Definition& definition, const ColouringOptions& options,
                  ColouringState& state)
{
    QStringList combined;
    for (const auto& [key, set] : wordLists) {
        if (const auto words = definition.words(QLatin1StringView(key))) {
            state.*set = setOf(*words);
            combined += *words;
        }
    }
    if (options.colourAutocompleteWordsAsKeywords)
        state.keywords = setOf(combined);
    std::sort(combined.begin(), combined.end());
    combined.erase(std::unique(combined.begin(), combined.end()), combined.end());
    state.autocompletionArray = combined;

    state.shouldBeRecolered =
        definition.flag("shouldBeRecolered"_L1).value_or(state.shouldBeRecolered);
    state.keywordsCaseSensitive =
        definition.flag("keywordsCaseSensitive"_L1).value_or(state.keywordsCaseSensitive);
    if (!state.keywordsCaseSensitive) {
        ColouringState::Words lower;
        lower.reserve(state.keywords.size());
        for (const QString& word : std::as_const(state.keywords))
            lower.insert(word.toLower());
        state.keywords = lower;
    }
}

void prepareDelimiters(const Definition& definition, ColouringState& state)
{
    for (const auto& [key, text] : texts)
        state.*text = definition.string(QLatin1StringView(key)).value_or(QString());
    if (const auto characters = definition.string("beginVariable"_L1))
        state.beginVariable = CharacterSet(*characters);
    state.endVariable = CharacterSet(definition.string("endVariable"_L1).value_or(QString()));
    if (!state.firstString.isEmpty())
        state.firstStringUnichar = state.firstString[0].unicode();
    if (!state.secondString.isEmpty())
        state.secondStringUnichar = state.secondString[0].unicode();
}

/// Null, and a fault, where \a pattern does not compile.
std::shared_ptr<ICUPattern> compiled(const QString& pattern, const Definition& definition,
                                     QLatin1StringView key, std::vector<DefinitionFault>& faults)
{
    try {
        return ICUPattern::patternWithString(pattern);
    } catch (const ICUException& exception) {
        faults.push_back(definition.fault(key, exception.reason()));
        return nullptr;
    }
}

} // namespace

ColouringOptions ColouringOptions::from(const UserDefaults& defaults)
{
    return {defaults.value(keys::colourAutocompleteWordsAsKeywords),
            defaults.value(keys::colourMultiLineStrings)};
}

std::vector<DefinitionFault> prepareColoring(const Definition& definition,
                                             const ColouringOptions& options, ColouringState& state)
{
    std::vector<DefinitionFault> faults = definition.contentFaults();
    prepareWords(definition, options, state);
    prepareDelimiters(definition, state);
    state.colorNumbers = definition.flag("colorNumbers"_L1).value_or(false);
    if (definition.title() != Definition::plainText) { // which is never coloured
        const auto patternFaults = prepareRegularExpressions(definition, options, state);
        faults.insert(faults.end(), patternFaults.begin(), patternFaults.end());
    }
    if (!state.functionDefinition.isEmpty())
        (void)compiled(state.functionDefinition, definition, "functionDefinition"_L1, faults);
    return faults;
}

std::vector<DefinitionFault> prepareRegularExpressions(const Definition& definition,
                                                       const ColouringOptions& options,
                                                       ColouringState& state)
{
    static const CharacterSet start = CharacterSet::letter().withCharacters(u"_:@#");
    static const CharacterSet end = CharacterSet::whitespaceAndNewline()
                                        .united(CharacterSet::symbol())
                                        .united(CharacterSet::punctuation())
                                        .withoutCharacters(u"_");
    static const CharacterSet attributes = CharacterSet::alphanumeric().withCharacters(u" -");
    state.letterCharacterSet = CharacterSet::letter();
    state.keywordStartCharacterSet = start;
    state.keywordEndCharacterSet = end;
    state.attributesCharacterSet = attributes;

    state.colourMultiLineStrings = options.colourMultiLineStrings;
    std::vector<DefinitionFault> faults;
    const auto pattern = [&](QLatin1StringView singleLine, const QString& delimiter,
                             QLatin1StringView key) {
        QString text = state.colourMultiLineStrings ? manyLines : singleLine;
        return compiled(text.replace("%@"_L1, delimiter), definition, key, faults);
    };
    state.firstStringPattern = pattern(oneLine, state.firstString, "firstString"_L1);
    state.secondStringPattern = pattern(oneLineUntilEscaped, state.secondString, "secondString"_L1);
    return faults;
}

} // namespace quillory
