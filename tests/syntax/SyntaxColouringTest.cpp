#include "syntax/SyntaxColouring.h"

#include "foundation/ApplicationFolders.h"
#include "foundation/Background.h"
#include "foundation/UserDefaults.h"
#include "syntax/DefinitionFolder.h"

#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;
using Dictionary = PropertyList::Dictionary;
using Array = PropertyList::Array;

PropertyList shade(int red)
{
    return Dictionary{{u"R"_s, red}, {u"A"_s, 1}};
}

/// A text, its overlay, and the definitions "Lab" (if, //, "…", lab), "Other" (if, lab) and "Text"
/// with the theme "one", in which keywords are of red 1/255, strings 2/255 and comments 3/255.
struct SyntaxColouringTest : ::testing::Test
{
    test::DefinitionFolder user;
    ApplicationFolders folders;
    UserDefaults defaults{user.path(u"defaults.conf"_s)};
    TextStorage text;
    Overlay overlay;
    std::unique_ptr<SyntaxColouring> colouring;
    std::optional<TextRange> visible; ///< all of the text unless set

    void SetUp() override
    {
        folders.applicationSupport = user.path();
        folders.resources = user.path(u"shipped"_s);
        user.write(u"Definitions/lab.plist"_s,
                   Dictionary{{u"title"_s, u"Lab"_s},
                              {u"extensions"_s, Array{u"lab"_s, u"labfile"_s}},
                              {u"keywords"_s, Array{u"if"_s}},
                              {u"firstString"_s, u"\""_s},
                              {u"firstSingleLineComment"_s, u"//"_s}});
        user.write(u"Definitions/other.plist"_s,
                   Dictionary{{u"title"_s, u"Other"_s}, {u"extensions"_s, Array{u"lab"_s}}});
        user.write(u"Definitions/text.plist"_s, Dictionary{{u"title"_s, u"Text"_s},
                                                           {u"extensions"_s, Array{u"txt"_s}},
                                                           {u"keywords"_s, Array{u"if"_s}}});
        user.write(u"Themes/one.plist"_s, Dictionary{{u"keyword"_s, shade(1)},
                                                     {u"string"_s, shade(2)},
                                                     {u"comment"_s, shade(3)}});
        user.write(u"Themes/two.plist"_s, Dictionary{{u"keyword"_s, shade(7)}});
        QObject::connect(&text, &TextStorage::edited, &overlay, &Overlay::textChanged);
        make();
    }
    void make()
    {
        colouring = std::make_unique<SyntaxColouring>(text, overlay, folders, defaults);
        colouring->setVisibleRangeSource(
            [this] { return visible.value_or(text.snapshot().range()); });
    }
    void setText(const QString& string)
    {
        text.replaceCharactersInRange(text.snapshot().range(), string);
    }
    /// The text of every coloured run with its shade.
    QStringList shown() const
    {
        QStringList result;
        for (const OverlayRun& run : overlay.runs(text.snapshot().range()))
            result.append(text.snapshot().string(run.range) + u'=' +
                          QString::number(qRound(run.attributes.foreground->red * 255)));
        return result;
    }
    QString title() const { return colouring->definition()->title(); }
};

