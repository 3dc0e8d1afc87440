#include "TextModel.h"

#include "text/UndoManager.h"

#include <QSignalSpy>
#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

struct Fixture : ::testing::Test
{
    TextStorage storage;
    UndoManager undo{storage};

    std::string text() const { return storage.snapshot().string().toStdString(); }

    void type(const char* string)
    {
        for (const char* c = string; *c != 0; ++c) {
            const TextOffset end = storage.length();
            undo.beginUndoGrouping({Selection::caret(end)}, UndoKind::Typing);
            undo.replaceCharactersInRange({end, 0}, TextSnapshot(QString(QLatin1Char(*c))));
            undo.setActionName(QStringLiteral("Typing"));
            undo.endUndoGrouping({Selection::caret(end + 1)});
        }
    }

    void erase()
    {
        const TextOffset end = storage.length();
        undo.beginUndoGrouping({Selection::caret(end)}, UndoKind::Deleting);
        undo.replaceCharactersInRange({end - 1, 1}, TextSnapshot());
        undo.endUndoGrouping({Selection::caret(end - 1)});
    }
};

using UndoManagerTest = Fixture;

TEST_F(UndoManagerTest, TypingJoinsIntoWordsAndLines)
{
    type("one two,  three\nfour");
    const std::vector<std::string> steps = {"one two,  three\n", "one two,  three", "one two,  ",
                                            "one ", ""};
    for (const std::string& step : steps) {
        EXPECT_EQ(undo.undoActionName(), QStringLiteral("Typing"));
        undo.undo();
        EXPECT_EQ(text(), step);
    }
    EXPECT_FALSE(undo.canUndo());
    for (size_t i = steps.size() - 1; i-- > 0;) {
        undo.redo();
        EXPECT_EQ(text(), steps[i]);
    }
    undo.redo();
    EXPECT_EQ(text(), "one two,  three\nfour");
    EXPECT_FALSE(undo.canRedo());
}

TEST_F(UndoManagerTest, DeletingJoinsAndAMovedCaretDoesNot)
{
    type("abcd");
    erase();
    erase();
    undo.breakCoalescing();
    erase();
    undo.undo();
    EXPECT_EQ(text(), "ab");
    undo.undo();
    EXPECT_EQ(text(), "abcd");
    undo.undo();
    EXPECT_EQ(text(), "");
}

TEST_F(UndoManagerTest, GroupsNestAndGiveBackSelectionsAndNames)
{
    QSignalSpy taken(&undo, &UndoManager::stepTaken);
    type("x");
    undo.beginUndoGrouping({Selection::caret(1)});
    undo.beginUndoGrouping();
    undo.replaceCharactersInRange({0, 1}, TextSnapshot(QStringLiteral("ab")));
    undo.endUndoGrouping();
    undo.replaceCharactersInRange({1, 0}, TextSnapshot(QStringLiteral("-")));
    undo.setActionName(QStringLiteral("Changed Encoding"));
    EXPECT_FALSE(undo.canUndo()); // not within an open group
    undo.endUndoGrouping({Selection{0, 2}});
    EXPECT_EQ(text(), "a-b");
    EXPECT_EQ(undo.undoActionName(), QStringLiteral("Changed Encoding"));

    undo.undo();
    EXPECT_EQ(text(), "x");
    EXPECT_EQ(taken.takeLast()[0].value<std::vector<Selection>>(),
              (std::vector<Selection>{Selection::caret(1)}));
    undo.redo();
    EXPECT_EQ(text(), "a-b");
    EXPECT_EQ(taken.takeLast()[0].value<std::vector<Selection>>(),
              (std::vector<Selection>{{0, 2}}));

    undo.beginUndoGrouping();
    undo.endUndoGrouping();
    EXPECT_EQ(undo.undoActionName(), QStringLiteral("Changed Encoding")); // an empty group is none
}

TEST_F(UndoManagerTest, CleanMarkFollowsUndoAndRedo)
{
    EXPECT_TRUE(undo.isClean());
    type("ab");
    EXPECT_FALSE(undo.isClean());
    undo.markClean();
    type("c"); // a step of its own, though it is the same word
    EXPECT_FALSE(undo.isClean());
    undo.undo();
    EXPECT_TRUE(undo.isClean());
    EXPECT_EQ(text(), "ab");
    undo.undo();
    EXPECT_FALSE(undo.isClean());
    undo.redo();
    EXPECT_TRUE(undo.isClean());
    undo.undo();
    type("z"); // the marked text cannot be reached any more
    undo.undo();
    EXPECT_FALSE(undo.isClean());

    undo.markClean();
    storage.replaceCharactersInRange({0, 0}, u"unrecorded");
    EXPECT_FALSE(undo.isClean());
    undo.undo();
    undo.redo();
    EXPECT_FALSE(undo.isClean());
}

