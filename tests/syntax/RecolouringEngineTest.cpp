#include "syntax/RecolouringEngine.h"

#include "syntax/OpenSpans.h"
#include "syntax/RandomSyntax.h"
#include "syntax/RecolouringOracle.h"
#include "syntax/RoleLetters.h"
#include "syntax/SpanLines.h"
#include "syntax/StringLiterals.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>
#include <map>

namespace quillory {
namespace {

using test::coloursOf;
using test::compileStrings;
using test::emptyState;
using test::letters;
using test::pageStarts;
using test::painted;
using test::RandomSyntax;

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

TEST(RecolouringEngineTest, ColoursAPageAsTheWholeText)
{
    for (unsigned seed = 0; seed < 3000; ++seed) {
        RandomSyntax random(seed);
        ColouringState state = random.state();
        const bool isLong = seed % 20 == 0; // of many leaves, so without literals over lines
        if (isLong) {
            state.colourMultiLineStrings = false;
            state.secondString.clear();
            compileStrings(state);
        }
        // Delimiters that mean something else in a pattern may look at the text's end.
        if ((!state.firstString.isEmpty() && !isPlainDelimiter(state.firstString)) ||
            (!state.secondString.isEmpty() && !isPlainDelimiter(state.secondString)))
            continue;
        // Whether a comment that wraps a script hid a literal is not known before it is closed.
        if (state.endFirstMultiLineComment == QStringLiteral("-->") &&
            !state.beginSecondMultiLineComment.isEmpty())
            continue;
        const TextSnapshot text(random.text(state, isLong ? 20000 : random.below(120)));
        const std::vector<TextOffset> starts = pageStarts(text, state);
        const bool hasLongLiterals = qsizetype(starts.size()) < text.lineCount();
        if (hasLongLiterals)
            continue;
        const auto whole =
            painted(recoloured(text, text.range(), state, ColourRoles()), text.range());
        for (int i = 0; i < 4; ++i) {
            const TextOffset start = random.oneOf(starts);
            const TextRange range{start, random.below(int(text.length() - start) + 1)};
            const Recolouring page = recoloured(text, range, state, ColourRoles());
            ASSERT_EQ(letters(painted(page, page.range)),
                      letters(whole).substr(size_t(page.range.location), size_t(page.range.length)))
                << "seed " << seed << " from " << page.range.location << ": " << described(state)
                << '\n'
                << text.string().toStdString();
        }
    }
}

TEST(RecolouringEngineTest, ColoursTheSameWithEitherLineBreakAndASecondTime)
{
    for (unsigned seed = 0; seed < 500; ++seed) {
        RandomSyntax random(seed);
        const ColouringState state = random.state();
        const ColourRoles roles = random.roles();
        QString unix = random.text(state, random.below(80));
        unix.remove(QStringLiteral("\\\n"));
        QString windows = unix;
        windows.replace(u'\n', QStringLiteral("\r\n"));
        const auto coloursWithoutBreaks = [&](const QString& string) {
            const TextSnapshot text(string);
            const Recolouring first = recoloured(text, text.range(), state, roles);
            EXPECT_EQ(first.runs, recoloured(text, text.range(), state, roles).runs);
            const auto all = painted(first, text.range());
            std::vector<ColourRole> kept;
            for (qsizetype i = 0; i < string.size(); ++i) {
                if (string[i] != u'\n' && string[i] != u'\r')
                    kept.push_back(all[size_t(i)]);
            }
            return letters(kept);
        };
        ASSERT_EQ(coloursWithoutBreaks(unix), coloursWithoutBreaks(windows))
            << "seed " << seed << ": " << described(state) << '\n'
            << unix.toStdString();
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

double secondsFor(const QString& unit, int count, const ColouringState& state)
{
    const TextSnapshot text(unit.repeated(count));
    QElapsedTimer timer;
    timer.start();
    recoloured(text, text.range(), state, ColourRoles());
    return double(timer.nsecsElapsed()) / 1e9;
}

// A quadratic pass would take minutes for any of these.
TEST(RecolouringEngineTest, TakesHostileTextsInItsStride)
{
    const ColouringState html =
        stateOf({QStringLiteral("cmd=<"), QStringLiteral("/cmd=>"), QStringLiteral("ins=<?"),
                 QStringLiteral("/ins=?>"), QStringLiteral("str=\""), QStringLiteral("str2='"),
                 QStringLiteral("line=#"), QStringLiteral("block=<!--"),
                 QStringLiteral("/block=-->"), QStringLiteral("var=$"), QStringLiteral("numbers")});
    const char* const units[] = {"<",     "<\n",  ">",       "#",    "#!",      "\\\"", "\"",
                                 " \"",   " '\\", "<!--",    "-->",  "<!---->", "<?",   "<? ?>",
                                 "$",     "1",    "a",       " ",    "<a b=",   "'\n",  "\"#",
                                 "<!-- ", "_@",   "<a\">\n", "<?\n", "#! \n",   "\\'",  "-"};
    for (const char* unit : units)
        EXPECT_LT(secondsFor(QString::fromLatin1(unit), 1000000, html), 20) << unit;
}

void countLeavesWithout(const TextNodePointer& node, const QString& key, int& count)
{
    if (node->height == 0) {
        count += node->notes.answer(key) ? 0 : 1;
        return;
    }
    const auto& branch = static_cast<const TextBranch&>(*node);
    for (int i = 0; i < branch.count; ++i)
        countLeavesWithout(branch.children[size_t(i)], key, count);
}

TEST(RecolouringEngineTest, RemembersWhatIsOpenBeforeAPage)
{
    const ColouringState state = stateOf(
        {QStringLiteral("block=/*"), QStringLiteral("/block=*/"), QStringLiteral("str=\"")});
    const QString key = SpanLines::comments(state).key();
    TextSnapshot text(QStringLiteral("glob(\"a/*\"); // and more of it\n").repeated(100000));
    const auto leavesToLookAt = [&] {
        int count = 0;
        countLeavesWithout(text.root(), key, count);
        return count;
    };
    const auto isLastLineOpen = [&] {
        return openSpansBefore(text, text.lineStart(LineIndex(text.lineCount() - 1)), state)
            .firstComment.isOpen;
    };
    EXPECT_FALSE(isLastLineOpen());
    EXPECT_EQ(leavesToLookAt(), 0);
    for (const TextOffset place : {text.length(), text.length() / 2, TextOffset(0)}) {
        text = text.replacing({place, 0}, TextSnapshot(u"x /* y"));
        EXPECT_LE(leavesToLookAt(), 3) << place;
        EXPECT_EQ(isLastLineOpen(), place < text.length() - 6) << place;
        text = text.replacing({place, 6}, TextSnapshot());
        EXPECT_FALSE(isLastLineOpen()) << place;
    }
}

} // namespace
} // namespace quillory
