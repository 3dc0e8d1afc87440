#include "syntax/DefinitionList.h"

#include "syntax/DefinitionFolder.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;
using Dictionary = PropertyList::Dictionary;
using Array = PropertyList::Array;

PropertyList definition(const QString& title, const Array& extensions = {}, bool isDefault = false)
{
    return Dictionary{
        {u"title"_s, title}, {u"extensions"_s, extensions}, {u"isDefault"_s, isDefault}};
}

QStringList titles(const DefinitionList& list)
{
    QStringList result;
    for (const Definition& found : list.arrangedObjects())
        result.append(found.title());
    return result;
}

QStringList lines(const std::vector<DefinitionFault>& faults)
{
    QStringList result;
    for (const DefinitionFault& fault : faults)
        result.append(fault.definition + u'/' + fault.key);
    return result;
}

struct DefinitionListTest : ::testing::Test
{
    test::DefinitionFolder user;
    test::DefinitionFolder shipped;
    DefinitionList list;

    void load() { list.load(user.path(), shipped.path()); }
};

TEST_F(DefinitionListTest, ReadsEveryListBelowTheFolderAndSortsByTitle)
{
    user.write(u"z.plist"_s, definition(u"Alpha"_s));
    user.write(u"a.plist"_s, definition(u"Text"_s));
    user.write(u"deep/er/b.plist"_s, definition(u"alpha"_s));
    user.write(u"c.PLIST"_s, definition(u"capitals"_s));
    user.write(u"d.txt"_s, definition(u"no list"_s));
    user.writeBytes(u"old.plist"_s, "{ title = Beta; extensions = (b); }");
    load();
    EXPECT_EQ(titles(list), (QStringList{u"Alpha"_s, u"Beta"_s, u"Text"_s, u"alpha"_s}));
    EXPECT_TRUE(list.faults().empty());
    EXPECT_EQ(list.selected(), nullptr);
    list.setSelectionIndex(list.indexForExtension(u"b"_s));
    EXPECT_EQ(list.selected()->title(), u"Beta"_s);
    list.setSelectionIndex(4);
    EXPECT_EQ(list.selectionIndex(), -1);
    user.write(u"y.plist"_s, definition(u"new"_s));
    load(); // what the user changed counts at once
    EXPECT_EQ(list.arrangedObjects().size(), 5U);
    EXPECT_EQ(list.selected(), nullptr);
}

TEST_F(DefinitionListTest, ChoosesByExtensionDefaultAndTitle)
{
    user.write(u"1.plist"_s, definition(u"Second"_s, {u"x"_s, u"CAPS"_s}, true));
    user.write(u"2.plist"_s, definition(u"First"_s, {u"x"_s}));
    user.write(u"3.plist"_s, definition(u"Third"_s, {u"x"_s}, true));
    load();
    EXPECT_EQ(list.indexForExtension(u"x"_s), 0);
    EXPECT_EQ(list.lastIndexForExtension(u"x"_s), 3);
    EXPECT_EQ(list.indexForExtension(u"caps"_s), -1);
    EXPECT_EQ(list.lastIndexForExtension(u"caps"_s), -1);
    EXPECT_EQ(list.indexOfDefault(), 1);
    EXPECT_EQ(list.indexForTitle(u"Third"), 3);
    EXPECT_EQ(list.indexForTitle(u"third"), -1);
}

TEST_F(DefinitionListTest, AlwaysHasPlainText)
{
    load();
    EXPECT_EQ(titles(list), QStringList{u"Text"_s});
    EXPECT_TRUE(list.arrangedObjects()[0].path().isEmpty());

    shipped.write(u"Text.plist"_s, definition(u"Other"_s));
    load();
    EXPECT_EQ(titles(list), QStringList{u"Text"_s});

    shipped.write(u"Text.plist"_s, definition(u"Text"_s, {u"txt"_s}));
    user.write(u"a.plist"_s, definition(u"Zed"_s));
    load();
    EXPECT_EQ(titles(list), (QStringList{u"Text"_s, u"Zed"_s}));
    EXPECT_EQ(list.indexForExtension(u"txt"_s), 0);

    list.load(user.path(u"missing"_s), u"missing"_s);
    EXPECT_EQ(titles(list), QStringList{u"Text"_s});
}

