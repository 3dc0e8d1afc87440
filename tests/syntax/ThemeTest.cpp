#include "syntax/Theme.h"

#include "foundation/UserDefaults.h"
#include "syntax/DefinitionFolder.h"
#include "syntax/FontChoice.h"

#include <cmath>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;
using Dictionary = PropertyList::Dictionary;

PropertyList colour(double r, double g, double b, double a = 1)
{
    return Dictionary{{u"R"_s, r}, {u"G"_s, g}, {u"B"_s, b}, {u"A"_s, a}};
}

TEST(Theme, ReadsColours)
{
    struct Row
    {
        PropertyList list;
        Colour expected;
    };
    const Row rows[] = {
        {colour(255, 0, 0), {1, 0, 0, 1}},
        {colour(51, 102, 1, 0.5), {0.2F, 0.4F, 1.0F / 255.0F, 0.5F}},
        {Dictionary{{u"R"_s, 255}, {u"A"_s, true}}, {1, 0, 0, 1}},
        {Dictionary{{u"R"_s, u"255"_s}, {u"G"_s, PropertyList::Array()}}, {1, 0, 0, 0}},
        {colour(999, -5, std::nan(""), 7), {1, 0, 0, 1}},
        {false, {0, 0, 0, 0}},
        {u"red"_s, {0, 0, 0, 0}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(colorFromDictionary(row.list), row.expected);
}

TEST(Theme, GivesEachRoleTheColourOfItsKey)
{
    Dictionary list;
    for (int i = 0; i < colourRoleCount; ++i)
        list.insert(themeKey(ColourRole(i)), colour(themeKey(ColourRole(i)).size() * 10, i, 0));
    list.remove(u"type"_s);
    list.insert(u"string"_s, list[u"comment"_s]);
    const ColourRoles roles = Theme(list).roles();
    EXPECT_TRUE(roles.attributes(ColourRole::none).isEmpty());
    EXPECT_TRUE(roles.attributes(ColourRole::conts).isEmpty());
    EXPECT_EQ(roles.attributes(ColourRole::classRole).foreground,
              colorFromDictionary(list[u"class"_s]));
    EXPECT_EQ(roles.attributes(ColourRole::autocomplete), roles.attributes(ColourRole::keyword));
    EXPECT_EQ(roles.attributes(ColourRole::type).foreground, (Colour{0, 0, 0, 0}));
    EXPECT_TRUE(roles.same(ColourRole::string, ColourRole::comment));
    EXPECT_TRUE(roles.same(ColourRole::autocomplete, ColourRole::keyword));
    EXPECT_TRUE(roles.same(ColourRole::conts, ColourRole::none));
    EXPECT_FALSE(roles.same(ColourRole::command, ColourRole::comment));
    const ColourRoles absent = Theme(PropertyList()).roles();
    EXPECT_TRUE(absent.same(ColourRole::command, ColourRole::comment));
    EXPECT_FALSE(absent.same(ColourRole::command, ColourRole::none));
}

TEST(Theme, BlendsTheSelectionFromTheBackground)
{
    const PlainColours colours =
        Theme(Dictionary{{u"background"_s, colour(255, 255, 255)}, {u"text"_s, colour(0, 0, 51)}})
            .plainColours();
    EXPECT_FLOAT_EQ(colours.selection.red, 0.8678F);
    EXPECT_FLOAT_EQ(colours.selection.green, 0.9434F);
    EXPECT_FLOAT_EQ(colours.selection.blue, 0.9998F);
    EXPECT_FLOAT_EQ(colours.selection.alpha, 0.9F);
    EXPECT_EQ(colours.text, (Colour{0, 0, 0.2F, 1}));
    EXPECT_EQ(colours.insertionPoint, (Colour{0, 0, 0, 0}));
    EXPECT_FALSE(colours.highlight);
    const Theme withBand(Dictionary{{u"highlight"_s, colour(255, 0, 0, 0.25)}});
    EXPECT_EQ(withBand.plainColours().highlight, (Colour{1, 0, 0, 0.25F}));
}

TEST(ThemeList, SelectsByIndexInTheOrderOfTheFiles)
{
    const test::DefinitionFolder user;
    const test::DefinitionFolder shipped;
    user.write(u"b.plist"_s, Dictionary());
    user.write(u"a.plist"_s, Dictionary());
    user.writeBytes(u"aa.plist"_s, "no list");
    user.write(u"c/a.plist"_s, Dictionary());
    ThemeList list;
    for (const int index : {0, 1, 2}) {
        list.load(user.path(), index, shipped.path());
        ASSERT_EQ(list.arrangedObjects().size(), 3U);
        EXPECT_EQ(list.selected()->name(), QStringList({u"a"_s, u"b"_s, u"a"_s})[index]);
    }
    for (const int index : {-1, 3}) {
        list.load(user.path(), index, shipped.path(u"missing"_s));
        EXPECT_EQ(list.selected(), nullptr);
    }
    shipped.write(u"Default.plist"_s, Dictionary());
    list.load(user.path(u"missing"_s), 0, shipped.path());
    EXPECT_TRUE(list.arrangedObjects().empty());
    EXPECT_EQ(list.selected()->name(), u"Default"_s);
}

TEST(FontChoice, FollowsTheUserDefaults)
{
    struct Row
    {
        int font;
        QString custom;
        int size;
        FontChoice expected;
    };
    const Row rows[] = {
        {0, {}, 0, {u"Edita"_s, 11}},           {1, {}, 12, {u"Menlo"_s, 23}},
        {2, u"Mine"_s, 13, {u"Courier"_s, 11}}, {3, {}, -1, {u"Monaco"_s, 11}},
        {4, {}, 3, {u"Edita"_s, 14}},           {4, u"Mine"_s, 1, {u"Mine"_s, 12}},
        {5, u"Mine"_s, 0, {u"Edita"_s, 11}},    {-1, {}, 0, {u"Edita"_s, 11}},
    };
    const test::DefinitionFolder folder;
    for (const Row& row : rows) {
        UserDefaults defaults(folder.path(u"defaults.conf"_s));
        defaults.setValue(keys::font, row.font);
        defaults.setValue(keys::customFontName, row.custom);
        defaults.setValue(keys::fontSize, row.size);
        EXPECT_EQ(FontChoice::from(defaults), row.expected) << row.font << ' ' << row.size;
    }
}

} // namespace
} // namespace quillory
