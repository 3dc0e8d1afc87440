#include "editing/spelling/SpellChecker.h"

#include "../../support/EnvironmentVariable.h"
#include "WordList.h"

#include "editing/spelling/EnchantEngine.h"
#include "editing/spelling/SpellingLanguage.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace quillory::test {
namespace {

using namespace Qt::StringLiterals;

SpellingLexicon lexicon(WordList::Log& log)
{
    SpellingLexicon result(std::make_unique<WordList>(log));
    result.setLanguage(u"aa"_s);
    return result;
}

TEST(SpellingLexiconTest, itRemembersVerdictsWithinBounds)
{
    WordList::Log log;
    SpellingLexicon words = lexicon(log);
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(words.isMisspelt(u"hello"_s));
        EXPECT_TRUE(words.isMisspelt(u"wrold"_s));
    }
    EXPECT_EQ(log.asked, 2);
    for (qsizetype i = 0; i < SpellingLexicon::rememberedWords; ++i)
        words.isMisspelt(u"w"_s + QString::number(i));
    log.asked = 0;
    EXPECT_TRUE(words.isMisspelt(u"wrold"_s));
    EXPECT_EQ(log.asked, 1) << "it was forgotten";
}

TEST(SpellingLexiconTest, whatIsLearntOrIgnoredPasses)
{
    WordList::Log log;
    SpellingLexicon words = lexicon(log);
    EXPECT_TRUE(words.isMisspelt(u"wrold"_s));
    words.learn(u"wrold"_s);
    EXPECT_FALSE(words.isMisspelt(u"wrold"_s));

    EXPECT_TRUE(words.isMisspelt(u"teh"_s));
    words.ignore(u"teh"_s);
    EXPECT_FALSE(words.isMisspelt(u"teh"_s));
    EXPECT_FALSE(words.isMisspelt(u"Teh"_s));
    words.setLanguage(u"ru"_s);
    EXPECT_FALSE(words.isMisspelt(u"teh"_s)) << "until the program ends, whatever the language";
}

TEST(SpellingLexiconTest, wordsOfOtherScriptsAndWithoutALanguagePass)
{
    WordList::Log log;
    SpellingLexicon words = lexicon(log);
    words.setLanguage(u"ru"_s);
    EXPECT_TRUE(words.isMisspelt(u"привет"_s));
    EXPECT_FALSE(words.isMisspelt(u"wrold"_s));
    words.setLanguage(u"en"_s); // for which there is no dictionary
    EXPECT_FALSE(words.isMisspelt(u"wrold"_s));
}

TEST(SpellingLexiconTest, suggestionsAreFewAndKeepTheApostrophe)
{
    WordList::Log log;
    SpellingLexicon words = lexicon(log);
    const QStringList list = words.suggestions(u"dont’s"_s);
    EXPECT_EQ(list.size(), SpellingLexicon::mostSuggestions);
    EXPECT_EQ(list.front(), u"dont’s’0");
}

TEST(SpellingLanguageTest, theNearestOneIsTaken)
{
    struct Case
    {
        const char* languages;
        const char* wanted;
        const char* nearest;
    };
    const Case cases[]{
        {"de_AT de_DE en_GB en_US", "en_US", "en_US"},
        {"de_AT de_DE en_GB en_US", "de_DE.UTF-8@euro", "de_DE"},
        {"de_AT de_DE en_GB en_US", "de-AT", "de_AT"},
        {"de_AT de_DE en_GB en_US", "de_CH", "de_DE"},
        {"de_AT en_GB", "de", "de_AT"},
        {"de_AT en_GB en_US", "fr_FR", "en_US"},
        {"de_AT en_GB", "C", "en_GB"},
        {"de de_AT", "de_CH", "de"},
        {"nl pt", "fr_FR", "nl"},
        {"", "en_US", ""},
    };
    for (const Case& c : cases) {
        const QStringList languages =
            QString::fromUtf8(c.languages).split(u' ', Qt::SkipEmptyParts);
        EXPECT_EQ(nearestLanguage(languages, QString::fromUtf8(c.wanted)).toStdString(), c.nearest)
            << c.languages << " for " << c.wanted;
    }
    EXPECT_EQ(languageName(u"en_GB"_s), u"English (United Kingdom)");
}

