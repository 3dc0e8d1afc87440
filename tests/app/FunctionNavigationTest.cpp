#include "../view/EventLoopWatchdog.h"
#include "AppFixture.h"

#include "app/DocumentWindow.h"
#include "app/FunctionMenu.h"
#include "app/SearchList.h"
#include "app/TitleBarButtons.h"
#include "document/Document.h"
#include "view/FindIndicator.h"
#include "view/TextViewWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace quillory {

namespace {

using namespace test;

constexpr char python[] = "import os\n"     // 1
                          "\n"              // 2
                          "def first(a):\n" // 3
                          "    pass\n"      // 4
                          "\n"              // 5
                          "def second():\n" // 6
                          "    pass\n"      // 7
                          "class Third:\n"  // 8
                          "    x = 1\n"     // 9
                          "    y = 2\n";    // 10

class FunctionNavigationTest : public AppFixture
{
protected:
    static void putCaretOnLine(DocumentWindow& window, int line)
    {
        const TextSnapshot& text = window.document().completeString();
        window.document().textView().setSelectedRange({text.lineStart(LineIndex(line - 1)), 0});
    }

    static qint64 caretLine(const DocumentWindow& window)
    {
        return window.document().currentLineNumber();
    }

    /// What the menu shows once it is filled: ticks as "*", disabled entries in brackets.
    static QStringList shown(const QMenu& menu)
    {
        QStringList entries;
        const QList<QAction*> actions = menu.actions();
        for (const QAction* action : actions) {
            if (!action->isVisible())
                continue;
            QString text = action->text();
            text.replace(QChar(0x2007), u'_');
            if (action->isChecked())
                text.prepend(u'*');
            entries += action->isEnabled() ? text : u'[' + text + u']';
        }
        return entries;
    }

