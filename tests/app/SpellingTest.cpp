#include "AppFixture.h"

#include "../editing/spelling/WordList.h"
#include "../support/EnvironmentVariable.h"
#include "../view/EventLoopWatchdog.h"

#include "app/SpellingAids.h"
#include "app/StatusLine.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QContextMenuEvent>
#include <QDir>
#include <QMenu>
#include <QTest>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

constexpr int patience = 20000; ///< milliseconds; only a failing test waits that long

/// The program with a dictionary of the language "qq_QQ", which knows hello and world.
class SpellingTest : public AppFixture
{
protected:
    SpellingTest()
    {
        QDir(folder.path()).mkpath(u"enchant/hunspell"_s);
        write("enchant/hunspell/qq_QQ.aff", "SET UTF-8\nTRY esianrtolcdugmphbyfvkwz\n");
        write("enchant/hunspell/qq_QQ.dic", "2\nhello\nworld\n");
        defaults.setValue(keys::spellingLanguage, u"qq_QQ"_s);
        defaults.setValue(keys::checkSpelling, true);
    }
    static std::vector<TextRange> misspelt(const DocumentWindow& window)
    {
        return window.spelling().page().misspelt().all();
    }
    static bool waitForMisspelt(const DocumentWindow& window, size_t count)
    {
        return QTest::qWaitFor([&] { return misspelt(window).size() == count; }, patience);
    }

    /// The pixels of the view that are as red as a wave.
    static int redPixels(DocumentWindow& window)
    {
        const QImage image = window.view().viewport()->grab().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor colour = image.pixelColor(x, y);
                count += colour.red() - std::max(colour.green(), colour.blue()) > 120;
            }
        }
        return count;
    }

    /// Opens the context menu on the character at \a offset; the menu, when it has suggestions.
    static QMenu& ask(DocumentWindow& window, TextOffset offset)
    {
        QWidget& viewport = *window.view().viewport();
        const QPoint point = window.view().caretRectAt(offset).center() + QPoint(2, 0);
        QContextMenuEvent event(QContextMenuEvent::Mouse, point, viewport.mapToGlobal(point));
        QCoreApplication::sendEvent(&viewport, &event);
        QMenu& menu = *window.document().textView().contextMenu();
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return !menu.actions().front()->text().startsWith(u"Looking"); }, patience));
        return menu;
    }
    static QAction* actionOf(const QMenu& menu, const QString& text)
    {
        for (QAction* action : menu.actions()) {
            if (action->text().remove(u'&') == text)
                return action;
        }
        return nullptr;
    }
    QByteArray learnt() const { return bytesOf(folder.filePath(u"enchant/qq_QQ.dic"_s)); }

private:
    EnvironmentVariable m_configuration{"ENCHANT_CONFIG_DIR",
                                        folder.filePath(u"enchant"_s).toUtf8()};
};

TEST_F(SpellingTest, misspeltWordsInSightHaveWavesWhileItIsOn)
{
    DocumentWindow& window = open(write("a.txt", QByteArray("hello wrold\n").repeated(5000)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !misspelt(window).empty(); }, patience));
    const size_t lines = misspelt(window).size();
    EXPECT_LT(lines, 200U);
    EXPECT_GE(lines, size_t(window.view().viewport()->height() / 40));
    EXPECT_GT(redPixels(window), 100);

    window.goToOffset(window.document().completeString().length());
    EXPECT_TRUE(QTest::qWaitFor([&] { return misspelt(window).size() > lines; }, patience));
    EXPECT_EQ(misspelt(window).back().end(), window.document().completeString().length() - 1);
    EXPECT_LT(misspelt(window).size(), 400U);

    choose(window, u"Edit/Check Spelling While Typing"_s);
    EXPECT_TRUE(misspelt(window).empty());
    EXPECT_EQ(redPixels(window), 0);
    EXPECT_FALSE(defaults.value(keys::checkSpelling));
    choose(window, u"Edit/Check Spelling While Typing"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !misspelt(window).empty(); }, patience));
}

TEST_F(SpellingTest, ofALongLineOnlyWhatIsInSightIsMarked)
{
    DocumentWindow& window = open(write("a.txt", QByteArray("wrold ").repeated(200000)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !misspelt(window).empty(); }, patience));
    EXPECT_LT(misspelt(window).size(), 500U);
    window.goToOffset(600000); // to the right in the same line
    EXPECT_TRUE(QTest::qWaitFor([&] { return misspelt(window).back().end() > 599000; }, patience));
    EXPECT_LT(misspelt(window).size(), 1000U);
}

TEST_F(SpellingTest, aSuggestionReplacesTheWordInOneStep)
{
    DocumentWindow& window = open(write("a.txt", "hello wrold & hello\n"));
    ASSERT_TRUE(waitForMisspelt(window, 1));
    QMenu& menu = ask(window, 8);
    EXPECT_EQ(menu.actions().front()->text(), u"world");
    EXPECT_TRUE(actionOf(menu, u"Select All"_s)) << "the usual commands follow";
    menu.actions().front()->trigger();
    menu.close();
    EXPECT_EQ(textOf(window), u"hello world & hello\n");
    EXPECT_TRUE(misspelt(window).empty());
    EXPECT_EQ(window.document().undoManager().undoActionName(), u"Correct Spelling");
    press(window, {u"Ctrl+Z"_s});
    EXPECT_EQ(textOf(window), u"hello wrold & hello\n");
    EXPECT_TRUE(waitForMisspelt(window, 1));

    // The keyboard asks for the word at the caret; elsewhere the menu is as ever.
    window.document().textView().setSelectedRange({11, 0});
    press(window, {u"Shift+F10"_s});
    EXPECT_TRUE(QTest::qWaitFor([&] { return actionOf(menu, u"world"_s); }, patience));
    menu.close();
    window.document().textView().setSelectedRange({2, 0});
    press(window, {u"Shift+F10"_s});
    EXPECT_FALSE(actionOf(menu, u"world"_s));
    EXPECT_FALSE(actionOf(menu, u"Learn Spelling"_s));
    menu.close();
}

