#include "syntax/ColouringPreparation.h"

#include "syntax/regex/ICUMatcher.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;
using Dictionary = PropertyList::Dictionary;
using Array = PropertyList::Array;
using Words = ColouringState::Words;

Dictionary dictionary(std::initializer_list<std::pair<QString, PropertyList>> entries)
{
    Dictionary result{{u"title"_s, u"Lab"_s}};
    for (const auto& [key, value] : entries)
        result.insert(key, value);
    return result;
}

/// The keys at fault, with a bar between them.
QString prepare(ColouringState& state, const Dictionary& entries,
                const ColouringOptions& options = {})
{
    QStringList keys;
    for (const DefinitionFault& fault :
         prepareColoring(Definition(entries, u"Lab.plist"_s), options, state)) {
        EXPECT_EQ(fault.definition, u"Lab"_s);
        keys.append(fault.key);
    }
    return keys.join(u'|');
}

/// What the pattern finds in \a text, with a bar between the matches.
QString found(const std::shared_ptr<ICUPattern>& pattern, const QString& text)
{
    QStringList matches;
    ICUMatcher matcher(pattern, text);
    while (matcher.findNext())
        matches.append(matcher.group());
    return matches.join(u'|');
}

TEST(ColouringPreparation, FillsEachSetFromItsKey)
{
    ColouringState state;
    const std::pair<const char*, const Words*> sets[] = {
        {"keywords", &state.keywords},  {"others", &state.values},
        {"objects", &state.main},       {"classes", &state.ns},
        {"others2", &state.statements}, {"types", &state.types},
        {"constants", &state.enums},    {"basics", &state.functs},
        {"methods", &state.simple},     {"autocompleteWords", &state.autocompleteWords}};
    Dictionary all;
    for (const auto& [key, set] : sets)
        all.insert(QLatin1StringView(key),
                   Array{QString::fromLatin1(key).toUpper(), u"b"_s, u"a"_s});
    EXPECT_EQ(prepare(state, all), QString());
    for (const auto& [key, set] : sets) {
        const bool folded = set == &state.keywords;
        const QString word = QString::fromLatin1(key);
        EXPECT_EQ(*set, (Words{folded ? word : word.toUpper(), u"a"_s, u"b"_s})) << key;
    }
    EXPECT_TRUE(state.conts.isEmpty());
    EXPECT_EQ(state.autocompletionArray,
              (QStringList{u"AUTOCOMPLETEWORDS"_s, u"BASICS"_s, u"CLASSES"_s, u"CONSTANTS"_s,
                           u"KEYWORDS"_s, u"METHODS"_s, u"OBJECTS"_s, u"OTHERS"_s, u"OTHERS2"_s,
                           u"TYPES"_s, u"a"_s, u"b"_s}));
}

TEST(ColouringPreparation, KeepsWhatTheNextDefinitionLacksOrHasOfAWrongKind)
{
    for (const Dictionary& next :
         {dictionary({}), dictionary({{u"keywords"_s, u"text"_s},
                                      {u"types"_s, 1},
                                      {u"beginVariable"_s, true},
                                      {u"keywordsCaseSensitive"_s, Array()},
                                      {u"shouldBeRecolered"_s, Dictionary()},
                                      {u"endVariable"_s, 1.5},
                                      {u"firstString"_s, Array()},
                                      {u"beginCommand"_s, QByteArray("<")},
                                      {u"functionDefinition"_s, 1},
                                      {u"ignoreAsAFunctionComponent"_s, 2},
                                      {u"colorNumbers"_s, Array()}})}) {
        ColouringState state;
        EXPECT_FALSE(state.beginVariable);
        prepare(state, dictionary({{u"keywords"_s, Array{u"If"_s}},
                                   {u"types"_s, Array{u"Int"_s}},
                                   {u"keywordsCaseSensitive"_s, true},
                                   {u"shouldBeRecolered"_s, true},
                                   {u"beginVariable"_s, u"$"_s},
                                   {u"endVariable"_s, u";"_s},
                                   {u"firstString"_s, u"\""_s},
                                   {u"secondString"_s, u"'"_s},
                                   {u"beginCommand"_s, u"<"_s},
                                   {u"functionDefinition"_s, u"f"_s},
                                   {u"ignoreAsAFunctionComponent"_s, u"i"_s},
                                   {u"colorNumbers"_s, true}}));
        EXPECT_TRUE(state.colorNumbers);
        const QString faults = prepare(state, next);
        EXPECT_EQ(faults.isEmpty() ? 0 : faults.count(u'|') + 1, next.size() - 1);
        EXPECT_EQ(state.keywords, Words{u"If"_s});
        EXPECT_EQ(state.types, Words{u"Int"_s});
        EXPECT_TRUE(state.keywordsCaseSensitive);
        EXPECT_TRUE(state.shouldBeRecolered);
        EXPECT_TRUE(state.beginVariable && state.beginVariable->contains(U'$'));
        EXPECT_TRUE(state.autocompletionArray.isEmpty());
        EXPECT_FALSE(state.endVariable.contains(U';'));
        EXPECT_EQ(state.firstString + state.beginCommand + state.functionDefinition +
                      state.ignoreAsAFunctionComponent,
                  QString());
        EXPECT_EQ(state.firstStringUnichar, u'"');
        EXPECT_EQ(state.secondStringUnichar, u'\'');
        EXPECT_FALSE(state.colorNumbers);
    }
}

