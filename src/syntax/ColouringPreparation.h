#pragma once

#include "syntax/ColouringState.h"
#include "syntax/Definition.h"

namespace quillory {

class UserDefaults;

/// The user defaults that decide how a definition is read.
struct ColouringOptions
{
    bool colourAutocompleteWordsAsKeywords = false;
    bool colourMultiLineStrings = false;

    static ColouringOptions from(const UserDefaults& defaults);
    bool operator==(const ColouringOptions&) const = default;
};

/// Turns \a definition into what colouring reads. Word lists, "beginVariable",
/// "keywordsCaseSensitive" and "shouldBeRecolered" that it lacks stay as \a state has them from the
/// definition before; delimiters that it lacks become empty. Answers what is wrong with it.
///
/// The keys that would change which characters words begin and end with ("include…" and
/// "exclude…KeywordStartCharacterSet" and their like) have no effect: these are the same for all
/// languages.
std::vector<DefinitionFault> prepareColoring(const Definition& definition,
                                             const ColouringOptions& options,
                                             ColouringState& state);

/// The part of it that makes the sets of word characters and the patterns of literals, from the
/// delimiters in \a state. A pattern that does not compile is left out.
std::vector<DefinitionFault> prepareRegularExpressions(const Definition& definition,
                                                       const ColouringOptions& options,
                                                       ColouringState& state);

} // namespace quillory