    /// Opens the pull-down by a click and has \a look look at it once it is filled. A menu has an
    /// event loop of its own.
    static void openMenu(DocumentWindow& window, const std::function<void(QMenu&)>& look)
    {
        TitleBarButtons& buttons = window.titleBarButtons();
        QTimer poll;
        QElapsedTimer since;
        since.start();
        bool looked = false;
        connect(&poll, &QTimer::timeout, &window, [&] {
            QMenu& menu = buttons.navigationMenu();
            const bool isBusy = shown(menu).join(u' ').contains(u"Looking");
            if (!menu.isVisible() || isBusy)
                return;
            poll.stop();
            looked = true;
            look(menu);
            menu.hide();
        });
        poll.start(1);
        QTest::mouseClick(&buttons.navigationButton(), Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([&] { return looked; }, 20'000));
    }

    static SearchList& list(DocumentWindow& window)
    {
        return window.titleBarButtons().functions().list();
    }

    template<class... Arguments>
    static void connect(Arguments&&... arguments)
    {
        QObject::connect(std::forward<Arguments>(arguments)...);
    }
};

TEST_F(FunctionNavigationTest, thePullDownListsTheFunctionsAndTicksTheFirst)
{
    DocumentWindow& window = open(write("a.py", python));
    const QStringList plain{u"3  first(a)"_qs, u"6  second()"_qs, u"8  class Third"_qs};
    QStringList ticked = plain;
    ticked[0].prepend(u'*');
    for (int line = 1; line <= 11; ++line) {
        putCaretOnLine(window, line);
        const bool isOnFunction = line == 3 || line == 6 || line == 8;
        openMenu(window, [&](const QMenu& menu) {
            EXPECT_EQ(shown(menu), isOnFunction ? ticked : plain) << line;
        });
    }
    // It is of the text as it is now.
    window.document().textView().setSelectedRange({0, 0});
    press(window, {u"'def zeroth&():'"_qs, u"Return"_qs});
    openMenu(window, [&](QMenu& menu) {
        EXPECT_EQ(shown(menu).value(0), u"1  zeroth"_qs);
        menu.actions().at(3)->trigger();
    });
    EXPECT_EQ(window.document().textView().selectedRange(),
              window.document().completeString().line(LineIndex(6)));
    EXPECT_EQ(window.focusWidget(), &window.view());
    EXPECT_TRUE(window.view().findChild<FindIndicator*>()->isShowing());
}

TEST_F(FunctionNavigationTest, thePullDownSaysWhereThereIsNothing)
{
    for (const auto& [name, text] : {std::pair("a.py", "x = 1\n"), std::pair("b.py", "")}) {
        DocumentWindow& window = open(write(name, text));
        openMenu(window, [](const QMenu& menu) {
            EXPECT_EQ(shown(menu), QStringList(u"[Unavailable]"_qs));
        });
    }
}

TEST_F(FunctionNavigationTest, keysGoToThePreviousAndTheNext)
{
    DocumentWindow& window = open(write("a.py", python));
    QSignalSpy beeps(&window.document().textView(), &QPTextView::beep);
    struct Case
    {
        int from;
        const char* key;
        int to;
        int beeps;
    };
    for (const Case& c :
         {Case{1, "Alt+Down", 3, 0}, Case{3, "Alt+Down", 6, 0}, Case{4, "Alt+Down", 6, 0},
          Case{8, "Alt+Down", 8, 1}, Case{10, "Alt+Down", 10, 1}, Case{8, "Alt+Up", 6, 0},
          Case{7, "Alt+Up", 6, 0}, Case{3, "Alt+Up", 3, 1}, Case{1, "Alt+Up", 1, 1},
          // Below the last one it neither goes nor beeps.
          Case{9, "Alt+Up", 9, 0}}) {
        putCaretOnLine(window, c.from);
        beeps.clear();
        press(window, {QLatin1StringView(c.key)});
        EXPECT_EQ(caretLine(window), c.to) << c.from << c.key;
        EXPECT_EQ(beeps.count(), c.beeps) << c.from << c.key;
    }
    for (const char* name : {"b.py", "c.txt"}) {
        DocumentWindow& bare = open(write(name, ""));
        QSignalSpy beep(&bare.document().textView(), &QPTextView::beep);
        press(bare, {u"Alt+Down"_qs, u"Alt+Up"_qs});
        EXPECT_EQ(beep.count(), 2) << name;
    }
}

TEST_F(FunctionNavigationTest, menusNameWhatIsGoneTo)
{
    DocumentWindow& window = open(write("a.py", python));
    const auto entries = [&] {
        Q_EMIT window.menuBar()->actions().front()->menu()->aboutToShow();
        QStringList texts;
        const QList<QAction*> actions = window.findChildren<QAction*>();
        for (const char* key : {"Alt+Up", "Alt+Down"}) {
            for (const QAction* action : actions) {
                if (action->shortcut() == QKeySequence(QLatin1StringView(key)))
                    texts += action->text();
            }
        }
        return texts;
    };
    const auto becomes = [&](const QString& previous, const QString& next) {
        return QTest::qWaitFor([&] { return entries() == QStringList{previous, next}; });
    };
    EXPECT_TRUE(becomes(u"&Previous Function"_qs, u"&Next Function"_qs));
    window.document().record().functionTitle = u"Rhythm & Blues"_qs;
    EXPECT_TRUE(becomes(u"&Previous Rhythm && Blues"_qs, u"&Next Rhythm && Blues"_qs));
}

TEST_F(FunctionNavigationTest, theMenuOffersWhatCanBeGoneTo)
{
    struct Case
    {
        const char* name;
        QByteArray text;
        QStringList entries; ///< in brackets what is disabled
    };
    const Case cases[] = {
        {"a.py", python, {u"&Functions"_qs, u"&Previous Function"_qs, u"&Next Function"_qs}},
        {"b.py", "x = 1\n", {u"&Functions"_qs, u"[&Previous Function]"_qs, u"[&Next Function]"_qs}},
        {"c.py", "", {u"&Functions"_qs, u"[&Previous Function]"_qs, u"[&Next Function]"_qs}},
        {"wordless.py", python, {u"[Unavailable]"_qs, u"[Unavailable]"_qs, u"[Unavailable]"_qs}},
    };
    for (const Case& c : cases) {
        DocumentWindow& window = open(write(c.name, c.text));
        if (QLatin1StringView(c.name) == QLatin1StringView("wordless.py"))
            window.document().record().functionTitle = QString();
        QMenu* menu = nullptr;
        for (QMenu* each : window.menuBar()->findChildren<QMenu*>()) {
            if (each->title() == u"&Navigate")
                menu = each;
        }
        ASSERT_TRUE(menu);
        Q_EMIT menu->aboutToShow();
        QStringList shown;
        QList<QAction*> actions;
        for (const char* key : {"Ctrl+R", "Alt+Up", "Alt+Down"}) {
            for (QAction* action : menu->actions()) {
                if (action->shortcut() != QKeySequence(QLatin1StringView(key)))
                    continue;
                actions += action;
                shown += action->isEnabled() ? action->text() : u'[' + action->text() + u']';
            }
        }
        EXPECT_EQ(shown, c.entries) << c.name;
        Q_EMIT menu->aboutToHide();
        for (const QAction* action : actions)
            EXPECT_TRUE(action->isEnabled()) << "keys say that they are of no use by a beep";
    }
}

TEST_F(FunctionNavigationTest, theListFindsAndGoesThere)
{
    DocumentWindow& window = open(write("a.py", python));
    putCaretOnLine(window, 7);
    press(window, {u"Ctrl+R"_qs});
    ASSERT_TRUE(list(window).isOpen());
    EXPECT_EQ(list(window).shownCount(), 3);
    EXPECT_EQ(list(window).currentRow(), 1);
    QTest::keyClicks(&list(window).edit(), u"fir"_qs);
    EXPECT_EQ(list(window).shownCount(), 1);
    QTest::keyClick(&list(window).edit(), Qt::Key_Return);
    EXPECT_FALSE(list(window).isOpen());
    EXPECT_EQ(caretLine(window), 3);
    EXPECT_TRUE(window.view().hasFocus());
}

TEST_F(FunctionNavigationTest, aLargeSourceNeverFreezesTheWindow)
{
    QByteArray source;
    for (int i = 0; source.size() < 10 << 20; ++i)
        source +=
            "def f" + QByteArray::number(i) +
            "(name, value):\n    # what it does, in a few words\n" +
            QByteArray("    total = name.count(value) + len(name) * 2  # and why\n").repeated(3) +
            "    return total\n\n";
    const int lines = int(source.count('\n'));
    DocumentWindow& window = open(write("large.py", source));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, 30'000));
    QTest::qWait(200);
    EventLoopWatchdog watchdog;

    openMenu(window, [&](const QMenu& menu) {
        EXPECT_EQ(menu.actions().size(), qsizetype(FunctionMenu::mostEntries) + 3);
        EXPECT_TRUE(shown(menu).constLast().startsWith(u"All "));
        // In one column, which scrolls.
        EXPECT_LT(menu.width(), menu.screen()->availableSize().width() / 2);
    });
    press(window, {u"Alt+Down"_qs, u"Alt+Down"_qs, u"Alt+Down"_qs});
    EXPECT_TRUE(QTest::qWaitFor([&] { return caretLine(window) == 22; }, 20'000));

    press(window, {u"Ctrl+R"_qs});
    EXPECT_TRUE(list(window).isOpen());
    QTest::keyClicks(&list(window).edit(), u"f4321("_qs);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list(window).shownCount() > 0; }, 20'000));
    QTest::keyClick(&list(window).edit(), Qt::Key_Return);
    EXPECT_EQ(caretLine(window), 4321 * 7 + 1);
    EXPECT_GT(lines, 4321 * 7);
}

} // namespace

} // namespace quillory
