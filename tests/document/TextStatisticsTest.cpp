#include "document/TextStatistics.h"

#include "text/CharacterSet.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <unicode/ubrk.h>

namespace quillory {
namespace {

TextStatistics statisticsOf(const TextSnapshot& text, const std::vector<TextRange>& selected = {})
{
    StatisticsCount count(text, selected);
    while (count.step())
        ;
    EXPECT_EQ(count.share(), 1);
    return count.statistics();
}

/// All at once, by ICU alone.
qint64 wordsByIcu(const QString& text)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<UBreakIterator, decltype(&ubrk_close)> words(
        ubrk_open(UBRK_WORD, "", reinterpret_cast<const UChar*>(text.utf16()), int32_t(text.size()),
                  &status),
        &ubrk_close);
    qint64 count = 0;
    int32_t start = 0;
    for (int32_t end = ubrk_next(words.get()); end != UBRK_DONE; end = ubrk_next(words.get())) {
        const auto characters = text.mid(start, end - start).toUcs4();
        count += std::any_of(characters.begin(), characters.end(), [](char32_t character) {
            return CharacterSet::alphanumeric().contains(character);
        });
        start = end;
    }
    return count;
}

qint64 wordsInPieces(const TextSnapshot& text, TextOffset pieceUnits)
{
    WordCount count(text, text.range(), pieceUnits);
    while (!count.isAtEnd())
        count.step();
    return count.words();
}

TEST(TextStatistics, CountsByTheRules)
{
    struct Case
    {
        QStringView text;
        qint64 characters;
        qint64 charactersWithoutSpaces;
        qint64 words;
        qint64 lines;
    };
    const Case cases[] = {
        {u"", 0, 0, 0, 1},
        {u"a, b", 4, 3, 2, 1},
        {u"?! … —", 6, 4, 0, 1},
        {u"\tx\u00A0y\r\n", 6, 6, 2, 2},
        {u"can't 3.14 1,000 under_score __ a.b x:y", 39, 33, 7, 1},
        {u"\U0001D49C\U0001D49C \U0001F600", 7, 6, 1, 1},
        {u"e\u0301te\u0301 \u0301", 7, 6, 2, 1},
        {u"שָׁלוֹם עולם", 12, 11, 2, 1},
        {u"한국어 문장", 6, 5, 2, 1},
    };
    for (const Case& c : cases) {
        const TextStatistics statistics = statisticsOf(TextSnapshot(c.text));
        EXPECT_EQ(statistics.characters, c.characters) << c.text.toUtf8().data();
        EXPECT_EQ(statistics.charactersWithoutSpaces, c.charactersWithoutSpaces)
            << c.text.toUtf8().data();
        EXPECT_EQ(statistics.words, c.words) << c.text.toUtf8().data();
        EXPECT_EQ(statistics.lines, c.lines) << c.text.toUtf8().data();
    }
}

TEST(TextStatistics, OfASelectionCountsNoLines)
{
    const TextSnapshot text(QStringView(u"one two\nthree four\n"));
    EXPECT_EQ(statisticsOf(text, {{4, 9}}), (TextStatistics{9, 9, 2, {}}));
    EXPECT_EQ(statisticsOf(text, {{0, 2}, {2, 1}, {8, 11}}), (TextStatistics{14, 13, 4, {}}));
    EXPECT_EQ(statisticsOf(text, {{3, 0}}), (TextStatistics{0, 0, 0, {}}));
}

TEST(TextStatistics, PiecesMakeNoDifference)
{
    constexpr QStringView alphabets[] = {
        u"abZ09_.,';:-\"(/ \t\n",
        u"aé1_.,':’·\u0301\u200D\u00AD \u00A0\n",
        u"aא״'ב1.\u0301 \r\n",
        u"ab漢字かなカナ。ー 한글ก็ไม่ \n",
        u"x\U0001F468\u200D\U0001F469\U0001F1E9\U0001F1EA\uFE0F1\u20E3 \n",
    };
    std::mt19937 random(20261122);
    for (int round = 0; round < 600; ++round) {
        const auto letters = alphabets[size_t(round) % std::size(alphabets)].toUcs4();
        std::u32string characters(random() % 300, U' ');
        for (char32_t& character : characters)
            character = letters[qsizetype(random() % size_t(letters.size()))];
        const QString text = QString::fromStdU32String(characters);
        TextSnapshot snapshot; // of leaves as they come
        for (qsizetype at = 0; at < text.size();) {
            const qsizetype length = qsizetype(1 + random() % 40);
            snapshot = snapshot.replacing({snapshot.length(), 0},
                                          TextSnapshot(QStringView(text).mid(at, length)));
            at += length;
        }
        const qint64 expected = wordsByIcu(text);
        for (const TextOffset pieceUnits : {1, 2, 7, 64, 5000})
            EXPECT_EQ(wordsInPieces(snapshot, pieceUnits), expected)
                << pieceUnits << ": " << text.toUtf8().toPercentEncoding().data();
        EXPECT_EQ(whitespaceCountForString(snapshot, snapshot.range()), text.count(u' '));
    }
}

TEST(TextStatistics, StretchesWithoutBlanksAreCutBetweenWordsOrInsideOne)
{
    const QString oneWord(300'000, u'a');
    const QString marked = QString(u"a\u0301\U0001D49C"_qs).repeated(70'000);
    const QString words = QString(u"(word)-[é]"_qs).repeated(40'000);
    const QString signs(200'000, u'=');
    const QString joined = oneWord + u'.' + oneWord + u'-';
    const QString mixed = u'b' + signs + oneWord + u" x " + oneWord;
    for (const QString& text : {oneWord, marked, words, signs, joined, mixed})
        EXPECT_EQ(wordsInPieces(TextSnapshot(text), 4096), wordsByIcu(text)) << text.size();
}

TEST(TextStatistics, GroupsDigitsAsTheLocaleDoes)
{
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    EXPECT_EQ(thousandFormatedStringFromNumber(0, english), u"0");
    EXPECT_EQ(thousandFormatedStringFromNumber(999, english), u"999");
    EXPECT_EQ(thousandFormatedStringFromNumber(1000, english), u"1,000");
    EXPECT_EQ(thousandFormatedStringFromNumber(1234567, english), u"1,234,567");
    EXPECT_EQ(thousandFormatedStringFromNumber(4096, QLocale(QLocale::German)), u"4.096");
    EXPECT_EQ(thousandFormatedStringFromNumber(4096, QLocale(QLocale::Spanish)), u"4.096");
    EXPECT_EQ(thousandFormatedStringFromNumber(4096, QLocale::c()), u"4,096");
}

} // namespace
} // namespace quillory
