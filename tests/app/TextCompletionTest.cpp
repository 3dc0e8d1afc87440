#include "view/TextCompletion.h"

#include "AppFixture.h"

#include "app/EditingAids.h"
#include "document/Document.h"
#include "view/Bell.h"
#include "view/CompletionPopup.h"
#include "view/TextViewWidget.h"

#include <QInputMethodEvent>
#include <QScrollBar>
#include <QTest>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

class TextCompletionTest : public AppFixture
{
protected:
    /// A window over plain text with the caret at its end, in which completions are shown.
    DocumentWindow& openText(const QByteArray& text)
    {
        defaults.setValue(keys::showCompletions, true);
        DocumentWindow& window = open(write("a.txt", text));
        press(window, {u"Ctrl+End"_s});
        settle();
        return window;
    }
    static void settle() { QTest::qWait(20); }
    static TextCompletion& completion(DocumentWindow& window) { return window.aids().completion(); }
    /// The words that are offered, the current one in brackets; empty while the list is closed.
    static QString offered(DocumentWindow& window)
    {
        QCoreApplication::processEvents();
        if (!completion(window).isOpen())
            return {};
        const CompletionPopup& popup = *completion(window).popup();
        QStringList words;
        for (int i = 0; i < popup.count(); ++i)
            words += i == popup.currentIndex().row() ? u'[' + popup.word(i) + u']' : popup.word(i);
        return words.join(u' ');
    }
    /// The text with "|" at the carets.
    static QString marked(DocumentWindow& window)
    {
        QString text = textOf(window);
        const auto& selections = window.document().textView().selections();
        for (auto it = selections.rbegin(); it != selections.rend(); ++it)
            text.insert(it->head, u'|');
        return text;
    }
};

TEST_F(TextCompletionTest, keysGoToTheListThatIsOpen)
{
    const QByteArray text = "walnut wander water wall\nw";
    struct Case
    {
        QStringList keys;
        const char* after;
        const char* offered;
    };
    const Case cases[]{
        {{u"F5"_s}, "w|", "[wall] water wander walnut"},
        {{u"F5"_s, u"Down"_s, u"Down"_s}, "w|", "wall water [wander] walnut"},
        {{u"F5"_s, u"Up"_s}, "w|", "wall water wander [walnut]"},
        {{u"F5"_s, u"PgDown"_s}, "w|", "wall water wander [walnut]"},
        {{u"F5"_s, u"Down"_s, u"PgUp"_s}, "w|", "[wall] water wander walnut"},
        {{u"F5"_s, u"Return"_s}, "wall|", ""},
        {{u"F5"_s, u"Down"_s, u"Tab"_s}, "water|", ""},
        {{u"Ctrl+Space"_s, u"Enter"_s}, "wall|", ""},
        {{u"F5"_s, u"Escape"_s}, "w|", ""},
        {{u"F5"_s, u"Escape"_s, u"Return"_s}, "w\n|", ""},
        {{u"F5"_s, u"'al'"_s}, "wal|", "[wall] walnut"},
        {{u"F5"_s, u"'al'"_s, u"Backspace"_s, u"Backspace"_s}, "w|", "[wall] water wander walnut"},
        {{u"F5"_s, u"Backspace"_s}, "|", ""},
        {{u"F5"_s, u"Down"_s, u"'a'"_s}, "wa|", "wall [water] wander walnut"},
        {{u"F5"_s, u"'all'"_s}, "wall|", ""},
        {{u"F5"_s, u"' '"_s}, "w |", ""},
        {{u"F5"_s, u"Left"_s}, "|w", ""},
        {{u"F5"_s, u"Home"_s}, "|w", ""},
        {{u"F5"_s, u"Shift+Left"_s}, "|w", ""},
        {{u"F5"_s, u"'x'"_s, u"Return"_s}, "wx\n|", ""},
        {{u"F5"_s, u"Return"_s, u"Ctrl+Z"_s}, "w|", ""},
        {{u"F5"_s, u"'a'"_s, u"Ctrl+Z"_s}, "w|", ""},
    };
    for (const Case& c : cases) {
        DocumentWindow& window = openText(text);
        press(window, c.keys);
        const QString name = c.keys.join(u',');
        EXPECT_EQ(offered(window), QString::fromUtf8(c.offered)) << qPrintable(name);
        EXPECT_EQ(marked(window),
                  QString::fromUtf8("walnut wander water wall\n") + QString::fromUtf8(c.after))
            << qPrintable(name);
        EXPECT_TRUE(window.view().hasFocus());
        window.document().undoManager().markClean();
        window.close();
        settle();
    }
}

TEST_F(TextCompletionTest, opensWhenTypingPausesAndOnlyThen)
{
    DocumentWindow& window = openText("walnut\n");
    press(window, {u"'wa'"_s});
    EXPECT_EQ(offered(window), QString());
    EXPECT_TRUE(QTest::qWaitFor([&] { return offered(window) == u"[walnut]"_s; }, 5000));
    press(window, {u"Return"_s});
    EXPECT_EQ(marked(window), u"walnut\nwalnut|"_s);
    // What was just completed is not offered again, nor is what was undone.
    press(window, {u"'s wa'"_s});
    EXPECT_TRUE(QTest::qWaitFor([&] { return completion(window).isOpen(); }, 5000));
    press(window, {u"Return"_s});
    QTest::qWait(450);
    EXPECT_FALSE(completion(window).isOpen());
    press(window, {u"Ctrl+Z"_s});
    QTest::qWait(450);
    EXPECT_FALSE(completion(window).isOpen());

    defaults.setValue(keys::showCompletions, false);
    press(window, {u"'l'"_s});
    QTest::qWait(450);
    EXPECT_FALSE(completion(window).isOpen());
}

