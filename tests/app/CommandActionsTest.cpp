#include "AppFixture.h"

#include "app/ActionKeys.h"
#include "app/CommandActions.h"
#include "app/SearchList.h"
#include "app/TitleBarButtons.h"
#include "commands/ActionsMenu.h"
#include "document/Document.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QTimer>

namespace quillory::test {
namespace {

constexpr int patience = 20000; // milliseconds

class CommandActionsTest : public AppFixture
{
protected:
    CommandActionsTest()
    {
        folders.state = folder.filePath(QStringLiteral("state"));
        folders.caches = folder.filePath(QStringLiteral("caches"));
    }

    DocumentWindow& openWith(const char* name, const QByteArray& bytes, TextRange selection)
    {
        DocumentWindow& window = open(write(name, bytes));
        window.document().textView().setSelectedRange(selection);
        QCoreApplication::processEvents();
        return window;
    }

    static void waitForText(DocumentWindow& window, const QString& text)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == text; }, patience))
            << textOf(window).toStdString();
    }
};

TEST_F(CommandActionsTest, RunByMenuKeyAndName)
{
    DocumentWindow& window = openWith("a.html", "a word b", {2, 4});
    press(window, {QStringLiteral("Ctrl+B")}); // no menu was opened so far
    EXPECT_EQ(textOf(window), QStringLiteral("a <strong>word</strong> b"));
    press(window, {QStringLiteral("Ctrl+Z")});
    choose(window, QStringLiteral("Actions/Paragraph"));
    EXPECT_EQ(textOf(window), QStringLiteral("a <p>word</p> b"));
    press(window, {QStringLiteral("Ctrl+Z")});

    press(window, {QStringLiteral("Ctrl+Shift+P")});
    auto* list = window.findChild<SearchList*>();
    ASSERT_TRUE(list && list->isOpen());
    QTest::keyClicks(&list->edit(), QStringLiteral("actions heading 2"));
    QTest::keyClick(&list->edit(), Qt::Key_Return);
    EXPECT_EQ(textOf(window), QStringLiteral("a <h2>word</h2> b"));
}

TEST_F(CommandActionsTest, TheListLooksIntoTheMenusAndLeavesThemAsTheyWere)
{
    QDir().mkpath(folders.applicationSupport + QStringLiteral("/Templates/folder"));
    write("support/Templates/letter", "");
    write("support/Templates/folder/inner", "");
    DocumentWindow& window = openWith("a.txt", "word", {0, 4});
    window.document().record().functionTitle.clear();
    press(window, {QStringLiteral("Ctrl+Shift+P")});
    auto* list = window.findChild<SearchList*>();
    ASSERT_TRUE(list && list->isOpen());
    const QAbstractItemModel& rows = *list->findChild<QListView*>()->model();
    const auto found = [&rows](const char* text) {
        int count = 0;
        for (int row = 0; row < rows.rowCount(); ++row)
            count += rows.index(row, 0).data().toString().contains(QString::fromUtf8(text));
        return count;
    };
    EXPECT_EQ(found("New from Template › letter"), 1);
    EXPECT_EQ(found("inner"), 0) << "folders in folders are not looked through";
    EXPECT_EQ(found("Reopen with Encoding › Unicode › Unicode (UTF-16"), 3);
    EXPECT_EQ(found("iCloud"), 0) << "there is none";
    EXPECT_EQ(found("Navigate › Unavailable"), 3);
    for (int row = 0; row < rows.rowCount(); ++row) {
        const QModelIndex index = rows.index(row, 0);
        EXPECT_FALSE(index.data().toString().contains(u"Unavailable") &&
                     index.flags().testFlag(Qt::ItemIsEnabled));
    }
    QTest::keyClick(&list->edit(), Qt::Key_Escape);
    // Where a menu is not open its keys beep.
    for (const QAction* menu : window.menuBar()->actions()) {
        if (menu->text() != u"&Navigate")
            continue;
        for (const QAction* action : menu->menu()->actions())
            EXPECT_TRUE(action->isEnabled()) << action->text().toStdString();
    }
}

TEST_F(CommandActionsTest, AKeyOfTheMenusStaysWithThem)
{
    DocumentWindow& window = openWith("a.html", "word", {0, 4});
    press(window, {QStringLiteral("Ctrl+I")});
    EXPECT_EQ(textOf(window).trimmed(), QStringLiteral("word"));
    EXPECT_TRUE(command(window, QStringLiteral("Actions/Emphasis\tCtrl+I")));
    press(window, {QStringLiteral("Ctrl+Shift+I")});

    choose(window, QStringLiteral("Format/Language/Markdown"));
    press(window, {QStringLiteral("Ctrl+B")});
    EXPECT_FALSE(textOf(window).contains(u'<')); // the keys are those of the other language
}

