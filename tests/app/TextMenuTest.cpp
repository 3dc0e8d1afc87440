#include "AppFixture.h"

#include "app/MenuTable.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QAction>
#include <QTest>
#include <map>

namespace quillory::test {
namespace {

using TextMenuTest = AppFixture;

TEST_F(TextMenuTest, keysRewriteTheSelectedLines)
{
    struct Case
    {
        const char* name;
        QByteArray text;
        const char* key;
        const char* after;
    };
    const Case cases[] = {
        {"a.js", "a\nb\n", "Ctrl+/", "//a\n//b\n"},
        {"b.js", "//a\n //b\n", "Ctrl+/", "a\n b\n"},
        {"c.txt", "a\nb\n", "Ctrl+]", "\ta\n\tb\n"},
        {"d.txt", "a\nb\n", "Ctrl+I", "\ta\n\tb\n"},
        {"e.txt", "\ta\n  b\n", "Ctrl+[", "a\nb\n"},
        {"f.txt", "\ta\n  b\n", "Ctrl+Shift+I", "a\nb\n"},
        {"g.txt", "a \t\nb \n", "Ctrl+Shift+T", "a\nb\n"},
        {"h.txt", "a\r\nb\n", "Ctrl+Shift+J", "ab"},
        {"i.txt", "\ta    b\n", "Ctrl+Shift+R", "ab"},
        {"j.txt", "a\xef\xb7\x90", "Ctrl+Shift+G", "a"},
    };
    for (const Case& c : cases) {
        DocumentWindow& window = open(write(c.name, c.text));
        const QString before = textOf(window);
        const QString key = QString::fromLatin1(c.key);
        press(window, {key});
        EXPECT_EQ(textOf(window), before) << c.name << ": there is nothing but a caret";
        press(window, {QStringLiteral("Ctrl+A"), key});
        EXPECT_EQ(textOf(window), QString::fromLatin1(c.after)) << c.name;
        EXPECT_TRUE(window.isWindowModified()) << c.name;
        press(window, {QStringLiteral("Ctrl+Z")});
        const bool isUndone = textOf(window) == before;
        EXPECT_EQ(isUndone, !key.endsWith(u']') && !key.endsWith(u'[') && !key.endsWith(u'I'))
            << c.name;
        EXPECT_EQ(window.isWindowModified(), !isUndone) << c.name;
    }
    EXPECT_EQ(questions.told, QStringList{QStringLiteral("Bye Billy. 1 characters removed.")});
}

TEST_F(TextMenuTest, tagsAreClosedWhereTheLanguageHasThem)
{
    DocumentWindow& html = open(write("a.html", "<p><b>x"));
    press(html, {QStringLiteral("Ctrl+End"), QStringLiteral("Alt+."), QStringLiteral("Alt+.")});
    EXPECT_EQ(textOf(html), QStringLiteral("<p><b>x</b></p>"));
    press(html, {QStringLiteral("'!'"), QStringLiteral("Ctrl+Z"), QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(textOf(html), QStringLiteral("<p><b>x</b>"));
    EXPECT_FALSE(command(open(write("a.txt", "<p>")), QStringLiteral("Text/Close Current Tag"))
                     ->isEnabled());
}

// Indentation leaves no step behind, but the file must not be lost for that.
TEST_F(TextMenuTest, anIndentedTextIsAskedAboutAndSaved)
{
    const QString file = write("a.txt", "a\nb\n");
    DocumentWindow& window = open(file);
    press(window, {QStringLiteral("Ctrl+A"), QStringLiteral("Ctrl+]")});
    window.close();
    QCoreApplication::processEvents();
    EXPECT_EQ(questions.asked, QStringList{QStringLiteral("save a.txt")});
    save(window);
    EXPECT_EQ(bytesOf(file), "\ta\n\tb\n");
    EXPECT_FALSE(window.isWindowModified());
    press(window, {QStringLiteral("Ctrl+[")});
    EXPECT_TRUE(window.isWindowModified());
}

// Colours and the line under them stay together, though nobody announces the edit.
TEST_F(TextMenuTest, coloursFollowAnIndentation)
{
    DocumentWindow& window = open(write("a.php", "<?php\nreturn 1;\nreturn 2;\n"));
    QTest::qWait(30);
    press(window, {QStringLiteral("Ctrl+A"), QStringLiteral("Ctrl+]")});
    QTest::qWait(30);
    const QString text = textOf(window);
    const auto colourAt = [&](qsizetype at) {
        return window.document().overlay().attributesAt(at).foreground;
    };
    const auto keyword =
        window.document().syntaxColouring().roles().attributes(ColourRole::keyword).foreground;
    ASSERT_TRUE(keyword);
    for (qsizetype at = 0; (at = text.indexOf(u"return"_qs, at)) >= 0; at += 6) {
        EXPECT_EQ(colourAt(at), keyword);
        EXPECT_EQ(colourAt(at + 5), keyword);
        EXPECT_NE(colourAt(at + 6), keyword);
    }
}

TEST_F(TextMenuTest, noTwoCommandsShareAKey)
{
    std::map<QString, std::string> taken;
    for (const MenuDefinition& menu : menuTable()) {
        for (const MenuItem& item : menu.items) {
            if (!item.text)
                continue;
            QList<QKeySequence> keys = QKeySequence::keyBindings(item.standardKey);
            if (item.ownKeys)
                keys += QKeySequence::listFromString(QLatin1StringView(item.ownKeys));
            for (const QKeySequence& key : keys) {
                const auto [other, isNew] = taken.emplace(key.toString(), item.text);
                EXPECT_TRUE(isNew || other->second == item.text)
                    << qPrintable(key.toString()) << ": " << other->second << ", " << item.text;
            }
        }
    }
}

} // namespace
} // namespace quillory::test
