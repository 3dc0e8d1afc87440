#include "ViewHarness.h"

#include "text/TextBoundary.h"

#include <QTest>
#include <set>

namespace quillory {

namespace {

struct BidiCase
{
    const char* name;
    QString text; ///< one line
    bool wraps = false;
};

const QString hebrew = QStringLiteral("\u05d0\u05d1\u05d2 \u05d3\u05d4\u05d5");
const QString arabic = QStringLiteral("\u0645\u0631\u062d\u0628\u0627 \u0628\u0643");

const BidiCase bidiCases[] = {
    {"latin", QStringLiteral("plain words")},
    {"hebrew", hebrew},
    {"arabic", arabic},
    {"hebrewInLatin", QStringLiteral("one ") + hebrew + QStringLiteral(" two")},
    {"latinInHebrew", hebrew + QStringLiteral(" one ") + hebrew},
    {"numbersInArabic", arabic + QStringLiteral(" 123, 45.6 ") + arabic},
    {"startsAgainstTheLine", QStringLiteral("(") + hebrew + QStringLiteral(") one")},
    {"endsAgainstTheLine", QStringLiteral("one ") + hebrew},
    {"points", QStringLiteral("\u05e9\u05b8\u05c1\u05dc\u05d5\u05b9\u05dd x\u0301 y")},
    {"tabs", QStringLiteral("a\t") + hebrew + QStringLiteral("\tb")},
    {"longHebrew", repeated(hebrew + u' ', 5000)},
    {"longMixed", repeated(hebrew + QStringLiteral(" one two "), 5000)},
};

class VisualMovementTest : public testing::TestWithParam<BidiCase>
{};

TEST_P(VisualMovementTest, passesEveryCharacterInTheOrderShown)
{
    ViewHarness harness(GetParam().text);
    const bool rightToLeft = GetParam().text.isRightToLeft();
    const TextOffset length = harness.storage.length();
    size_t characters = 0;
    for (TextOffset at = 0; at < length; at = characterAfter(harness.storage.snapshot(), at))
        ++characters;
    const size_t limit = std::min<size_t>(characters, 60);
    const char* const forward = rightToLeft ? "Left" : "Right";
    const char* const back = rightToLeft ? "Right" : "Left";

    harness.press({QStringLiteral("Home")});
    if (GetParam().name == std::string("startsAgainstTheLine"))
        harness.press({QStringLiteral("Ctrl+Home")});
    std::vector<int> places{harness.view.caretRect().x()};
    for (size_t i = 0; i < limit; ++i) {
        harness.press({QString::fromLatin1(forward)});
        const int x = harness.view.caretRect().x();
        EXPECT_TRUE(rightToLeft ? x < places.back() : x > places.back())
            << i << ": from " << places.back() << " to " << x;
        const TextOffset head = harness.editor.primarySelection().head;
        EXPECT_EQ(characterStart(harness.storage.snapshot(), head), head);
        places.push_back(x);
    }
    if (limit == characters) {
        // At the far edge there is nothing more to pass.
        const TextOffset edge = harness.editor.primarySelection().head;
        harness.press({QString::fromLatin1(forward)});
        EXPECT_EQ(harness.editor.primarySelection().head, edge);
    }
    for (size_t i = limit; i > 0; --i) {
        harness.press({QString::fromLatin1(back)});
        EXPECT_NEAR(harness.view.caretRect().x(), places[i - 1], 1) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Table, VisualMovementTest, testing::ValuesIn(bidiCases),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(VisualMovementKeys, followTheLinesOwnDirection)
{
    struct Case
    {
        QString before;
        const char* key;
        QString after;
    };
    const QString a = QStringLiteral("\u05d0\u05d1");
    const QString b = QStringLiteral("\u05d2\u05d3");
    const Case cases[] = {
        // Over the edges of lines that are written from right to left.
        {a + u"|\n" + b, "Left", a + u"\n|" + b},
        {a + u"\n|" + b, "Right", a + u"|\n" + b},
        {QStringLiteral("ab|\n") + a, "Right", QStringLiteral("ab\n") + a + u'|'},
        {a + QStringLiteral("|\nab"), "Left", a + QStringLiteral("\nab|")},
        // A selection collapses to the side of the key.
        {u'^' + a + u'|' + b, "Left", a + u'|' + b},
        {u'^' + a + u'|' + b, "Right", u'|' + a + b},
        // Extending, by words, several carets.
        {u'|' + a, "Shift+Left", u'^' + a.left(1) + u'|' + a.mid(1)},
        {u'|' + a + u' ' + b, "Ctrl+Left", a + u'|' + u' ' + b},
        {a + u' ' + b + u'|', "Ctrl+Shift+Right", a + u' ' + u'|' + b + u'^'},
        {u'|' + a + u"\n|" + b, "Left",
         a.left(1) + u'|' + a.mid(1) + u'\n' + b.left(1) + u'|' + b.mid(1)},
        {a + u' ' + b + u"|\nxy", "Home", u'|' + a + u' ' + b + u"\nxy"},
        {u'|' + a + u' ' + b + u"\nxy", "End", a + u' ' + b + u"|\nxy"},
    };
    for (const Case& row : cases) {
        ViewHarness harness;
        harness.setMarked(row.before);
        harness.press({QString::fromLatin1(row.key)});
        EXPECT_EQ(harness.marked(), row.after) << row.key << " on " << row.before.toStdString()
                                               << " gave " << harness.marked().toStdString();
    }
}

TEST(VisualMovementKeys, goThroughLinesOfBothDirectionsWithoutTurningBack)
{
    const QString a = QStringLiteral("\u05d0\u05d1");
    const QString texts[] = {QStringLiteral("ab\n") + a + QStringLiteral("\ncd\n\n") + a + u'\n' +
                                 a,
                             a + QStringLiteral("\n\n") + a + QStringLiteral("\nab\ncd")};
    for (const QString& text : texts) {
        for (const char* key : {"Right", "Left"}) {
            // From the end at which the first line has the side that the key comes from.
            const bool startsAtEdge = (key == std::string("Right")) != text.isRightToLeft();
            if (!startsAtEdge)
                continue;
            ViewHarness harness(text);
            const int lines = text.count(u'\n');
            int steps = 0;
            qsizetype line = 0;
            for (; steps < 40; ++steps) {
                const TextOffset before = harness.editor.primarySelection().head;
                harness.press({QString::fromLatin1(key)});
                const TextOffset head = harness.editor.primarySelection().head;
                if (head == before)
                    break;
                const qsizetype now = harness.storage.snapshot().lineAt(head).value();
                EXPECT_GE(now, line) << key << " on " << text.toStdString();
                line = now;
            }
            // Every character is passed once, and every line break.
            EXPECT_EQ(line, lines) << key << " on " << text.toStdString();
            EXPECT_EQ(steps, text.size());
        }
    }
}

TEST(Clicks, neverComeIntoASignOfSeveralLetters)
{
    struct Case
    {
        QString text;
        std::set<TextOffset> inside; ///< of signs that two letters join in, and of clusters
    };
    const Case cases[] = {
        {QStringLiteral("\u0628\u0644\u0627\u0645 \u0644\u0627"), {2, 6}},
        {QStringLiteral("ab \u0644\u0627 cd"), {4}},
        {QStringLiteral("e\u0301\u0302x"), {1, 2}},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.text.toStdString());
        ViewHarness harness(row.text);
        for (int x = 0; x < harness.view.viewport()->width(); ++x) {
            const TextOffset offset = harness.view.offsetAtPoint({x, 5});
            EXPECT_FALSE(row.inside.contains(offset)) << offset << " at " << x;
        }
    }
}

TEST(RightToLeftLines, beginAtTheRightEdgeWhicheverWayTheyFit)
{
    const QString wide = repeated(hebrew + u' ', 1500);
    const QString veryWide = repeated(hebrew + u' ', 5000);
    for (const QString& text : {hebrew, wide, veryWide}) {
        for (const bool wraps : {false, true}) {
            ViewHarness harness(QStringLiteral("left to right\n") + text + u"\nx");
            harness.view.setWrapLines(wraps);
            harness.settle();
            const int right = harness.view.viewport()->width();
            const TextOffset start = 14;
            EXPECT_EQ(harness.view.caretRectAt(0).x(),
                      harness.view.caretRectAt(13).x() -
                          QFontMetrics(harness.view.textFont())
                              .horizontalAdvance(QStringLiteral("left to right")));
            EXPECT_GT(harness.view.caretRectAt(start).x(), right - 15) << wraps;
            EXPECT_LT(harness.view.caretRectAt(start).x(), right);
            // The far end can be gone to, and back.
            harness.editor.setSelectedRange({start, 0});
            harness.view.ensureVisible(start);
            harness.press({QStringLiteral("End")});
            EXPECT_TRUE(harness.view.viewport()->rect().contains(harness.view.caretRect()));
            harness.press({QStringLiteral("Home")});
            EXPECT_TRUE(harness.view.viewport()->rect().contains(harness.view.caretRect()));
            EXPECT_GT(harness.view.caretRect().x(), right / 2);
        }
    }
}

TEST(CaretAffinity, EndStaysOnItsRowAndBehindItsLastCharacter)
{
    ViewHarness harness(repeated(QStringLiteral("words and more words "), 21 * 40));
    harness.view.setWrapLines(true);
    harness.settle();
    const int first = harness.view.caretRect().y();
    const int height = harness.view.caretRect().height();
    harness.press({QStringLiteral("End")});
    const TextOffset end = harness.editor.primarySelection().head;
    EXPECT_EQ(harness.view.caretRect().y(), first);
    EXPECT_EQ(harness.view.caretRectAt(end).y(),
              first + height); // where the next row begins as well
    EXPECT_GT(harness.view.caretRect().x(), 600);
    harness.press({QStringLiteral("Down")});
    EXPECT_EQ(harness.view.caretRect().y(), first + height);
    EXPECT_GT(harness.view.caretRect().x(), 600);
    harness.press({QStringLiteral("Up"), QStringLiteral("Home")});
    EXPECT_EQ(harness.editor.primarySelection().head, 0);
    harness.press({QStringLiteral("End"), QStringLiteral("Right")});
    EXPECT_EQ(harness.editor.primarySelection().head, end + 1);
    harness.press({QStringLiteral("Left")});
    EXPECT_EQ(harness.view.caretRect().y(), first + height);
    EXPECT_LT(harness.view.caretRect().x(), 20);
    // Beyond the row's end a click comes behind its last character, too.
    QTest::mouseClick(harness.view.viewport(), Qt::LeftButton, {},
                      {harness.view.viewport()->width() - 2, first + height / 2});
    harness.settle();
    EXPECT_EQ(harness.editor.primarySelection().head, end);
    EXPECT_EQ(harness.view.caretRect().y(), first);
    harness.press({QStringLiteral("'x'")});
    EXPECT_EQ(harness.text().at(end), u'x');
}

} // namespace

} // namespace quillory