TEST_F(SyntaxColouringTest, ChoosesTheDefinitionForAFile)
{
    struct Row
    {
        QString path;
        QString title;
    };
    const Row rows[] = {
        {u"/a/b.lab"_s, u"Lab"_s}, {u"b.LAB"_s, u"Lab"_s},     {u"b.lab.txt"_s, u"Text"_s},
        {u"b.other"_s, u"Text"_s}, {u"/x.lab/b"_s, u"Text"_s}, {u"LabFile"_s, u"Lab"_s},
        {u".lab"_s, u"Lab"_s},     {QString(), u"Text"_s},
    };
    for (const Row& row : rows) {
        QSignalSpy selected(colouring.get(), &SyntaxColouring::definitionSelected);
        colouring->loadDefinitions(row.path);
        EXPECT_EQ(title(), row.title) << row.path.toStdString();
        EXPECT_EQ(selected.count(), 1);
    }
    for (const QString& wanted : {u"Other"_s, u"Lab"_s}) {
        colouring->setDefinitionWithTitle(wanted);
        EXPECT_EQ(title(), wanted);
    }
    for (const QString& wanted : {u"lab"_s, u""_s, QString()}) {
        colouring->setDefinitionWithTitle(wanted);
        EXPECT_EQ(title(), u"Text"_s);
    }
    colouring->followExtension(u"new.lab"_s);
    EXPECT_EQ(title(), u"Other"_s); // the last that lists it
    colouring->followExtension(u"new.unknown"_s);
    EXPECT_EQ(title(), u"Other"_s);

    user.write(u"Definitions/new.plist"_s,
               Dictionary{{u"title"_s, u"New"_s}, {u"isDefault"_s, true}});
    colouring->loadDefinitions(QString());
    EXPECT_EQ(title(), u"New"_s);
}

TEST_F(SyntaxColouringTest, WhatIsPreparedIsWhatIsLoaded)
{
    setText(u"if \"if\" // if"_s);
    user.write(u"Definitions/wrong.plist"_s, Dictionary{{u"title"_s, u"Wrong"_s},
                                                        {u"extensions"_s, Array{u"wrong"_s}},
                                                        {u"keywords"_s, u"if"_s}});
    for (const QString& path : {u"a.lab"_s, u"a.txt"_s, u"a.none"_s, u"a.wrong"_s}) {
        make();
        colouring->loadDefinitions(path);
        const QString expectedTitle = title();
        const QStringList expected = shown();
        const std::vector<DefinitionFault> faults = colouring->faults();

        make();
        overlay.removeForeground(text.snapshot().range());
        const QSignalSpy selected(colouring.get(), &SyntaxColouring::definitionSelected);
        colouring->prepareDefinitions(path);
        colouring->loadDefinitions(path);
        EXPECT_EQ(title(), expectedTitle);
        EXPECT_EQ(shown(), expected);
        EXPECT_EQ(colouring->faults(), faults);
        EXPECT_EQ(selected.count(), 1);

        // For another file, and once more, everything is read anew.
        colouring->prepareDefinitions(path);
        colouring->loadDefinitions(u"b.lab"_s);
        EXPECT_EQ(title(), u"Lab"_s);
        colouring->loadDefinitions(path);
        EXPECT_EQ(title(), expectedTitle);
    }
    // Nor does it outlive another choice.
    colouring->prepareDefinitions(u"a.lab"_s);
    colouring->setDefinitionWithTitle(u"Text"_s);
    user.write(u"Definitions/a.plist"_s,
               Dictionary{{u"title"_s, u"A"_s}, {u"extensions"_s, Array{u"lab"_s}}});
    colouring->loadDefinitions(u"a.lab"_s);
    EXPECT_EQ(title(), u"A"_s);
    colouring->prepareDefinitions(u"a.lab"_s); // and is never asked for
}