TEST(ColouringPreparation, FoldsTheCaseOfKeywordsAlone)
{
    ColouringState state;
    prepare(state, dictionary({{u"keywords"_s, Array{u"BEGIN"_s, u"Ä"_s}},
                               {u"types"_s, Array{u"INT"_s}}}));
    EXPECT_EQ(state.keywords, (Words{u"begin"_s, u"ä"_s}));
    EXPECT_EQ(state.types, Words{u"INT"_s});
    prepare(state, dictionary({{u"keywords"_s, Array{u"BEGIN"_s}},
                               {u"keywordsCaseSensitive"_s, u"YES"_s}}));
    EXPECT_EQ(state.keywords, Words{u"BEGIN"_s});
    prepare(state, dictionary({{u"keywordsCaseSensitive"_s, 0}})); // also what was kept
    EXPECT_EQ(state.keywords, Words{u"begin"_s});
}

TEST(ColouringPreparation, MakesKeywordsOfAllWordsWhenAsked)
{
    ColouringState state;
    ColouringOptions options;
    options.colourAutocompleteWordsAsKeywords = true;
    prepare(
        state,
        dictionary({{u"others"_s, Array{u"Value"_s}}, {u"autocompleteWords"_s, Array{u"done"_s}}}),
        options);
    EXPECT_EQ(state.keywords, (Words{u"value"_s, u"done"_s}));
    EXPECT_EQ(state.values, Words{u"Value"_s});
    prepare(state, dictionary({}), options);
    EXPECT_EQ(state.keywords, Words());
}

TEST(ColouringPreparation, TheSetsOfWordCharactersAreTheSameForAll)
{
    ColouringState state;
    prepare(state, dictionary({{u"includeInKeywordStartCharacterSet"_s, u"$1"_s},
                               {u"excludeFromKeywordStartCharacterSet"_s, u"_a"_s},
                               {u"includeInKeywordEndCharacterSet"_s, u"_x"_s},
                               {u"excludeFromKeywordEndCharacterSet"_s, u"-;"_s}}));
    struct Row
    {
        char32_t character;
        bool start;
        bool end;
        bool attribute;
    };
    const Row rows[] = {
        {U'a', true, false, true},       {U'_', true, false, false},
        {U':', true, true, false},       {U'@', true, true, false},
        {U'#', true, true, false},       {U'$', false, true, false},
        {U'1', false, false, true},      {U'-', false, true, true},
        {U' ', false, true, true},       {U';', false, true, false},
        {U'\n', false, true, false},     {U'\u0301', true, false, true},
        {U'\u200B', false, true, false}, {U'\U0001D400', true, false, true},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(state.keywordStartCharacterSet.contains(row.character), row.start)
            << quint32(row.character);
        EXPECT_EQ(state.keywordEndCharacterSet.contains(row.character), row.end)
            << quint32(row.character);
        EXPECT_EQ(state.attributesCharacterSet.contains(row.character), row.attribute)
            << quint32(row.character);
    }
}

TEST(ColouringPreparation, TheKindsOfLiteralsDifferInWhereTheyGoOn)
{
    struct Row
    {
        QString text; // with ' for the delimiter
        QString first;
        QString second;
        QString multi;
    };
    const Row rows[] = {
        {u" 'a' 'b'"_s, u" 'a'| 'b'"_s, u" 'a'| 'b'"_s, u" 'a'| 'b'"_s},
        {u"x'a'"_s, {}, {}, {}},
        {u" 'a\nb'"_s, {}, {}, u" 'a\nb'"_s},
        {u" 'a\\'b' c'"_s, u" 'a\\'b'"_s, u" 'a\\'b'"_s, u" 'a\\'b'"_s},
        {u" 'a\\\nb'"_s, {}, {}, {}}, // "$" is the end of the text alone
        {u" 'a\\xb\nc'"_s, {}, u" 'a\\xb\nc'"_s, u" 'a\\xb\nc'"_s},
        {u" 'open"_s, {}, {}, {}},
        {u" ''"_s, u" ''"_s, u" ''"_s, u" ''"_s},
    };
    for (const Row& row : rows) {
        ColouringState state;
        const Dictionary quotes =
            dictionary({{u"firstString"_s, u"'"_s}, {u"secondString"_s, u"'"_s}});
        EXPECT_EQ(prepare(state, quotes), QString());
        const std::string what = row.text.toStdString();
        EXPECT_EQ(found(state.firstStringPattern, row.text), row.first) << what;
        EXPECT_EQ(found(state.secondStringPattern, row.text), row.second) << what;
        ColouringOptions options;
        options.colourMultiLineStrings = true;
        EXPECT_EQ(prepare(state, quotes, options), QString());
        EXPECT_EQ(found(state.firstStringPattern, row.text), row.multi) << what;
        EXPECT_EQ(found(state.secondStringPattern, row.text), row.multi) << what;
    }
}

TEST(ColouringPreparation, SaysWhichPatternDoesNotCompile)
{
    ColouringState state;
    EXPECT_EQ(prepare(state, dictionary({{u"firstString"_s, u"["_s},
                                         {u"secondString"_s, u"'"_s},
                                         {u"functionDefinition"_s, u"(a"_s}})),
              u"firstString|functionDefinition"_s);
    EXPECT_EQ(state.firstStringPattern, nullptr);
    ASSERT_NE(state.secondStringPattern, nullptr);
    EXPECT_EQ(found(state.secondStringPattern, u" 'a'"_s), u" 'a'"_s);
    // The delimiter goes into the pattern as it is.
    EXPECT_EQ(prepare(state, dictionary({{u"firstString"_s, u"."_s}})), QString());
    EXPECT_EQ(found(state.firstStringPattern, u" xay.z"_s), u" xay."_s);
    EXPECT_EQ(prepare(state, dictionary({})), QString());
    EXPECT_NE(state.firstStringPattern, nullptr);
}

} // namespace
} // namespace quillory
