#include "AppFixture.h"

#include "app/DocumentWindow.h"
#include "document/Document.h"
#include "editing/TypewriterScroll.h"
#include "view/TextViewWidget.h"

#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QStyleHints>
#include <QTest>

namespace quillory {

namespace {

using namespace test;

/// Switches of the menus, and what they do to keys and clicks.
class EditingSwitchesTest : public AppFixture
{
protected:
    ~EditingSwitchesTest() override { QGuiApplication::clipboard()->clear(); }

    static void clickTwice(DocumentWindow& window, TextOffset offset,
                           Qt::KeyboardModifiers modifiers = {})
    {
        QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 10);
        QWidget* viewport = window.view().viewport();
        const QPoint point = window.view().caretRectAt(offset).center() + QPoint(3, 0);
        QTest::mouseClick(viewport, Qt::LeftButton, modifiers, point);
        QTest::mouseDClick(viewport, Qt::LeftButton, modifiers, point);
    }

    QString replacementsPath() const { return folders.replacementsFile(); }
};

TEST_F(EditingSwitchesTest, wordsThatWereSelectedAsSuchTakeTheirSpaceAlong)
{
    DocumentWindow& window = open(write("a.txt", "one two three\nfour\n"));
    clickTwice(window, 5);
    press(window, {QStringLiteral("Delete")}); // the switch is off
    EXPECT_EQ(textOf(window), QStringLiteral("one  three\nfour\n"));
    press(window, {QStringLiteral("Ctrl+Z")});

    choose(window, QStringLiteral("Edit/Smart Insert and Delete"));
    clickTwice(window, 5);
    press(window, {QStringLiteral("Ctrl+X")});
    EXPECT_EQ(textOf(window), QStringLiteral("one three\nfour\n"));
    press(window, {QStringLiteral("Ctrl+End"), QStringLiteral("Left"), QStringLiteral("Ctrl+V")});
    EXPECT_EQ(textOf(window), QStringLiteral("one three\nfour two\n"));
    press(window, {QStringLiteral("Ctrl+Z"), QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(textOf(window), QStringLiteral("one two three\nfour\n"));

    clickTwice(window, 1);
    clickTwice(window, 9, Qt::ControlModifier);
    press(window, {QStringLiteral("Backspace")});
    EXPECT_EQ(textOf(window), QStringLiteral("two\nfour\n"));
    press(window, {QStringLiteral("Ctrl+Z"), QStringLiteral("Ctrl+Home")});

    // Selected by characters, it is anything.
    press(window, {QStringLiteral("Ctrl+Right"), QStringLiteral("Right"),
                   QStringLiteral("Ctrl+Shift+Right"), QStringLiteral("Ctrl+X"),
                   QStringLiteral("Ctrl+Home"), QStringLiteral("Ctrl+V")});
    EXPECT_EQ(textOf(window), QStringLiteral("twoone  three\nfour\n"));
}

TEST_F(EditingSwitchesTest, shortcutsAreReplacedWhenAWordIsOver)
{
    DocumentWindow& window = openNew();
    const auto writeList = [&](const QByteArray& entries) {
        QDir().mkpath(folders.applicationSupport);
        QFile file(replacementsPath());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("{" + entries + "}");
    };
    writeList("omw = \"on my way\"; \"->\" = arrow; m = metre; \"(c)\" = copyright; n = (1); "
              "sig = \"a\\nb\";");
    const auto typed = [&](const QStringList& keys) {
        press(window, QStringList{QStringLiteral("Ctrl+A"), QStringLiteral("Delete")} + keys);
        return textOf(window);
    };
    EXPECT_EQ(typed({QStringLiteral("'omw '")}), QStringLiteral("omw "));
    choose(window, QStringLiteral("Edit/Text Replacement"));
    const struct
    {
        QStringList keys;
        QString text;
    } cases[]{
        {{QStringLiteral("'omw '")}, QStringLiteral("on my way ")},
        {{QStringLiteral("'omw.'")}, QStringLiteral("on my way.")},
        {{QStringLiteral("'omw'"), QStringLiteral("Return")}, QStringLiteral("on my way\n")},
        {{QStringLiteral("'omw'"), QStringLiteral("Tab")}, QStringLiteral("on my way\t")},
        {{QStringLiteral("'omwx xomw x_omw '")}, QStringLiteral("omwx xomw x_omw ")},
        {{QStringLiteral("'3m x-m '")}, QStringLiteral("3m x-metre ")},
        {{QStringLiteral("'a-> '")}, QStringLiteral("aarrow ")},
        {{QStringLiteral("'(c) '")}, QStringLiteral("copyright ")},
        {{QStringLiteral("'n '")}, QStringLiteral("n ")}, // is no text
        {{QStringLiteral("'sig '")}, QStringLiteral("a\nb ")},
        {{QStringLiteral("' '")}, QStringLiteral(" ")},
        // Undoing gives back what was typed, and no more.
        {{QStringLiteral("'omw '"), QStringLiteral("Ctrl+Z")}, QStringLiteral("omw ")},
        {{QStringLiteral("'omw '"), QStringLiteral("Ctrl+Z"), QStringLiteral("'x'")},
         QStringLiteral("omw x")},
        // Each caret on its own.
        {{QStringLiteral("'a'"), QStringLiteral("Return"), QStringLiteral("'x'"),
          QStringLiteral("Alt+PgUp"), QStringLiteral("Home"), QStringLiteral("'omw '")},
         QStringLiteral("on my way a\non my way x")},
    };
    for (const auto& [keys, text] : cases)
        EXPECT_EQ(typed(keys), text) << keys.join(u' ').toStdString();

    // Pasting is no typing, and a list that changed counts at once.
    QGuiApplication::clipboard()->setText(QStringLiteral("omw "));
    EXPECT_EQ(typed({QStringLiteral("Ctrl+V")}), QStringLiteral("omw "));
    writeList("omw = \"on my merry way\";");
    EXPECT_EQ(typed({QStringLiteral("'omw '")}), QStringLiteral("on my merry way "));
    writeList("no list");
    EXPECT_EQ(typed({QStringLiteral("'omw '")}), QStringLiteral("omw "));
    QFile::remove(replacementsPath());
    EXPECT_EQ(typed({QStringLiteral("'omw '")}), QStringLiteral("omw "));
}

TEST_F(EditingSwitchesTest, theListOfReplacementsOpensAsADocument)
{
    DocumentWindow& window = openNew();
    choose(window, QStringLiteral("Edit/Edit Text Replacements…"));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return controller.windows().front()->document().path() == replacementsPath(); }));
    EXPECT_TRUE(textOf(*controller.windows().front()).contains(QStringLiteral("<key>")));
}