TEST_F(SyntaxColouringTest, ColoursByTheDefinitionAndTheTheme)
{
    setText(u"if \"if\" x // if"_s);
    const QStringList inLab{u"if=1"_s, u"\"if\"=2"_s, u"// if=3"_s};
    colouring->loadDefinitions(u"a.lab"_s);
    EXPECT_EQ(shown(), inLab);
    EXPECT_FALSE(colouring->denyColoring());

    colouring->setDefinitionWithTitle(u"Other"_s); // keeps the words, not the delimiters
    EXPECT_EQ(shown(), (QStringList{u"if=1"_s, u"if=1"_s, u"if=1"_s}));
    colouring->setDefinitionWithTitle(u"Text"_s);
    EXPECT_EQ(shown(), QStringList());
    colouring->pageRecolour();
    colouring->recolourRange(text.snapshot().range());
    EXPECT_EQ(shown(), QStringList());

    // Selecting alone colours nothing; applying does.
    colouring->selectDefinition(colouring->definitions().indexForTitle(u"Lab"));
    EXPECT_EQ(shown(), QStringList());
    colouring->applyDefinition();
    EXPECT_EQ(shown(), inLab);
    QSignalSpy colours(colouring.get(), &SyntaxColouring::plainColoursChanged);
    defaults.setValue(keys::selectedTheme, 1);
    colouring->prepareColoring();
    colouring->pageRecolour();
    EXPECT_EQ(shown(), (QStringList{u"if=7"_s, u"\"if\"=0"_s, u"// if=0"_s}));
    EXPECT_EQ(colours.count(), 0); // neither theme has plain colours

    colouring->selectDefinition(colouring->definitions().indexOfPlainText());
    colouring->applyDefinition();
    EXPECT_EQ(shown(), QStringList());
}

TEST_F(SyntaxColouringTest, ColoursWhatIsSeenAndNoMore)
{
    setText(u"if\nx if\nif\n"_s);
    visible = TextRange();
    colouring->loadDefinitions(u"a.lab"_s);
    EXPECT_EQ(shown(), QStringList());
    visible = TextRange{4, 1};
    colouring->pageRecolour();
    EXPECT_EQ(overlay.runs(text.snapshot().range()).size(), 1U);
    EXPECT_EQ(overlay.runs(text.snapshot().range())[0].range, (TextRange{5, 2}));
    visible = TextRange{0, 1000};
    colouring->setDenyColoring(true);
    colouring->pageRecolour();
    EXPECT_EQ(overlay.runCount(), 1U);
    colouring->setDenyColoring(false);
    colouring->pageRecolour();
    EXPECT_EQ(overlay.runCount(), 3U);
    make();
    colouring->setVisibleRangeSource(nullptr);
    colouring->loadDefinitions(u"a.lab"_s);
    EXPECT_EQ(overlay.runCount(), 0U);
}

TEST_F(SyntaxColouringTest, FollowsTheTextAndTouchesOnlyWhatChanges)
{
    setText(u"if a\nif b\nif c\n"_s);
    colouring->loadDefinitions(u"a.lab"_s);
    QSignalSpy changed(&overlay, &Overlay::changed);
    colouring->pageRecolour();
    EXPECT_EQ(changed.count(), 0);
    text.replaceCharactersInRange({5, 0}, u"//");
    QTRY_COMPARE_WITH_TIMEOUT(changed.count(), 1, 2000);
    const auto told = changed[0][0].value<TextRange>();
    EXPECT_GE(told.location, 5);
    EXPECT_LE(told.end(), 11);
    EXPECT_EQ(shown(), (QStringList{u"if=1"_s, u"//if b=3"_s, u"if=1"_s}));

    overlay.setBackground({0, 14}, {0, 1, 0, 1}); // a band behind the words stays
    text.replaceCharactersInRange({5, 2}, u"");
    colouring->pageRecolour();
    EXPECT_TRUE(overlay.attributesAt(0).background && overlay.attributesAt(8).background);
    colouring->removeAllColours();
    EXPECT_EQ(overlay.runCount(), 1U);
    colouring->setColour(ColourRole::comment, {1, 2}); // in the place of everything
    EXPECT_FALSE(overlay.attributesAt(1).background);
    colouring->removeColoursFromRange({1, 1});
    EXPECT_TRUE(overlay.attributesAt(1).isEmpty());
    EXPECT_FALSE(overlay.attributesAt(2).isEmpty());
}

