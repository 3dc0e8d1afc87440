#include "text/TextBoundary.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

/// The text without its marks, and where they stood.
struct Marked
{
    TextSnapshot text;
    std::vector<TextOffset> marks;

    explicit Marked(QString string)
    {
        for (qsizetype at; (at = string.indexOf(QLatin1Char('|'))) >= 0;) {
            marks.push_back(at);
            string.remove(at, 1);
        }
        text = TextSnapshot(string);
    }
};

TEST(TextBoundary, CharactersAreThoseThatReadersSee)
{
    const QString cases[] = {
        QStringLiteral("|a|b|"),
        QStringLiteral("|a|\r\n|b|\n|\r|"),
        QStringLiteral("|e\u0301|x|"),                                     // combining accent
        QString::fromUtf8("|\U0001F469\u200D\U0001F4BB|\U0001F600|"),      // joined emoji
        QString::fromUtf8("a|\U0001F1E9\U0001F1EA|\U0001F1EB\U0001F1F7|"), // two flags
        QStringLiteral("|\u0915\u093F|\u0928|"),                           // Devanagari
        QStringLiteral("|\u1112\u1161\u11AB|\u1100|"),                     // Hangul
        QStringLiteral("|\xD83D|x|\xDE00|"),                               // unpaired surrogates
    };
    for (const QString& string : cases) {
        const Marked c(string);
        for (size_t i = 0; i + 1 < c.marks.size(); ++i) {
            EXPECT_EQ(characterAfter(c.text, c.marks[i]), c.marks[i + 1]) << string.toStdString();
            EXPECT_EQ(characterBefore(c.text, c.marks[i + 1]), c.marks[i]) << string.toStdString();
            for (TextOffset inside = c.marks[i]; inside < c.marks[i + 1]; ++inside)
                EXPECT_EQ(characterStart(c.text, inside), c.marks[i]) << string.toStdString();
        }
    }
}

TEST(TextBoundary, DeletingGoesByWhatIsTypedInOneGo)
{
    // The marks are where it stops on its way back from the end.
    const QString cases[] = {
        QStringLiteral("|a|b|"),
        QStringLiteral("|a|\r\n|"),
        QStringLiteral("|e|\u0301|\u0323|"),             // accents
        QStringLiteral("|\u0915|\u094D|\u0937|\u093F|"), // a conjunct with its vowel
        QStringLiteral("|\u1112|\u1161|\u11AB|\uD55C|"), // letters, and a syllable
        QStringLiteral("|\u05E9|\u05C1|\u05B8|"),        // points
        QString::fromUtf8("|\U0001F469\u200D\U0001F4BB|\U0001F44D\U0001F3FD|"),
        QString::fromUtf8("|\U0001F1E9\U0001F1EA|\U0001F1EB\U0001F1F7|"), // two flags
        QStringLiteral("|1\uFE0F\u20E3|\u2764\uFE0F|\u845B\U000E0100|"),  // keycap, variants
        QStringLiteral("|\u0645|\u06CC|\u200C|"),                         // a non-joiner
        QStringLiteral("|\xD83D|x|\xDE00|"),                              // unpaired surrogates
    };
    for (const QString& string : cases) {
        const Marked c(string);
        for (size_t i = c.marks.size() - 1; i > 0; --i)
            EXPECT_EQ(deletionStartBefore(c.text, c.marks[i]), c.marks[i - 1])
                << string.toStdString();
    }
}

TEST(TextBoundary, WordMovementStopsAtWordsAndLines)
{
    // Marks are where wordEndAfter stops from the start on, and where wordStartBefore does from the
    // end on.
    const std::pair<QString, QString> cases[] = {
        {QStringLiteral("|one| two_2|  (three|)|"), QStringLiteral("|one |two_2  (|three)|")},
        {QStringLiteral("|a| b| |\n|  c|"), QStringLiteral("|a |b |\n|  |c|")},
        {QStringLiteral("|\n|\r\n|x|"), QStringLiteral("|\n|\r\n|x|")},
        {QStringLiteral("|don't| 3.14| a.b|"), QStringLiteral("|don't |3.14 |a.b|")},
    };
    for (const auto& [forward, backward] : cases) {
        const Marked f(forward);
        for (size_t i = 0; i + 1 < f.marks.size(); ++i)
            EXPECT_EQ(wordEndAfter(f.text, f.marks[i]), f.marks[i + 1]) << forward.toStdString();
        const Marked b(backward);
        for (size_t i = b.marks.size() - 1; i > 0; --i)
            EXPECT_EQ(wordStartBefore(b.text, b.marks[i]), b.marks[i - 1])
                << backward.toStdString();
    }
}

TEST(TextBoundary, WordAtTakesWordsBlanksOrASign)
{
    const TextSnapshot text(QStringLiteral("one  \ttwo+x\r\nlast"));
    EXPECT_EQ(wordAt(text, 1), (TextRange{0, 3}));
    EXPECT_EQ(wordAt(text, 4), (TextRange{3, 3}));
    EXPECT_EQ(wordAt(text, 9), (TextRange{9, 1}));
    EXPECT_EQ(wordAt(text, 11), (TextRange{11, 2})); // the line break, whole
    EXPECT_EQ(wordAt(text, text.length()), (TextRange{13, 4}));
    EXPECT_EQ(wordAt(TextSnapshot(), 0), (TextRange{0, 0}));
}

TEST(TextBoundary, LongLinesAndClustersCostNoMoreThanTheirNeighbourhood)
{
    QString string(300000, QLatin1Char('x'));
    const TextSnapshot word(string);
    EXPECT_GT(wordEndAfter(word, 150000), 150000);
    EXPECT_LT(wordStartBefore(word, 150000), 150000);
    string.fill(QChar(0x0301));
    const TextSnapshot marks(string);
    EXPECT_GT(characterAfter(marks, 1000), 1000);
    EXPECT_LT(characterBefore(marks, 200000), 200000);
    EXPECT_LE(200000 - characterBefore(marks, 200000), 5000);
}

} // namespace
} // namespace quillory