TEST_F(TextCompletionTest, offersTheWordsOfTheLanguageAlsoWhileTheListDoesNotOpenByItself)
{
    DocumentWindow& window = open(write("a.css", "p {\n    border-botto"));
    press(window, {u"Ctrl+End"_s, u"F5"_s});
    EXPECT_TRUE(offered(window).startsWith(u"[border-bottom"_s)) << qPrintable(offered(window));
    press(window, {u"Return"_s});
    EXPECT_TRUE(textOf(window).startsWith(u"p {\n    border-bottom"_s));
}

TEST_F(TextCompletionTest, aWordThatIsThereLetsReturnThrough)
{
    DocumentWindow& window = open(write("a.css", "p {\n    border-bottom"));
    press(window, {u"Ctrl+End"_s, u"F5"_s});
    EXPECT_TRUE(offered(window).startsWith(u"[border-bottom] "_s)) << qPrintable(offered(window));
    press(window, {u"Return"_s});
    EXPECT_EQ(marked(window), u"p {\n    border-bottom\n|"_s);
}

TEST_F(TextCompletionTest, completesAtEveryCaret)
{
    DocumentWindow& window = openText("walnut\nw\nw");
    window.document().textView().setSelections({Selection::caret(8), Selection::caret(10)}, 1);
    press(window, {u"F5"_s, u"'a'"_s, u"Tab"_s});
    EXPECT_EQ(marked(window), u"walnut\nwalnut|\nwalnut|"_s);
    press(window, {u"Ctrl+Z"_s});
    EXPECT_EQ(marked(window), u"walnut\nwa|\nwa|"_s);
}

TEST_F(TextCompletionTest, ringsWhereNothingCanBeOffered)
{
    DocumentWindow& window = openText("water ");
    int rings = 0;
    QObject::connect(&window.document().textView(), &QPTextView::beep, &window, [&] { ++rings; });
    press(window, {u"F5"_s});
    EXPECT_EQ(rings, 1);
    EXPECT_FALSE(completion(window).isOpen());
    auto* bell = window.view().findChild<Bell*>();
    ASSERT_TRUE(bell);
    EXPECT_TRUE(bell->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !bell->isVisible(); }, 5000));
}

TEST_F(TextCompletionTest, neverCoversTheLineAndStaysOnTheScreen)
{
    QByteArray lines;
    for (int i = 0; i < 200; ++i)
        lines += "wall" + QByteArray::number(i) + "\n";
    DocumentWindow& window = openText(lines + QByteArray(60, '\n') + "\twa");
    const QRect screen = window.screen()->availableGeometry();
    for (const TextOffset lineFromTop : {0, 3, 1000}) {
        window.resize(500, screen.height() - 60);
        window.move(screen.topLeft() + QPoint(int(screen.width() - 300), 20));
        settle();
        QScrollBar* bar = window.view().verticalScrollBar();
        bar->setValue(bar->maximum() - int(lineFromTop) * 20);
        window.view().showCaret();
        settle();
        press(window, {u"F5"_s});
        ASSERT_FALSE(offered(window).isEmpty());
        const CompletionPopup& popup = *completion(window).popup();
        const QRect caret{
            window.view().viewport()->mapToGlobal(window.view().caretRect().topLeft()),
            window.view().caretRect().size()};
        EXPECT_FALSE(popup.geometry().intersects(
            QRect(screen.left(), caret.top(), screen.width(), caret.height())));
        EXPECT_TRUE(screen.contains(popup.geometry()));
        press(window, {u"Escape"_s});
    }
}

TEST_F(TextCompletionTest, closesWithWhatItStandsBeside)
{
    QByteArray lines("wander\n");
    for (int i = 0; i < 300; ++i)
        lines += "line\n";
    DocumentWindow& window = openText(lines + "wander\nwa");
    TextViewWidget& view = window.view();
    const std::pair<const char*, std::function<void()>> cases[]{
        {"scrolling",
         [&] { view.verticalScrollBar()->setValue(view.verticalScrollBar()->value() - 40); }},
        {"a move of the window", [&] { window.move(window.pos() + QPoint(30, 10)); }},
        {"the loss of the keyboard", [&] { view.clearFocus(); }},
        {"composing",
         [&] {
             QInputMethodEvent event(u"n"_s, {});
             QCoreApplication::sendEvent(&view, &event);
         }},
        {"a click", [&] { QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(9, 9)); }},
    };
    for (const auto& [name, work] : cases) {
        view.setFocus();
        QInputMethodEvent nothing;
        QCoreApplication::sendEvent(&view, &nothing);
        press(window, {u"Ctrl+End"_s});
        settle();
        press(window, {u"F5"_s});
        ASSERT_FALSE(offered(window).isEmpty()) << name;
        work();
        settle();
        EXPECT_FALSE(completion(window).isOpen()) << name;
    }
}

TEST_F(TextCompletionTest, aClickAccepts)
{
    DocumentWindow& window = openText("water wall\nwa");
    press(window, {u"F5"_s});
    ASSERT_EQ(offered(window), u"[wall] water"_s);
    auto* popup = window.view().findChild<CompletionPopup*>();
    ASSERT_TRUE(popup);
    const QRect row = popup->visualRect(popup->model()->index(1, 0));
    QTest::mouseClick(popup->viewport(), Qt::LeftButton, {}, row.center());
    EXPECT_EQ(marked(window), u"water wall\nwater|"_s);
    EXPECT_TRUE(window.view().hasFocus());
}

} // namespace
} // namespace quillory::test
