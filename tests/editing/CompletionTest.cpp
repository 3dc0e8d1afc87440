#include "editing/Completion.h"

#include "MarkedEditor.h"
#include "editing/PartialWord.h"
#include "editing/WordProposals.h"
#include "foundation/UserDefaults.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;

struct Completing
{
    QTemporaryDir folder;
    UserDefaults defaults{folder.filePath(u"defaults.conf"_s)};
    MarkedEditor editor;
    QStringList words;
    Completion completion{editor.view, defaults, words};

    explicit Completing(const QString& marked, const QStringList& ofLanguage = {})
        : editor(marked), words(ofLanguage)
    {}
    QString partial() const
    {
        return editor.storage.snapshot().string(completion.rangeForUserCompletion());
    }
    QStringList offered() const
    {
        return completion.completionsForPartialWordRange(completion.rangeForUserCompletion());
    }
};

TEST(PartialWord, reachesAsFarLeftAsTheWordsOfTheLanguageDo)
{
    const QStringList words{u"::before"_s,  u":hover"_s,     u"@media"_s,
                            u"List.of()"_s, u"a href="_s,    u"amp;"_s,
                            u"before"_s,    u"border-top"_s, u"#import <A.h>"_s};
    const std::pair<const char*, const char*> cases[]{
        {"bef|", "bef"},
        {"x bef|", "bef"},
        {"a::BEF|", "::BEF"},
        {"a:ho|", ":ho"},
        {"@me|", "@me"},
        {"@mex|", "mex"},
        {"@|", "@"},
        {"#imp|", "#imp"},
        {"x=List.o|", "List.o"},
        {"x=Set.o|", "o"},
        {"border-t|", "border-t"},
        {"x-border-t|", "border-t"},
        {"xborder-t|", "t"},
        {"<a|", "a"},
        {"<a h|", "h"},
        {"&am|", "am"},
        {"\\be|", "be"},
        {"+|", ""},
        {"bef |", ""},
        {"|bef", ""},
        {"na\xC3\xAFve_2|", "na\xC3\xAFve_2"},
        {"-\xF0\x9D\x94\xB8x|", "\xF0\x9D\x94\xB8x"}, // a letter beyond the basic plane
        {"[bef]", ""},
        {"bef\xE2\x80\xA8|", ""},
    };
    for (const auto& [marked, partial] : cases)
        EXPECT_EQ(Completing(QString::fromUtf8(marked), words).partial().toStdString(), partial)
            << marked;
    EXPECT_EQ(Completing(QString(200, u'+') + u"bef|"_s, words).partial(), u"bef"_s);
    EXPECT_EQ(Completing(QString(200, u'x') + u";border-t|"_s, words).partial(), u"border-t"_s);
    EXPECT_EQ(Completing(QString(200, u'x') + u'|', words).partial(), QString());
}

TEST(Completion, offersTheWordsOfTheLanguageInTheirOrder)
{
    const QStringList words{u"String"_s, u"instr"_s, u"strcpy"_s};
    EXPECT_EQ(Completing(u"str|"_s, words).offered(), QStringList({u"String"_s, u"strcpy"_s}));
    EXPECT_EQ(Completing(u"strong str|"_s, {u"STRING"_s}).offered(), QStringList(u"STRING"_s));
    EXPECT_EQ(Completing(u"x|"_s, words).offered(), QStringList());
    EXPECT_EQ(Completing(u"str |"_s, words).offered(), QStringList());
    Completing refused(u"str|"_s, words);
    refused.editor.view.setEditable(false);
    EXPECT_EQ(refused.offered(), QStringList());
}

TEST(Completion, offersTheNamesInTheTextOnlyWhereTheLanguageHasNone)
{
    Completing c(u"strong str|"_s);
    EXPECT_EQ(c.offered(), QStringList());
    c.defaults.setValue(keys::showCompletions, true);
    EXPECT_EQ(c.offered(), QStringList(u"strong"_s));
    c.words = QStringList{u"other"_s};
    EXPECT_EQ(c.offered(), QStringList());
}

TEST(WordProposals, areTheNearestNamesFirst)
{
    const std::pair<const char*, const char*> cases[]{
        {"wall one water two wa| way well want", "way water want wall"},
        {"wap wa| wax", "wap wax"},
        {"Water WATER wa| Water", "WATER Water"},
        {"wa_1 wa2 2wa wa| wa", "wa2 wa_1"},
        {"wax wa|x wa", "wax"},
        {"way.w|", "way"},
        {"w\xC3\xA4hlen w\xC3\xA4|", "w\xC3\xA4hlen"},
        {"\xF0\x9D\x94\xB8\xF0\x9D\x94\xB9 \xF0\x9D\x94\xB8|", "\xF0\x9D\x94\xB8\xF0\x9D\x94\xB9"},
    };
    for (const auto& [marked, names] : cases) {
        Completing c(QString::fromUtf8(marked));
        c.defaults.setValue(keys::showCompletions, true);
        EXPECT_EQ(c.offered().join(u' ').toStdString(), names) << marked;
    }
}

TEST(WordProposals, lookAtABoundedStretch)
{
    const QString gap(1000, u' ');
    const QString string = u"wa1 "_s + gap + u"wa2 wa3 wa wa4 wa5"_s + gap + u"wa6"_s;
    const TextSnapshot text(string);
    const TextRange typed{string.indexOf(u"wa "_s), 2};
    EXPECT_EQ(wordProposals(text, typed, 100),
              QStringList({u"wa3"_s, u"wa4"_s, u"wa2"_s, u"wa5"_s}));
    EXPECT_EQ(wordProposals(text, typed, 5000, 2), QStringList({u"wa3"_s, u"wa4"_s}));
    EXPECT_EQ(wordProposals(text, typed, 5000).size(), 6);
}

TEST(Completion, putsTheWordBeforeEveryCaretThatHasTheSame)
{
    struct Case
    {
        const char* marked;
        const char* after;
    };
    const Case cases[]{
        {"str|", "String|"},
        {"(str|)", "(String|)"},
        {"str| x\nstr|", "String| x\nString|"},
        {"str| Str| [str] str|", "String| Str| [str] String|"},
        {"s| str|", "s| String|"},
    };
    for (const Case& c : cases) {
        Completing completing(QString::fromUtf8(c.marked), {u"String"_s});
        const std::string before = completing.editor.marked();
        completing.completion.insertCompletion(u"String"_s,
                                               completing.completion.rangeForUserCompletion());
        EXPECT_EQ(completing.editor.marked(), c.after) << c.marked;
        EXPECT_EQ(completing.editor.undo.undoActionName(), u"Completion"_s);
        completing.editor.view.undo();
        EXPECT_EQ(completing.editor.marked(), before);
        EXPECT_FALSE(completing.editor.undo.canUndo());
    }
}

} // namespace
} // namespace quillory
