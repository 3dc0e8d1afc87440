#include "syntax/RecolouringEngine.h"

#include "syntax/RandomSyntax.h"
#include "syntax/RecolouringOracle.h"

#include <gtest/gtest.h>
#include <map>

namespace quillory {
namespace {

using test::coloursOf;
using test::compileStrings;
using test::emptyState;
using test::RandomSyntax;

std::vector<ColourRole> painted(const Recolouring& result, TextRange range)
{
    std::vector<ColourRole> roles(size_t(range.length), ColourRole::none);
    for (const RoleRun& run : result.runs) {
        for (TextOffset i = run.range.location; i < run.range.end(); ++i) {
            if (range.contains(i))
                roles[size_t(i - range.location)] = run.role;
        }
    }
    return roles;
}

/// One character a unit; "." where there is no colour.
std::string letters(const std::vector<ColourRole>& roles)
{
    std::string result;
    for (const ColourRole role : roles)
        result.push_back(".CNIkobcpte!fmavSA#"[size_t(role)]);
    return result;
}

std::string letters(const QString& text, const ColouringState& state)
{
    const TextSnapshot snapshot(text);
    return letters(
        painted(recoloured(snapshot, snapshot.range(), state, ColourRoles()), snapshot.range()));
}

std::string described(const ColouringState& state)
{
    QStringList parts;
    for (const QString* field :
         {&state.beginCommand, &state.endCommand, &state.beginInstruction, &state.endInstruction,
          &state.firstString, &state.secondString, &state.firstSingleLineComment,
          &state.secondSingleLineComment, &state.beginFirstMultiLineComment,
          &state.endFirstMultiLineComment, &state.beginSecondMultiLineComment,
          &state.endSecondMultiLineComment})
        parts += *field;
    return parts.join(QStringLiteral(" , ")).toStdString() +
           (state.colourMultiLineStrings ? " many lines" : "");
}

TEST(RecolouringEngineTest, ColoursAsTheSlowPassesDo)
{
    for (unsigned seed = 0; seed < 1500; ++seed) {
        RandomSyntax random(seed);
        const ColouringState state = random.state();
        const ColourRoles roles = random.roles();
        const QString text = random.text(state, random.below(60));
        const TextSnapshot snapshot(text);
        const Recolouring result = recoloured(snapshot, snapshot.range(), state, roles);
        ASSERT_EQ(letters(painted(result, snapshot.range())),
                  letters(coloursOf(text, state, roles)))
            << "seed " << seed << ": " << described(state) << '\n'
            << text.toStdString();
        for (size_t i = 1; i < result.runs.size(); ++i) {
            const RoleRun& before = result.runs[i - 1];
            ASSERT_LE(before.range.end(), result.runs[i].range.location);
            ASSERT_TRUE(before.role != result.runs[i].role ||
                        before.range.end() < result.runs[i].range.location);
        }
    }
}

/// A definition by its keys, "key=value" each, and the words "if" (keyword) and "int" (type).
ColouringState stateOf(const QStringList& keys)
{
    ColouringState state = emptyState();
    state.keywords = {QStringLiteral("if"), QStringLiteral("color"), QStringLiteral("@end")};
    state.types = {QStringLiteral("int")};
    const std::map<QString, QString*> fields{
        {QStringLiteral("cmd"), &state.beginCommand},
        {QStringLiteral("/cmd"), &state.endCommand},
        {QStringLiteral("ins"), &state.beginInstruction},
        {QStringLiteral("/ins"), &state.endInstruction},
        {QStringLiteral("str"), &state.firstString},
        {QStringLiteral("str2"), &state.secondString},
        {QStringLiteral("line"), &state.firstSingleLineComment},
        {QStringLiteral("block"), &state.beginFirstMultiLineComment},
        {QStringLiteral("/block"), &state.endFirstMultiLineComment},
    };
    for (const QString& key : keys) {
        const QString name = key.section(u'=', 0, 0);
        const QString value = key.section(u'=', 1);
        if (const auto field = fields.find(name); field != fields.end())
            *field->second = value;
        else if (name == QStringLiteral("var"))
            state.beginVariable = CharacterSet(value);
        else if (name == QStringLiteral("/var"))
            state.endVariable = CharacterSet(value);
        else if (name == QStringLiteral("recolour"))
            state.shouldBeRecolered = true;
        else if (name == QStringLiteral("numbers"))
            state.colorNumbers = true;
    }
    compileStrings(state);
    return state;
}

TEST(RecolouringEngineTest, ColoursWhatEachPassIsFor)
{
    struct Case
    {
        const char* keys;
        const char* text;
        const char* colours;
    };
    const Case cases[] = {
        // Words, each from a start to an end character; "@" and "#" do both.
        {"", "if iff @end _if color:int\n", "kk.....kkkk.....kkkkk....."},
        {"", "IF int INT if", "kk.ttt.....kk"},
        // Numbers, by the digit.
        {"numbers", "12 0xFF a1 1\n", "NN.NNNN..N.N."},
        {"numbers", "x 1", "..."},
        // Commands close on their own line, and hold words only where they may be recoloured.
        {"cmd=<,/cmd=>", "<a if> if <b\n>", "CCCCCC.kk....."},
        {"cmd=<,/cmd=>,recolour", "<a if>", "CCCkkC"},
        {"cmd=<,/cmd=>", "<a <b> c> d", "CCCCCCCCC.."},
        {"cmd=<", "<a if>\n", "...kk.."},
        {"cmd=<,/cmd=>", "<a b-c=1 d>", "CCAAAACCCCC"},
        // Variables.
        {"var=$,/var= ;", "$a;$b c\n$d", "vv.vv...vv"},
        {"var=$%,line=%", "$a%%b\n", "vv###v"},
        // Strings: on one line, or over lines after a backslash; one inside the other.
        {"str=\"", "\"a\" x\"b\" \"c", "SSS........"},
        {"str=\",str2='", "'a\"b' \"c'd\"", "SSSSS.SSSSS"},
        {"str=\"", "\"a\\\"b\" ", "SSSSSS."},
        {"str=\"", "\"a\nb\"", "....."},
        {"str2='", "'a\\tb\nc'", "SSSSSSSS"},
        // Line comments.
        {"line=//", "a://b // c\nd", "......####.."},
        {"line=//,str=\"", "\"//\" // \"a\"\n", "SSSS.######."},
        {"line=#", "#a $# &#b\n# #!c #d\n#e", "#########..........##"},
        {"line=%", "\\% 5% 6\n", "....###."},
        // Block comments.
        {"block=/*,/block=*/", "a/*/b*/c", ".######."},
        {"block=/*,/block=*/", "/*a", "###"},
        {"block=/*", "a/*b*/\nc", ".#######"},
        {"block=/*,/block=*/,str=\"", "\"/*\" if */", "SSSS.kk..."},
        {"block=/*,/block=*/,line=//,str=\"", "//\"/*\"\nif*/a", "###########."},
        {"block=\"\"\",/block=\"\"\"", "\"\"\"if\"\"\"if", "########kk"},
        {
            "block=<!--,/block=-->",
            "<!--a--></Script>",
            ".................",
        },
        {"block=<!--,/block=-->", "<!--a--> <b></style>", "########............"},
        {"block=<!--,/block=-->", "<!--a-->\n</script>b", "..................."},
        // Instructions lie under words and comments.
        {"ins=<?,/ins=?>", "<? if ?>if", "IIIkkIIIkk"},
    };
    for (const Case& c : cases) {
        QString expected = QString::fromLatin1(c.colours);
        const QString text = QString::fromLatin1(c.text);
        const ColouringState state =
            stateOf(QString::fromLatin1(c.keys).split(u',', Qt::SkipEmptyParts));
        EXPECT_EQ(letters(text, state), expected.toStdString()) << c.keys << ": " << c.text;
    }
}

} // namespace
} // namespace quillory
