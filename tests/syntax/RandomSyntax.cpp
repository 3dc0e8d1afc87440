#include "syntax/RandomSyntax.h"

#include "syntax/regex/ICUPattern.h"

namespace quillory::test {

namespace {

struct Pair
{
    const char* begin;
    const char* end;
};

std::shared_ptr<ICUPattern> compiled(const char* pattern, const QString& delimiter)
{
    try {
        return ICUPattern::patternWithString(
            QString::fromLatin1(pattern).replace(QStringLiteral("%@"), delimiter));
    } catch (const ICUException&) {
        return nullptr;
    }
}

const char* const words[] = {"if", "Else", "abc",  "x1",  "_y",     "@end", "#define", "straße",
                             "q",  "ÉTÉ",  "été",  "e",   "script", "a-b",  "ǅ",       "h1",
                             "%x", "İ",    "item", "for", "0xFF",   "int",  "12ab",    "𝒜b"};

} // namespace

ColouringState emptyState()
{
    ColouringState state;
    const CharacterSet underscore(u"_");
    state.letterCharacterSet = CharacterSet::letter();
    state.keywordStartCharacterSet = CharacterSet::letter().withCharacters(u"_:@#");
    state.keywordEndCharacterSet = CharacterSet::whitespaceAndNewline()
                                       .united(CharacterSet::symbol())
                                       .united(CharacterSet::punctuation())
                                       .withoutCharacters(u"_");
    state.attributesCharacterSet = CharacterSet::alphanumeric().withCharacters(u" -");
    return state;
}

void compileStrings(ColouringState& state)
{
    const char* const lines = R"(\W%@[^%@\\\r\n]*+(?:\\(?:.|$)[^%@\\\r\n]*+)*+%@)";
    const char* const escapes = R"(\W%@[^%@\\\r\n]*+(?:\\(?:.|$)[^%@\\]*+)*+%@)";
    const char* const many = R"(\W%@[^%@\\]*+(?:\\(?:.|$)[^%@\\]*+)*+%@)";
    const bool multi = state.colourMultiLineStrings;
    state.firstStringPattern = compiled(multi ? many : lines, state.firstString);
    state.secondStringPattern = compiled(multi ? many : escapes, state.secondString);
}

ColouringState RandomSyntax::state()
{
    static const Pair commands[] = {{"<", ">"},   {"", ""},   {"<%", "%>"}, {"[", "]]"},
                                    {"\\", "{"},  {"<", ""},  {"@", "@"},   {"", ">"},
                                    {"{{", "}}"}, {"<", "<"}, {"a", " "},   {"<", ">"}};
    static const Pair instructions[] = {{"", ""},   {"<?", "?>"}, {"/*", "*/"}, {"'''", "'''"},
                                        {"<?", ""}, {"--", "--"}, {"aa", "aba"}};
    static const Pair comments[] = {
        {"", ""},   {"/*", "*/"}, {"<!--", "-->"}, {"<!--", "-->"}, {"\"\"\"", "\"\"\""},
        {"/*", ""}, {"#", "#"},   {"(*", "*)"},    {"\"/", "*/"},   {"-", "-->"}};
    static const char* const strings[] = {"\"", "'", "\"", "'", "", "`", "/", "|", "''", "a", " "};
    static const char* const lineComments[] = {"", "//", "#", "%", "--", ";", "'", "//"};
    static const char* const variables[] = {"", "$", "$%", "@", "$\\", "😀"};
    static const char* const variableEnds[] = {"", " ;", " \n", "$"};
    ColouringState state = emptyState();
    const auto set = [&](QString& field, const char* value) { field = QString::fromUtf8(value); };
    const auto pair = [&](QString& begin, QString& end, const Pair& value) {
        set(begin, value.begin);
        set(end, value.end);
    };
    pair(state.beginCommand, state.endCommand, oneOf(commands));
    pair(state.beginInstruction, state.endInstruction, oneOf(instructions));
    pair(state.beginFirstMultiLineComment, state.endFirstMultiLineComment, oneOf(comments));
    pair(state.beginSecondMultiLineComment, state.endSecondMultiLineComment, oneOf(comments));
    set(state.firstString, oneOf(strings));
    set(state.secondString, oneOf(strings));
    set(state.firstSingleLineComment, oneOf(lineComments));
    set(state.secondSingleLineComment, oneOf(lineComments));
    if (below(3) != 0)
        state.beginVariable = CharacterSet(QString::fromUtf8(oneOf(variables)));
    state.endVariable = CharacterSet(QString::fromUtf8(oneOf(variableEnds)));
    state.keywordsCaseSensitive = below(2) == 0;
    state.shouldBeRecolered = below(2) == 0;
    state.colorNumbers = below(4) != 0;
    state.colourMultiLineStrings = below(4) == 0;
    for (ColouringState::Words* list :
         {&state.keywords, &state.values, &state.main, &state.ns, &state.statements, &state.types,
          &state.enums, &state.functs, &state.simple, &state.autocompleteWords}) {
        for (int i = below(4); i > 0; --i)
            list->insert(QString::fromUtf8(oneOf(words)));
    }
    for (const QString& word : ColouringState::Words(state.keywords)) {
        if (!state.keywordsCaseSensitive)
            state.keywords.insert(word.toLower());
    }
    compileStrings(state);
    return state;
}

QString RandomSyntax::text(const ColouringState& state, int pieces)
{
    static const char* const fixed[] = {
        "\n",      "\n",     "\n",       "\n",        " ",        "  ",       "\"", "'",
        "\\",      "\\\"",   "\\\n",     "\t",        "#!",       "$#",       "&#", "://",
        "\\%",     "=",      "</script", "</script>", "</style>", "</STYLE>", "<",  ">",
        "-->",     "-",      "7",        "42 ",       ".",        ":",        "😀",  "𝟘",
        "e\u0301", "\u2028", "*/*",      "/*/",       "a=\"b\"",  "<a b=c>",  "\f", "\u00a0",
        "\u0085",  "*",      "/",        "#",         "%"};
    const QString* const delimiters[] = {&state.beginCommand,
                                         &state.endCommand,
                                         &state.beginInstruction,
                                         &state.endInstruction,
                                         &state.firstString,
                                         &state.secondString,
                                         &state.firstString,
                                         &state.secondString,
                                         &state.firstSingleLineComment,
                                         &state.secondSingleLineComment,
                                         &state.beginFirstMultiLineComment,
                                         &state.endFirstMultiLineComment,
                                         &state.beginSecondMultiLineComment,
                                         &state.endSecondMultiLineComment};
    QString text;
    while (pieces-- > 0) {
        switch (below(4)) {
        case 0:
            text += *oneOf(delimiters);
            break;
        case 1:
            text += QString::fromUtf8(oneOf(words));
            break;
        case 2:
            text += QLatin1Char(' ');
            break;
        default:
            text += QString::fromUtf8(oneOf(fixed));
        }
    }
    if (below(20) == 0)
        text += QChar(0xD83D);
    return text;
}

ColourRoles RandomSyntax::roles()
{
    if (below(3) != 0)
        return {};
    std::array<OverlayAttributes, colourRoleCount> looks;
    for (size_t i = 1; i < looks.size(); ++i)
        looks[i].foreground = Colour{float(below(8)), 0, 0, 1};
    return ColourRoles(looks);
}

} // namespace quillory::test