TEST_F(CommandActionsTest, KeysAreThoseOfThisSystem)
{
    const struct
    {
        const char* key;
        quint32 mask;
        const char* here;
    } cases[] = {
        {"r", CommandKeyModifier, "Ctrl+R"},
        {"r", CommandKeyModifier | ShiftKeyModifier, "Ctrl+Shift+R"},
        {"r", CommandKeyModifier | OptionKeyModifier, "Ctrl+Alt+R"},
        {"r", CommandKeyModifier | ControlKeyModifier, "Meta+Ctrl+R"},
        {"R", CommandKeyModifier, "Ctrl+Shift+R"},
        {"/", CommandKeyModifier, "Ctrl+/"},
        {"rr", CommandKeyModifier, ""},
        {" ", CommandKeyModifier, ""},
        {"\x1b", CommandKeyModifier, ""},
        {"", 0, ""},
    };
    for (const auto& c : cases) {
        ActionEntry entry;
        entry.keyEquivalent = QString::fromUtf8(c.key);
        entry.keyEquivalentModifierMask = c.mask;
        EXPECT_EQ(keyOf(entry), QKeySequence(QString::fromUtf8(c.here))) << c.key;
    }
    EXPECT_TRUE(isTaken(QKeySequence(QStringLiteral("Ctrl+I"))));
    EXPECT_FALSE(isTaken(QKeySequence(QStringLiteral("Ctrl+B"))));
}

TEST_F(CommandActionsTest, TheButtonOpensTheirMenu)
{
    DocumentWindow& window = openWith("a.html", "x", {0, 1});
    // The menu has an event loop of its own while it is open.
    QTimer watch;
    QStringList seen;
    QObject::connect(&watch, &QTimer::timeout, &window, [&seen] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        const QAction* strong = menu->actions().value(0);
        seen = {strong->text(), strong->toolTip()};
        EXPECT_FALSE(strong->icon().isNull());
        menu->close();
    });
    watch.start(10);
    press(window, {QStringLiteral("Ctrl+Shift+A")});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !seen.isEmpty(); }, patience));
    EXPECT_EQ(seen, (QStringList{QStringLiteral("Strong\tCtrl+B"),
                                 QStringLiteral("<pre>&lt;strong&gt;%@&lt;/strong&gt;</pre>")}));
}

TEST_F(CommandActionsTest, ProgramsOfShippedDefinitionsRunUnasked)
{
    DocumentWindow& window = openWith("a.txt", "b\na\n", {0, 1});
    choose(window, QStringLiteral("Actions/Sort Lines"));
    waitForText(window, QStringLiteral("a\nb\n"));
    EXPECT_TRUE(questions.asked.isEmpty());
    EXPECT_TRUE(questions.told.isEmpty());
    press(window, {QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(textOf(window), QStringLiteral("b\na\n"));
}

TEST_F(CommandActionsTest, ProgramsOfOtherDefinitionsAskOnce)
{
    QDir().mkpath(folders.applicationSupport + QStringLiteral("/Definitions"));
    write("support/Definitions/Mine.plist",
          "{ title = Mine; extensions = (mine); commandItems = ("
          "{ kind = 6; title = Turn; string = \"/usr/bin/tac TEXTORCODEASFILE\"; "
          "outputCanReplaceDocument = YES; }); }");
    DocumentWindow& window = openWith("a.mine", "1\n2\n", {0, 0});
    choose(window, QStringLiteral("Actions/Turn"));
    EXPECT_EQ(questions.asked, QStringList(QStringLiteral("&Allow and Run")));
    EXPECT_EQ(questions.exact, QStringLiteral("/usr/bin/tac\n    TEXTORCODEASFILE"));
    EXPECT_EQ(textOf(window), QStringLiteral("1\n2\n"));
    EXPECT_TRUE(window.document().textView().isEditable());

    questions.agrees = true;
    choose(window, QStringLiteral("Actions/Turn"));
    waitForText(window, QStringLiteral("2\n1\n"));
    choose(window, QStringLiteral("Actions/Turn"));
    waitForText(window, QStringLiteral("1\n2\n"));
    EXPECT_EQ(questions.asked.size(), 2);
}

TEST_F(CommandActionsTest, TellWhatTheTextRefuses)
{
    DocumentWindow& window = openWith("a.html", "x", {0, 1});
    window.document().textView().setEditable(false);
    choose(window, QStringLiteral("Actions/Paragraph"));
    EXPECT_EQ(questions.told,
              QStringList(QStringLiteral("Error! Cannot change text in text view")));
    window.document().textView().setEditable(true);
}

TEST_F(CommandActionsTest, TheClipboardIsPutIn)
{
    DocumentWindow& window = openWith("a.html", "x", {0, 1});
    QGuiApplication::clipboard()->setText(QStringLiteral("https://a.org/100%%"));
    press(window, {QStringLiteral("Ctrl+K")});
    waitForText(window, QStringLiteral("<a href=\"https://a.org/100%%\">x</a>"));
}

} // namespace
} // namespace quillory::test