TEST_F(UndoManagerTest, UnrecordedEditsMoveTheSteps)
{
    struct Case
    {
        const char* name;
        TextRange recorded; // in "0123456789"
        const char* with;
        TextRange direct; // in the text after it
        const char* directWith;
        const char* undone;
        const char* redone;
    };
    const std::vector<Case> cases = {
        {"before", {5, 2}, "AB", {0, 1}, "\t\t", "\t\t123456789", "\t\t1234AB789"},
        {"after", {5, 2}, "AB", {8, 1}, "", "012345679", "01234AB79"},
        {"inside", {5, 2}, "ABC", {6, 1}, "xx", "0123456789", "01234AxxC789"},
        {"over the start", {5, 2}, "ABC", {4, 2}, "x", "0123x56789", "0123xBC789"},
        {"over the end", {5, 2}, "ABC", {7, 2}, "x", "0123456x89", "01234ABx89"},
        {"over all of it", {5, 2}, "ABC", {4, 5}, "x", "0123x89", "0123x89"},
        {"just before a deletion", {5, 2}, "", {4, 1}, "x", "0123x56789", "0123x789"},
        {"at a deletion", {5, 2}, "", {5, 0}, "x", "01234x56789", "01234x789"},
    };
    for (const Case& c : cases) {
        TextStorage plain;
        UndoManager manager(plain);
        plain.replaceCharactersInRange({0, 0}, u"0123456789");
        manager.replaceCharactersInRange(c.recorded, TextSnapshot(QString::fromLatin1(c.with)));
        plain.replaceCharactersInRange(c.direct, QString::fromLatin1(c.directWith));
        manager.undo();
        EXPECT_EQ(plain.snapshot().string(), QString::fromLatin1(c.undone)) << c.name;
        manager.redo();
        EXPECT_EQ(plain.snapshot().string(), QString::fromLatin1(c.redone)) << c.name;
    }
}

// Letters of the old text are small, recorded edits put in capitals and take away small letters,
// unrecorded ones put in digits. Undoing all must give back the old text with nothing but digits
// added, and redoing all the text from which the undoing began.
TEST_F(UndoManagerTest, RandomMixesGoBackAndForth)
{
    std::minstd_rand engine(11);
    const auto below = [&](qsizetype limit) { return qsizetype(engine() % size_t(limit)); };
    for (int round = 0; round < 2000; ++round) {
        TextStorage plain;
        UndoManager manager(plain);
        const QString old = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
        plain.replaceCharactersInRange({0, 0}, old);
        for (int edit = 0; edit < 12; ++edit) {
            const TextOffset location = below(plain.length() + 1);
            switch (below(4)) {
            case 0:
                plain.replaceCharactersInRange({location, 0}, QString(below(3), QLatin1Char('7')));
                break;
            case 1:
                below(2) ? manager.undo() : manager.redo();
                break;
            default: {
                manager.beginUndoGrouping();
                manager.replaceCharactersInRange({location, below(4)},
                                                 TextSnapshot(QString(below(4), QLatin1Char('Z'))));
                if (below(3) == 0)
                    plain.replaceCharactersInRange({below(plain.length() + 1), 0}, u"3");
                manager.replaceCharactersInRange({below(plain.length() + 1), below(2)},
                                                 TextSnapshot(QStringLiteral("Y")));
                manager.endUndoGrouping();
            }
            }
        }
        while (manager.canRedo())
            manager.redo();
        const QString newest = plain.snapshot().string();
        while (manager.canUndo())
            manager.undo();
        QString letters;
        for (const QChar c : plain.snapshot().string()) {
            if (!c.isDigit())
                letters += c;
        }
        ASSERT_EQ(letters, old) << "round " << round;
        while (manager.canRedo())
            manager.redo();
        ASSERT_EQ(plain.snapshot().string(), newest) << "round " << round;
    }
}

// Many edits at once are the same as one after the other, there and back.
TEST_F(UndoManagerTest, EditsAtOnceKeepToTheModel)
{
    std::mt19937 random(11);
    const auto below = [&](TextOffset n) { return TextOffset(random() % unsigned(n)); };
    const std::u16string alphabet = u"ab\r\n\u00e9\u4e00\U0001F600";
    const auto someText = [&](TextOffset length) {
        std::u16string result;
        for (TextOffset i = 0; i < length; ++i)
            result += alphabet[size_t(below(TextOffset(alphabet.size())))];
        return result;
    };
    const std::u16string first = someText(50'000);
    storage.replaceCharactersInRange({}, QString::fromStdU16String(first));
    std::vector<std::u16string> texts{first};
    for (int round = 0; round < 60; ++round) {
        test::TextModel model{texts.back()};
        std::vector<TextEdit> edits;
        // Dense, sparse, and with a long replacement now and then.
        const TextOffset spread = 1 + below(round % 2 == 0 ? 10 : 9000);
        TextOffset shift = 0;
        for (TextOffset at = below(spread); at < storage.length(); at += 1 + below(spread)) {
            const TextRange range{at, std::min(below(4), storage.length() - at)};
            const std::u16string with = someText(below(100) == 0 ? 6000 : below(4));
            edits.push_back({range, TextSnapshot(QString::fromStdU16String(with))});
            model.replace({at + shift, range.length}, with);
            shift += TextOffset(with.size()) - range.length;
            at = range.end();
        }
        undo.replaceCharacters(edits);
        ASSERT_EQ(storage.snapshot().string(), QString::fromStdU16String(model.text));
        ASSERT_EQ(test::treeFault(storage.snapshot()), "");
        texts.push_back(model.text);
        if (storage.length() > 200'000)
            break;
    }
    const auto expectText = [&](size_t index) {
        ASSERT_EQ(storage.snapshot().string(), QString::fromStdU16String(texts[index]));
        ASSERT_EQ(test::treeFault(storage.snapshot()), "");
    };
    for (size_t i = texts.size() - 1; i-- > 0;) {
        undo.undo();
        expectText(i);
    }
    for (size_t i = 1; i < texts.size(); ++i) {
        undo.redo();
        expectText(i);
    }
}

} // namespace
} // namespace quillory