TEST_F(SpellingTest, wordsAreLearntForEverOrIgnoredForTheSession)
{
    DocumentWindow& window = open(write("a.txt", "wrold teh wrold\n"));
    DocumentWindow& other = open(write("b.txt", "wrold teh\n"));
    ASSERT_TRUE(waitForMisspelt(window, 3));
    ASSERT_TRUE(waitForMisspelt(other, 2));

    actionOf(ask(window, 2), u"Learn Spelling"_s)->trigger();
    EXPECT_TRUE(waitForMisspelt(window, 1));
    EXPECT_TRUE(waitForMisspelt(other, 1));
    EXPECT_TRUE(learnt().contains("wrold"));
    actionOf(ask(window, 7), u"Ignore Spelling"_s)->trigger();
    EXPECT_TRUE(waitForMisspelt(window, 0));
    EXPECT_TRUE(waitForMisspelt(other, 0));
    EXPECT_FALSE(learnt().contains("teh"));
    EXPECT_FALSE(window.document().isDocumentEdited());
}

TEST_F(SpellingTest, nextMisspellingIsFoundAlsoWhileCheckingIsOff)
{
    defaults.setValue(keys::checkSpelling, false);
    const QByteArray lines = QByteArray("hello world\n").repeated(20000);
    DocumentWindow& window = open(write("a.txt", "teh hello\n" + lines + "hello wrold\n"));
    QPTextView& editor = window.document().textView();
    press(window, {u"F7"_s});
    const TextRange last{10 + lines.size() + 6, 5};
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            return editor.selectedRange() == TextRange{0, 3};
        },
        patience));
    press(window, {u"F7"_s});
    EXPECT_TRUE(QTest::qWaitFor([&] { return editor.selectedRange() == last; }, patience));
    EXPECT_FALSE(window.view().caretRect().isEmpty()) << "it is in sight";
    EXPECT_TRUE(window.statusLine().activityText().isEmpty());
    EXPECT_TRUE(misspelt(window).empty());

    // Any key gives the search up.
    press(window, {u"F7"_s, u"Left"_s});
    const TextRange where = editor.selectedRange();
    QTest::qWait(300);
    EXPECT_EQ(editor.selectedRange(), where);
    EXPECT_TRUE(window.statusLine().activityText().isEmpty());
}

TEST_F(SpellingTest, theLanguageIsChosenInAMenu)
{
    DocumentWindow& window = open(write("a.txt", "hello\n"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return controller.spellChecker().knowsLanguages(); }));
    const QAction* const language = command(window, u"Edit/Spelling Language"_s);
    ASSERT_TRUE(language);
    Q_EMIT language->menu()->aboutToShow();
    QStringList ticked;
    for (const QAction* action : language->menu()->actions()) {
        if (action->isChecked())
            ticked += action->text();
    }
    EXPECT_EQ(ticked.size(), 1);
    choose(window, u"Edit/Spelling Language/Language of the Desktop"_s);
    EXPECT_EQ(defaults.value(keys::spellingLanguage), QString());
    EXPECT_NE(controller.spellChecker().language(), u"qq_QQ");
}

TEST_F(SpellingTest, withoutADictionaryTheMenuSaysHowToGetOne)
{
    WordList::Log none;
    none.languages.clear();
    QSettings ownState(folder.filePath(u"Other.conf"_s), QSettings::IniFormat);
    DocumentController bare(environment, questions, ownState, WordList::source(none));
    DocumentWindow& window = *bare.newDocument();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    press(window, {u"'wrold '"_s});
    ASSERT_TRUE(QTest::qWaitFor([&] { return bare.spellChecker().knowsLanguages(); }));
    QTest::qWait(400);
    EXPECT_TRUE(misspelt(window).empty());
    const QAction* const language = command(window, u"Edit/Spelling Language"_s);
    Q_EMIT language->menu()->aboutToShow();
    ASSERT_EQ(language->menu()->actions().size(), 2);
    EXPECT_TRUE(language->menu()->actions().back()->text().contains(u"Hunspell"));
    press(window, {u"F7"_s});
    EXPECT_TRUE(window.statusLine().activityText().contains(u"dictionary"));
}

TEST_F(SpellingTest, typingInLargeTextsGoesOnAsEver)
{
    const QByteArray words = QByteArray("hello wrold misspelt wrods ");
    const QByteArray lines = QByteArray(words + '\n').repeated(1 << 19);
    const QByteArray line = words.repeated(10 * 1024 * 1024 / words.size());
    for (const auto& [name, bytes] : {std::pair("lines.txt", lines), {"line.txt", line}}) {
        DocumentWindow& window = open(write(name, bytes));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window.document().isLoading(); }, patience));
        window.goToOffset(bytes.size() / 2);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !misspelt(window).empty(); }, patience));
        EventLoopWatchdog watchdog;
        for (int i = 0; i < 30; ++i) {
            watchdog.watch("a key", [&] { press(window, {i % 6 == 5 ? u"' '"_s : u"'w'"_s}); });
            QTest::qWait(i % 10 == 9 ? PageSpelling::typingPause + 100 : 5);
        }
        EXPECT_FALSE(misspelt(window).empty());
        window.document().undoManager().markClean();
    }
}

} // namespace
} // namespace quillory::test
