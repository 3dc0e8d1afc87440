#include "commands/ActionsMenu.h"

#include <QSet>
#include <gtest/gtest.h>

namespace quillory {
namespace {

using D = PropertyList::Dictionary;
using A = PropertyList::Array;

QString s(const char* text)
{
    return QString::fromUtf8(text);
}

/// One word an entry: its tag and its image, or "-" for a separator.
std::string shapeOf(const PropertyList& items)
{
    QStringList shape;
    for (const ActionEntry& entry : actionEntries(items))
        shape += entry.isSeparator         ? s("-")
                 : entry.representedObject ? QString::number(entry.tag) + u':' + entry.imageName
                                           : s("'%1'").arg(entry.title);
    return shape.join(u' ').toStdString();
}

TEST(ActionsMenu, ListsTheItemsUnderATitle)
{
    const auto kind = [](int number) { return D{{s("kind"), number}}; };
    const struct
    {
        PropertyList items;
        const char* shape;
    } cases[] = {
        {PropertyList(), "'' 'Unavailable'"},
        {A(), "'' 'Unavailable'"},
        {s("no array"), "'' 'Unavailable'"},
        {A{kind(1), kind(9), kind(6)}, "'' 1:menuCommandTemplate - 6:menuTerminalTemplate"},
        {A{kind(0), kind(2), kind(3), kind(4), kind(5), kind(7), kind(8)},
         "'' 0:menuClipboardTemplate 2:menuSnippetTemplate 3:menuTemplateTemplate "
         "4:menuURLTemplate 5:menuServerTemplate 7:menuScriptTemplate 8:menuHelpTemplate"},
        {A{kind(61), kind(42), kind(62), kind(-1)},
         "'' 61:menuTerminalTemplate 42:menuCommandTemplate 62:menuCommandTemplate "
         "-1:menuCommandTemplate"},
        {A{D{{s("kind"), 6.0}}, D{{s("kind"), s("61")}}, D{{s("kind"), true}}},
         "'' 6:menuTerminalTemplate 61:menuTerminalTemplate 1:menuCommandTemplate"},
        {A{s("no dictionary"), D{}, D{{s("kind"), A{}}}},
         "'' 0:menuClipboardTemplate 0:menuClipboardTemplate"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(shapeOf(c.items), c.shape);
}

TEST(ActionsMenu, EntriesCarryWhatTheirItemsSay)
{
    const PropertyList item = D{{s("kind"), 5},
                                {s("title"), s("Send")},
                                {s("string"), s("https://a.org")},
                                {s("onlyValidForSelection"), true},
                                {s("sendAsData"), s("YES")},
                                {s("shouldRun"), 7}};
    const ActionEntry entry = actionEntries(A{item})[1];
    EXPECT_EQ(entry.title, s("   Send"));
    EXPECT_EQ(entry.shownTitle(), s("Send"));
    EXPECT_EQ(entry.toolTip, s("https://a.org"));
    EXPECT_EQ(entry.indentationLevel, 1);
    EXPECT_FALSE(entry.state);
    EXPECT_EQ(entry.keyEquivalentModifierMask, 0U);
    const CommandItem& object = *entry.representedObject;
    EXPECT_TRUE(object.onlyValidForSelection && object.sendAsData && object.shouldRun);
    EXPECT_FALSE(object.outputCanReplaceDocument || object.shouldOpenPDFPreview);
    EXPECT_EQ(actionEntries(A{D{{s("title"), 3}}})[1].title, s("   (null)"));
}

TEST(ActionsMenu, KeysComeWithTheirModifiers)
{
    const struct
    {
        D keys;
        const char* key;
        quint32 mask;
    } cases[] = {
        {{{s("keyString"), s("r")}}, "r", 0x100000},
        {{{s("keyString"), s("r")}, {s("commandKeyAddition"), s("shift")}}, "r", 0x120000},
        {{{s("keyString"), s("r")}, {s("commandKeyAddition"), s("option")}}, "r", 0x180000},
        {{{s("keyString"), s("r")}, {s("commandKeyAddition"), s("control")}}, "r", 0x140000},
        {{{s("keyString"), s("r")}, {s("commandKeyAddition"), s("Option")}}, "r", 0x100000},
        {{{s("keyString"), s("r")}, {s("commandKeyAddition"), true}}, "r", 0x100000},
        {{{s("commandKeyAddition"), s("shift")}}, "", 0},
        {{{s("keyString"), 5}}, "", 0},
    };
    for (const auto& c : cases) {
        const ActionEntry entry = actionEntries(A{c.keys})[1];
        EXPECT_EQ(entry.keyEquivalent, s(c.key));
        EXPECT_EQ(entry.keyEquivalentModifierMask, c.mask);
    }
}

TEST(CommandItem, FingerprintTellsItemsApart)
{
    QSet<QString> seen;
    const D dictionaries[] = {
        {},
        {{s("title"), s("a")}},
        {{s("string"), s("a")}},
        {{s("title"), s("")}},
        {{s("title"), s("a")}, {s("string"), s("a")}},
        {{s("title"), s("aa")}},
        {{s("kind"), 6}},
        {{s("shouldRun"), true}},
        {{s("sendAsData"), true}},
    };
    for (const D& dictionary : dictionaries) {
        const QString print = CommandItem::from(dictionary).fingerprint();
        EXPECT_EQ(print, CommandItem::from(D(dictionary)).fingerprint());
        EXPECT_FALSE(seen.contains(print));
        seen.insert(print);
    }
}

} // namespace
} // namespace quillory
