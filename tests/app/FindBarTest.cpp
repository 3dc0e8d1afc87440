#include "AppFixture.h"

#include "../view/EventLoopWatchdog.h"

#include "app/FindBar.h"
#include "app/FindField.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QApplication>
#include <QTest>
#include <QToolButton>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int patience = 20'000; ///< milliseconds; only a failing test waits that long

class FindBarTest : public AppFixture
{
protected:
    DocumentWindow& openText(const QByteArray& text)
    {
        DocumentWindow& window = open(write("a.txt", text));
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        return window;
    }

    static FindBar& bar(DocumentWindow& window) { return FindBar::of(window); }

    /// Keys go to what has the keyboard.
    static void type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }

    static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    static bool says(DocumentWindow& window, const QString& state)
    {
        const bool becomes =
            QTest::qWaitFor([&] { return bar(window).state() == state; }, patience);
        EXPECT_EQ(bar(window).state(), state);
        return becomes;
    }

    static TextRange selected(DocumentWindow& window)
    {
        return window.document().textView().selectedRange();
    }

    static void turn(DocumentWindow& window, const QString& name)
    {
        for (QToolButton* button : bar(window).findChildren<QToolButton*>())
            if (button->accessibleName() == name)
                button->click();
    }
};

TEST_F(FindBarTest, FindsWhileOneTypesAndGoesRound)
{
    DocumentWindow& window = openText("one two\nTwo one\ntwofold\n");
    window.document().textView().setSelectedRange({5, 0});
    choose(window, u"Search/Find…"_s);
    type(u"tw"_s);
    ASSERT_TRUE(says(window, u"2 of 3"_s));
    EXPECT_EQ(selected(window), (TextRange{8, 2}));
    type(u"o"_s);
    ASSERT_TRUE(says(window, u"2 of 3"_s));
    EXPECT_EQ(selected(window), (TextRange{8, 3})) << "goes on where it was";
    key(Qt::Key_Return);
    EXPECT_EQ(selected(window), (TextRange{16, 3}));
    key(Qt::Key_F3);
    EXPECT_EQ(selected(window), (TextRange{4, 3})) << "around the end";
    key(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(selected(window), (TextRange{16, 3}));
    EXPECT_EQ(bar(window).state(), u"3 of 3"_s);

    turn(window, u"Match case"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !bar(window).session().isSearching(); }, patience));
    EXPECT_EQ(bar(window).session().matches().all().size(), 2u);
    turn(window, u"Whole words"_s);
    ASSERT_TRUE(says(window, u"1 of 1"_s));
    type(u"x"_s);
    ASSERT_TRUE(says(window, u"Not found"_s));
    key(Qt::Key_Escape);
    EXPECT_TRUE(bar(window).isHidden());
    EXPECT_TRUE(window.view().hasFocus());
    EXPECT_TRUE(bar(window).session().matches().isEmpty());
}

TEST_F(FindBarTest, TakesWhatIsSelectedAndFollowsEdits)
{
    DocumentWindow& window = openText("a.b axb a.b\n");
    window.document().textView().setSelectedRange({0, 3});
    choose(window, u"Search/Use Selection for Find"_s);
    ASSERT_TRUE(says(window, u"1 of 2"_s));
    EXPECT_TRUE(window.view().hasFocus());
    window.document().textView().setSelectedRange({4, 3});
    press(window, {u"'a.b'"_s});
    ASSERT_TRUE(says(window, u"3 found"_s));
    window.document().undoManager().undo();
    ASSERT_TRUE(says(window, u"2 found"_s));
    choose(window, u"Search/Select All Found"_s);
    EXPECT_EQ(window.document().textView().selectedRanges(),
              std::vector<TextRange>({{0, 3}, {8, 3}}));
    press(window, {u"'-'"_s});
    EXPECT_EQ(textOf(window), u"- axb -\n"_s);
    ASSERT_TRUE(says(window, u"Not found"_s));

    choose(window, u"Search/Find…"_s);
    turn(window, u"Regular expression"_s);
    type(u"("_s);
    ASSERT_TRUE(says(window, u"This is no regular expression."_s));
    key(Qt::Key_Backspace);
    type(u"^."_s);
    ASSERT_TRUE(says(window, u"1 of 1"_s));
}

TEST_F(FindBarTest, SelectsAllOfWhatIsSelectedAtOnce)
{
    DocumentWindow& window = openText("ab x ab\n");
    window.document().textView().setSelectedRange({0, 2});
    choose(window, u"Search/Select All Found"_s);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return window.document().textView().selections().size() == 2; }, patience));
}

TEST_F(FindBarTest, ReplacesOneOrAll)
{
    DocumentWindow& window = openText("k1=v1\nk2=v2\nk3=v3\n");
    choose(window, u"Search/Replace…"_s);
    turn(window, u"Regular expression"_s);
    type(u"(k\\d)=(v\\d)"_s);
    ASSERT_TRUE(says(window, u"1 of 3"_s));
    key(Qt::Key_Tab);
    while (!dynamic_cast<FindField*>(QApplication::focusWidget()) ||
           QApplication::focusWidget()->accessibleName() != u"Replace by"_s)
        key(Qt::Key_Tab);
    type(u"$2: $1"_s);
    key(Qt::Key_Return);
    EXPECT_EQ(textOf(window), u"v1: k1\nk2=v2\nk3=v3\n"_s);
    EXPECT_EQ(selected(window), (TextRange{7, 5}));
    turn(window, u"Replace All"_s);
    ASSERT_TRUE(says(window, u"2 replaced"_s));
    EXPECT_EQ(textOf(window), u"v1: k1\nv2: k2\nv3: k3\n"_s);
    QTest::qWait(400); // it is looked for anew meanwhile
    EXPECT_EQ(bar(window).state(), u"2 replaced"_s);
    window.document().undoManager().undo();
    EXPECT_EQ(textOf(window), u"v1: k1\nk2=v2\nk3=v3\n"_s);
    window.document().undoManager().undo();
    EXPECT_EQ(textOf(window), u"k1=v1\nk2=v2\nk3=v3\n"_s);
}

TEST_F(FindBarTest, ALargeTextKeepsNobodyWaiting)
{
    DocumentWindow& window = openText(QByteArray("some words, and a needle\n").repeated(600'000));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, patience));
    choose(window, u"Search/Replace…"_s);
    EventLoopWatchdog watchdog;
    watchdog.watch("typing what is looked for", [&] { type(u"needle"_s); });
    ASSERT_TRUE(says(window, u"1 of 600,000"_s));
    watchdog.watch("going on", [&] { key(Qt::Key_Return); });
    watchdog.watch("editing", [&] { press(window, {u"'x'"_s}); });
    ASSERT_TRUE(says(window, u"599,999 found"_s));
    choose(window, u"Search/Select All Found"_s);
    EXPECT_EQ(window.document().textView().selections().size(), 599'999u);
    window.document().textView().setSelectedRange({0, 0});
    turn(window, u"Replace All"_s);
    ASSERT_TRUE(says(window, u"599,999 replaced"_s));
    EXPECT_EQ(window.document().completeString().length(), 15'000'001 - 6 - 6 * 599'999);
    watchdog.watch("undoing", [&] { window.document().undoManager().undo(); });
    EXPECT_EQ(window.document().completeString().length(), 15'000'001 - 6);
}

} // namespace
} // namespace quillory::test
