#include "editing/spelling/PageSpelling.h"

#include "WordList.h"

#include "editing/MarkedEditor.h"
#include "editing/spelling/MisspellingSearch.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

class PageSpellingTest : public ::testing::Test
{
protected:
    PageSpellingTest()
    {
        checker.setWantedLanguage(u"aa"_s);
        page.setEnabled(true);
    }

    void settle()
    {
        QTest::qWait(20);
        page.schedule(0);
        // Questions are answered in their order.
        QCoreApplication::processEvents();
        for (int i = 0; i < 3; ++i) {
            bool done = false;
            checker.ask(
                &checker, [](SpellingLexicon&) { return 0; }, [&](int) { done = true; });
            EXPECT_TRUE(QTest::qWaitFor([&] { return done; }));
        }
    }

    void setText(const QString& text)
    {
        editor.storage.replaceCharactersInRange({0, editor.storage.length()}, text);
        editor.view.setSelectedRange({0, 0});
        settle();
    }

    /// The misspelt words that are told of.
    std::string misspelt() const
    {
        QStringList words;
        for (const TextRange range : page.misspelt().all())
            words += editor.storage.snapshot().string(range);
        return words.join(u' ').toStdString();
    }

    WordList::Log log;
    MarkedEditor editor{u"|"_s};
    std::optional<TextRange> inSight; ///< all of the text unless set
    SpellChecker checker{WordList::source(log)};
    PageSpelling page{
        editor.view,
        checker,
        {[this] { return std::vector{inSight.value_or(editor.storage.snapshot().range())}; },
         [] { return SpellingScope(); }}};
};

TEST_F(PageSpellingTest, onlyWhatIsInSightIsLookedAt)
{
    inSight = TextRange{6, 5};
    setText(u"aaaa bbbb cccc dddd hello\n"_s.repeated(1000));
    EXPECT_EQ(misspelt(), "bbbb cccc");
    EXPECT_EQ(log.asked, 2);
    inSight = TextRange{18, 8};
    settle();
    EXPECT_EQ(misspelt(), "bbbb cccc dddd") << "what was found stays, to be seen again at once";
    page.setEnabled(false);
    EXPECT_EQ(misspelt(), "");
    settle();
    EXPECT_EQ(misspelt(), "");
}

TEST_F(PageSpellingTest, theWordAtTheCaretIsToldOfWhenItIsLeft)
{
    editor.view.insertText(u"hello wrol"_s);
    settle();
    EXPECT_EQ(misspelt(), "");
    editor.view.insertText(u"d"_s);
    settle();
    EXPECT_EQ(misspelt(), "");
    EXPECT_EQ(page.misspeltAt(editor.view.selectedRange()), (TextRange{6, 5})) << "but known";
    editor.view.insertText(u" "_s);
    EXPECT_EQ(misspelt(), "wrold") << "at once";
    editor.view.setSelectedRange({editor.view.primarySelection().head - 1, 0});
    settle();
    EXPECT_EQ(misspelt(), "wrold") << "and it stays when the caret comes back";
    editor.view.insertText(u"s"_s);
    EXPECT_EQ(misspelt(), "") << "until it is typed in";
    editor.view.setSelectedRange({6, 0}); // before the word
    settle();
    EXPECT_EQ(misspelt(), "");
    editor.view.moveToBeginningOfDocument(false);
    EXPECT_EQ(misspelt(), "wrolds");
    editor.view.undo();
    editor.view.moveToBeginningOfDocument(false);
    settle();
    EXPECT_EQ(misspelt(), "wrold");
}

TEST_F(PageSpellingTest, manyCaretsTypeAtTheSameTime)
{
    setText(u"a\na\na\n"_s);
    editor.view.setSelectedRanges({{1, 0}, {3, 0}, {5, 0}});
    editor.view.insertText(u"bc"_s);
    settle();
    EXPECT_EQ(misspelt(), "");
    editor.view.keepPrimarySelection();
    EXPECT_EQ(misspelt(), "abc abc");
}

TEST_F(PageSpellingTest, aTextThatWasJustOpenedIsAllToldOf)
{
    page.setEnabled(false);
    setText(u"teh hello"_s);
    page.setEnabled(true);
    settle();
    EXPECT_EQ(misspelt(), "teh");
    editor.view.setSelectedRange({5, 0});
    editor.view.insertText(u"hello "_s);
    editor.view.setSelectedRange({1, 0});
    settle();
    EXPECT_EQ(misspelt(), "teh hhello ello") << "also where the caret is, but nothing was typed";
}

TEST_F(PageSpellingTest, wordsGoWhenTheyAreLearntAndComeBackInAnotherLanguage)
{
    setText(u"hello wrold привет"_s);
    EXPECT_EQ(misspelt(), "wrold");
    QSignalSpy changed(&page, &PageSpelling::changed);
    checker.learn(u"wrold"_s);
    EXPECT_TRUE(changed.wait());
    EXPECT_EQ(misspelt(), "");
    checker.setWantedLanguage(u"ru"_s);
    EXPECT_TRUE(changed.wait());
    EXPECT_EQ(QString::fromStdString(misspelt()), u"привет");
}

TEST_F(PageSpellingTest, withoutDictionariesNothingIsWrong)
{
    WordList::Log none;
    none.languages.clear();
    SpellChecker empty(WordList::source(none));
    PageSpelling other(editor.view, empty,
                       {[this] { return std::vector{editor.storage.snapshot().range()}; },
                        [] { return SpellingScope(); }});
    other.setEnabled(true);
    setText(u"wrold"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return empty.knowsLanguages(); }));
    QTest::qWait(20);
    EXPECT_TRUE(other.misspelt().isEmpty());
    MisspellingSearch search(empty);
    QSignalSpy finished(&search, &MisspellingSearch::finished);
    search.start(editor.storage.snapshot(), 0, {});
    EXPECT_EQ(finished.count(), 1);
}

/// From where the next misspelt word is sought, and where it is found; -1 for nowhere.
TEST_F(PageSpellingTest, theNextMisspeltWordIsFoundThroughTheWholeText)
{
    const QString filler = u"hello world\n"_s.repeated(20000);
    const QString text = u"hello wrold\n"_s + filler + u"teh world"_s;
    const TextOffset last = 12 + filler.size();
    struct Case
    {
        TextOffset from;
        TextOffset found;
    };
    const Case cases[]{{0, 6}, {6, 6}, {7, last}, {last, last}, {last + 1, 6}, {text.size(), 6}};
    MisspellingSearch search(checker);
    std::optional<TextRange> found;
    bool done = false;
    QObject::connect(&search, &MisspellingSearch::finished, &search,
                     [&](const std::optional<TextRange>& word) {
                         found = word;
                         done = true;
                     });
    for (const Case& c : cases) {
        done = false;
        search.start(TextSnapshot(text), c.from, {});
        EXPECT_TRUE(QTest::qWaitFor([&] { return done; }));
        EXPECT_EQ(found ? found->location : -1, c.found) << "from " << c.from;
    }
    done = false;
    search.start(TextSnapshot(filler), 100, {});
    EXPECT_TRUE(QTest::qWaitFor([&] { return done; }));
    EXPECT_FALSE(found);

    done = false;
    search.start(TextSnapshot(filler), 0, {});
    search.cancel();
    settle();
    EXPECT_FALSE(done);
}

} // namespace
} // namespace quillory::test