TEST_F(DefinitionListTest, SkipsWhatItCannotUseAndSaysSo)
{
    user.writeBytes(u"a.plist"_s, "\x01\x02 no list");
    user.writeBytes(u"b.plist"_s, "");
    user.write(u"c.plist"_s, Array{PropertyList(u"array"_s)});
    QDir().mkpath(user.path(u"folder.plist"_s));
    QFile::link(user.path(u"nowhere"_s), user.path(u"d.plist"_s));
    QFile::link(user.path(), user.path(u"loop"_s));
    user.write(u"no title.plist"_s, Dictionary{{u"extensions"_s, Array{u"n"_s}}});
    user.write(
        u"odd.plist"_s,
        Dictionary{{u"title"_s, 7}, {u"extensions"_s, u"x"_s}, {u"isDefault"_s, Array{true}}});
    user.write(u"some.plist"_s,
               Dictionary{{u"title"_s, u"Some"_s}, {u"extensions"_s, Array{1, u"s"_s}}});
    load();
    EXPECT_EQ(titles(list), (QStringList{u"Some"_s, u"Text"_s, u"no title"_s, u"odd"_s}));
    EXPECT_EQ(list.indexForExtension(u"n"_s), 2);
    EXPECT_EQ(list.indexForExtension(u"s"_s), 0);
    EXPECT_EQ(list.indexOfDefault(), -1);
    EXPECT_EQ(lines(list.faults()),
              (QStringList{u"a.plist/"_s, u"b.plist/"_s, u"c.plist/"_s, u"no title/title"_s,
                           u"odd/title"_s, u"odd/extensions"_s, u"odd/isDefault"_s,
                           u"Some/extensions"_s}));
    for (const DefinitionFault& fault : list.faults()) {
        EXPECT_TRUE(fault.description().contains(fault.definition));
        EXPECT_TRUE(fault.description().contains(fault.key));
        EXPECT_FALSE(fault.description().contains(u'\n'));
        EXPECT_FALSE(fault.problem.isEmpty());
    }
}

TEST_F(DefinitionListTest, KnownHeadsSpareReadingAndChangedFilesAreReadAnew)
{
    QTemporaryDir caches;
    const QString heads = caches.filePath(u"deep/Definitions.plist"_s);
    const auto reload = [&] { list.load(user.path(), shipped.path(), heads); };
    const auto keywords = [&] {
        return list.arrangedObjects().front().words(QLatin1StringView("keywords"));
    };
    const auto write = [&](const QString& title, const QString& word) {
        user.write(u"a.plist"_s, Dictionary{{u"title"_s, title},
                                            {u"extensions"_s, Array{u"a"_s}},
                                            {u"keywords"_s, Array{word}}});
    };
    write(u"Alpha"_s, u"one"_s);
    user.write(u"b.plist"_s, Dictionary{{u"title"_s, qint64(5)}});
    reload();
    const QStringList faults = lines(list.faults());
    ASSERT_FALSE(faults.isEmpty());
    reload();
    EXPECT_EQ(titles(list), (QStringList{u"Alpha"_s, u"Text"_s, u"b"_s}));
    EXPECT_EQ(lines(list.faults()), faults);
    EXPECT_EQ(list.indexForExtension(u"a"_s), 0);
    EXPECT_EQ(keywords(), QStringList{u"one"_s});
    const QString copy = caches.filePath(u"deep/Definitions/a.plist"_s);
    ASSERT_TRUE(QFile::exists(copy)) << "made when the whole was asked for";
    reload();
    EXPECT_EQ(keywords(), QStringList{u"one"_s});

    // The same length.
    QTest::qWait(5);
    write(u"Alphb"_s, u"two"_s);
    reload();
    EXPECT_EQ(titles(list).front(), u"Alphb"_s);
    EXPECT_EQ(keywords(), QStringList{u"two"_s});

    reload();
    EXPECT_EQ(keywords(), QStringList{u"two"_s}) << "the copy follows";

    for (const QString& path : {copy, heads}) {
        QFile broken(path);
        ASSERT_TRUE(broken.open(QFile::WriteOnly));
        broken.write("no list");
        broken.close();
        reload();
        EXPECT_EQ(titles(list).front(), u"Alphb"_s);
        EXPECT_EQ(keywords(), QStringList{u"two"_s});
    }
}

} // namespace
} // namespace quillory