TEST_F(SyntaxColouringTest, LongLinesAreColouredOnAnotherThread)
{
    const QString words = u"if no \"x\" "_s;
    for (const qsizetype repeats : {5'000, 900'000}) { // whole, and in stretches
        const TextOffset length = repeats * words.size();
        make();
        visible = TextRange{length / 2, 500};
        setText(words.repeated(repeats));
        QCoreApplication::processEvents();
        colouring->loadDefinitions(u"a.lab"_s);
        EXPECT_EQ(overlay.runCount(), 0U);
        const auto isColoured = [&](TextOffset at) { return !overlay.attributesAt(at).isEmpty(); };
        QTRY_VERIFY_WITH_TIMEOUT(isColoured(length / 2), 20'000);
        EXPECT_TRUE(isColoured(length / 2 + 490));
        EXPECT_FALSE(isColoured(length / 2 + 2));
        EXPECT_LT(overlay.runCount(), 20'000U);
        // Elsewhere in what was made nothing is waited for.
        visible->location += 40 * words.size();
        colouring->pageRecolour();
        EXPECT_TRUE(isColoured(visible->location));
        // An edit makes all of it anew.
        text.replaceCharactersInRange({visible->location, 2}, u"ix");
        QTRY_VERIFY_WITH_TIMEOUT(!isColoured(visible->location), 20'000);
        // What is made when the page is another already is not shown.
        text.replaceCharactersInRange({visible->location, 2}, u"if");
        colouring->pageRecolour();
        colouring->setDefinitionWithTitle(u"Text"_s);
        backgroundPool().waitForDone();
        QCoreApplication::processEvents();
        EXPECT_EQ(overlay.runCount(), 0U);
    }
}

TEST_F(SyntaxColouringTest, FarDownInATextOnlyTheFirstPageWaits)
{
    const QString line = u"if no\n"_s;
    const TextOffset length = 3 * PageColouring::quickLook / line.size() * line.size();
    make();
    visible = TextRange{length - 60, 60};
    setText(line.repeated(length / line.size()));
    QCoreApplication::processEvents();
    const auto isColoured = [&](TextOffset at) { return !overlay.attributesAt(at).isEmpty(); };
    colouring->loadDefinitions(u"a.lab"_s);
    EXPECT_FALSE(isColoured(length - 6));
    QTRY_VERIFY_WITH_TIMEOUT(isColoured(length - 6), 20'000);
    visible->location = length / 2;
    colouring->pageRecolour();
    EXPECT_TRUE(isColoured(length / 2 / line.size() * line.size() + line.size()));
    // New text of that length is another one.
    visible->location = length - 60;
    setText(line.repeated(length / line.size()));
    colouring->pageRecolour();
    EXPECT_FALSE(isColoured(length - 6));
    QTRY_VERIFY_WITH_TIMEOUT(isColoured(length - 6), 20'000);
}

TEST_F(SyntaxColouringTest, TheLinesBelowAVeryLongOneAreColouredAtOnce)
{
    const QString longLine = QString(u"if x "_s).repeated(100'000);
    const TextOffset below = longLine.size() + 1;
    for (const QString& end : {u""_s, u"\n"_s, u"\nif"_s}) {
        make();
        setText(longLine + u"\nif a\nif b" + end);
        visible.reset();
        colouring->loadDefinitions(u"a.lab"_s);
        EXPECT_FALSE(overlay.attributesAt(below).isEmpty());
        EXPECT_FALSE(overlay.attributesAt(below + 5).isEmpty());
        EXPECT_TRUE(overlay.attributesAt(below + 3).isEmpty());
        QTRY_VERIFY_WITH_TIMEOUT(!overlay.attributesAt(0).isEmpty(), 20'000);
        EXPECT_FALSE(overlay.attributesAt(below).isEmpty());
    }
    setText(longLine); // alone
    QTRY_VERIFY_WITH_TIMEOUT(!overlay.attributesAt(0).isEmpty(), 20'000);
}

TEST_F(SyntaxColouringTest, KeepsNoMoreRunsThanItNeeds)
{
    setText(QString(u"if\n"_s).repeated(400'000));
    visible = TextRange{0, 20'000};
    colouring->loadDefinitions(u"a.lab"_s);
    for (; visible->location < text.length(); visible->location += visible->length)
        colouring->pageRecolour();
    EXPECT_LT(overlay.runCount(), PageColouring::maximumRuns + 10'000);
    EXPECT_FALSE(overlay.attributesAt(text.length() - 3).isEmpty());
}

TEST_F(SyntaxColouringTest, SaysWhatIsWrongOnce)
{
    user.writeBytes(u"Definitions/broken.plist"_s, "no list");
    user.write(u"Definitions/wrong.plist"_s, Dictionary{{u"title"_s, u"Wrong"_s},
                                                        {u"extensions"_s, Array{u"wrong"_s}},
                                                        {u"keywords"_s, 7},
                                                        {u"firstString"_s, u"("_s},
                                                        {u"functionDefinition"_s, u"["_s}});
    QSignalSpy told(colouring.get(), &SyntaxColouring::faultsChanged);
    const auto said = [&] {
        QStringList keys;
        for (const DefinitionFault& fault : colouring->faults())
            keys.append(fault.definition + u'/' + fault.key);
        return keys;
    };
    setText(u"\"(\" if"_s);
    colouring->loadDefinitions(u"a.lab"_s);
    EXPECT_EQ(said(), QStringList{u"broken.plist/"_s});
    EXPECT_EQ(told.count(), 1);
    colouring->applyDefinition();
    EXPECT_EQ(told.count(), 1);
    colouring->loadDefinitions(u"a.wrong"_s);
    EXPECT_EQ(said(), (QStringList{u"broken.plist/"_s, u"Wrong/keywords"_s, u"Wrong/firstString"_s,
                                   u"Wrong/functionDefinition"_s}));
    EXPECT_EQ(told.count(), 2);
    EXPECT_EQ(shown(), QStringList{u"if=1"_s}); // of the definition before
    QFile::remove(user.path(u"Definitions/broken.plist"_s));
    colouring->loadDefinitions(u"a.lab"_s);
    EXPECT_EQ(told.count(), 3);
    EXPECT_TRUE(said().isEmpty());
}

TEST_F(SyntaxColouringTest, SaysOnceThatAPatternWasGivenUp)
{
    user.write(u"Definitions/slow.plist"_s, Dictionary{{u"title"_s, u"Slow"_s},
                                                       {u"extensions"_s, Array{u"slow"_s}},
                                                       {u"keywords"_s, Array{u"if"_s}},
                                                       {u"firstString"_s, u"(?:a|aa)+b"_s}});
    setText(u"if "_s + QString(60, u'a'));
    QSignalSpy told(colouring.get(), &SyntaxColouring::faultsChanged);
    colouring->loadDefinitions(u"a.slow"_s);
    for (int i = 0; i < 3; ++i)
        colouring->pageRecolour();
    EXPECT_EQ(told.count(), 1);
    ASSERT_EQ(colouring->faults().size(), 1U);
    EXPECT_EQ(colouring->faults()[0].definition, u"Slow"_s);
    EXPECT_EQ(colouring->faults()[0].key, u"firstString"_s);
    EXPECT_EQ(shown(), QStringList{u"if=1"_s});
}

TEST_F(SyntaxColouringTest, WithoutAnyThemeNothingIsColoured)
{
    QDir(user.path(u"Themes"_s)).removeRecursively();
    setText(u"if"_s);
    colouring->loadDefinitions(u"a.lab"_s);
    EXPECT_FALSE(colouring->plainColours());
    EXPECT_EQ(shown(), QStringList());
    user.write(u"shipped/Themes/a.plist"_s, Dictionary{{u"keyword"_s, shade(9)}});
    colouring->prepareColoring();
    colouring->pageRecolour();
    EXPECT_TRUE(colouring->plainColours());
    EXPECT_EQ(shown(), QStringList{u"if=9"_s});
}

} // namespace
} // namespace quillory