TEST(SpellCheckerTest, theEngineIsMadeByTheFirstQuestionElsewhere)
{
    WordList::Log log;
    QThread* askedOn = nullptr;
    {
        SpellChecker checker(WordList::source(log));
        checker.setWantedLanguage(u"aa"_s);
        QTest::qWait(20);
        EXPECT_EQ(log.made, 0);
        QSignalSpy found(&checker, &SpellChecker::languagesFound);
        QSignalSpy verdicts(&checker, &SpellChecker::verdictsChanged);
        checker.findLanguages();
        checker.findLanguages();
        EXPECT_TRUE(found.wait());
        EXPECT_EQ(checker.language(), u"aa");
        EXPECT_TRUE(verdicts.wait());
        int wrong = 0;
        bool done = false;
        checker.ask(
            &checker,
            [&askedOn](SpellingLexicon& words) {
                askedOn = QThread::currentThread();
                return int(words.isMisspelt(u"wrold"_s)) + int(words.isMisspelt(u"hello"_s));
            },
            [&](int count) {
                wrong = count;
                done = true;
            });
        EXPECT_TRUE(QTest::qWaitFor([&] { return done; }));
        EXPECT_EQ(wrong, 1);
        EXPECT_NE(askedOn, QThread::currentThread());

        checker.learn(u"wrold"_s);
        EXPECT_TRUE(verdicts.wait());
        checker.setWantedLanguage(u"ru"_s);
        EXPECT_TRUE(verdicts.wait());
        EXPECT_EQ(checker.language(), u"ru");
        EXPECT_EQ(found.count(), 1);
    }
    EXPECT_EQ(log.made, 1);
}

TEST(SpellCheckerTest, anAnswerToNobodyIsDropped)
{
    WordList::Log log;
    SpellChecker checker(WordList::source(log));
    auto gone = std::make_unique<QObject>();
    bool answered = false;
    checker.ask(
        gone.get(), [](SpellingLexicon&) { return 0; }, [&](int) { answered = true; });
    gone.reset();
    bool later = false;
    checker.ask(
        &checker, [](SpellingLexicon&) { return 0; }, [&](int) { later = true; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return later; }));
    EXPECT_FALSE(answered);
}

/// A dictionary, and a word list, in a folder that Enchant is told of.
TEST(EnchantEngineTest, itKnowsTheWordsOfADictionaryAndLearns)
{
    QTemporaryDir folder;
    const EnvironmentVariable configuration("ENCHANT_CONFIG_DIR", folder.path().toUtf8());
    QDir(folder.path()).mkpath(u"hunspell"_s);
    const auto write = [&](const QString& name, const QByteArray& bytes) {
        QFile file(folder.filePath(u"hunspell/"_s + name));
        EXPECT_TRUE(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    };
    write(u"qq_QQ.aff"_s, "SET UTF-8\nTRY esianrtolcdugmphbyfvkwz\nWORDCHARS '\n");
    write(u"qq_QQ.dic"_s, "3\nhello\nworld\nfiancée\n");
    {
        const auto engine = makeEnchantEngine();
        EXPECT_TRUE(engine->languages().contains(u"qq_QQ"_s));
        EXPECT_FALSE(engine->setLanguage(u"xx_XX"_s));
        EXPECT_TRUE(engine->isCorrect(u"wrold"_s)) << "without a language nothing is wrong";
        ASSERT_TRUE(engine->setLanguage(u"qq_QQ"_s));
        EXPECT_TRUE(engine->isCorrect(u"Fiancée"_s));
        EXPECT_FALSE(engine->isCorrect(u"wrold"_s));
        EXPECT_EQ(engine->suggestions(u"wrold"_s), QStringList(u"world"_s));
        engine->learn(u"wrold"_s);
        EXPECT_TRUE(engine->isCorrect(u"wrold"_s));
    }
    const auto again = makeEnchantEngine();
    ASSERT_TRUE(again->setLanguage(u"qq_QQ"_s));
    EXPECT_TRUE(again->isCorrect(u"wrold"_s)) << "what was learnt is kept";
}

} // namespace
} // namespace quillory::test