TEST_F(EditingSwitchesTest, typewriterScrollingIsTurnedOnInTheMenu)
{
    DocumentWindow& window = open(write("a.txt", QByteArray("line\n").repeated(500)));
    window.goTo({250, 2});
    choose(window, QStringLiteral("View/Typewriter Scrolling"));
    EXPECT_TRUE(defaults.value(keys::constrainScroll));
    const int anchor = anchorHeight(window.view().viewport()->height());
    EXPECT_EQ(window.view().caretRect().y(), anchor);
    press(window, {QStringLiteral("PgDown"), QStringLiteral("'x'")});
    EXPECT_EQ(window.view().caretRect().y(), anchor);
    choose(window, QStringLiteral("View/Typewriter Scrolling"));
    press(window, {QStringLiteral("Down"), QStringLiteral("'x'")});
    EXPECT_GT(window.view().caretRect().y(), anchor);
}

TEST_F(EditingSwitchesTest, theWebInspectorIsCopiedForThePreview)
{
    DocumentWindow& window = openNew();
    defaults.setValue(keys::enableWebInspector, true);
    notifications.post(notifications::preferencesDidChange);
    EXPECT_TRUE(defaults.value(keys::webKitDeveloperExtras));
    EXPECT_TRUE(UserDefaults(defaults.path()).value(keys::webKitDeveloperExtras));
    EXPECT_EQ(textOf(window), QString());
}

} // namespace

} // namespace quillory
