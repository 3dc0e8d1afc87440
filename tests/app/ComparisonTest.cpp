#include "../view/EventLoopWatchdog.h"
#include "AppFixture.h"

#include "app/ComparisonSide.h"
#include "app/ComparisonWindow.h"
#include "document/Document.h"
#include "view/TextViewWidget.h"

#include <QPointer>
#include <QPushButton>
#include <QTest>

namespace quillory {
namespace {

using Subject = MessageArea::Subject;
using test::AppFixture;

constexpr int patience = 20000; // milliseconds

class ComparisonTest : public AppFixture
{
protected:
    /// Numbered lines, without some and with others.
    static QString numbered(int count, int changedEvery = 0)
    {
        QString text;
        for (int i = 0; i < count; ++i) {
            const bool isChanged = changedEvery > 0 && i % changedEvery == changedEvery - 1;
            text += QStringLiteral("line %1 %2\n").arg(i).arg(isChanged ? u"new" : u"old");
        }
        return text;
    }

    ComparisonWindow& compared(const QString& left, const QString& right)
    {
        return compared(TextSnapshot(left), TextSnapshot(right));
    }
    ComparisonWindow& compared(const TextSnapshot& left, const TextSnapshot& right)
    {
        if (!document)
            document = &openNew();
        ComparisonWindow* window = ComparisonWindow::compare(
            *document, QStringLiteral("Left"), left, QStringLiteral("Right"), right,
            {{QStringLiteral("Restore"), {}, [this] { ++restored; }}});
        (void)QTest::qWaitForWindowExposed(window);
        EXPECT_TRUE(QTest::qWaitFor([&] { return window->differences().has_value(); }, patience));
        QTest::qWait(50); // what follows is painted
        return *window;
    }
    static std::vector<TextRange> bands(const ComparisonSide& side)
    {
        std::vector<TextRange> ranges;
        for (const LineBand& band : side.view().overlay().lineBands())
            ranges.push_back(band.range);
        return ranges;
    }
    /// What is marked within lines.
    static QStringList marks(const ComparisonSide& side)
    {
        QStringList marked;
        for (const OverlayRun& run : side.view().overlay().runs(side.text().range())) {
            if (run.attributes.background)
                marked.append(side.text().string(run.range));
        }
        return marked;
    }
    /// The text beside the middle of the window.
    static qsizetype middleLine(const ComparisonSide& side)
    {
        return qsizetype(side.lineAt(side.view().viewport()->height() / 2));
    }

    DocumentWindow* document = nullptr;
    int restored = 0;
};

TEST_F(ComparisonTest, ShowsWhatDiffers)
{
    ComparisonWindow& window = compared(QStringLiteral("one\ntwo\nthree\nfour\n"),
                                        QStringLiteral("one\ntwo!\nthree\nand\nmore\n"));
    EXPECT_EQ(window.outcome(), u"Difference 1 of 2");
    EXPECT_EQ(bands(window.left()), (std::vector<TextRange>{{4, 4}, {14, 5}}));
    EXPECT_EQ(bands(window.right()), (std::vector<TextRange>{{4, 5}, {15, 9}}));
    EXPECT_EQ(marks(window.right()), QStringList{QStringLiteral("!")});
    EXPECT_EQ(window.current(), 0);
    QTest::keyClick(&window, Qt::Key_F7);
    EXPECT_EQ(window.current(), 1);
    QTest::keyClick(&window, Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(window.current(), 0);
    // It is there to be read.
    QTest::keyClicks(&window.right().view(), QStringLiteral("x"));
    EXPECT_EQ(window.right().text().length(), 24);
    window.close();
}

TEST_F(ComparisonTest, SidesStayInStep)
{
    const QString left = numbered(4000);
    QString right = numbered(4000);
    right.insert(right.indexOf(u"line 1000 "), QStringLiteral("more\n").repeated(500));
    right.remove(right.indexOf(u"line 3000 "),
                 right.indexOf(u"line 3500 ") - right.indexOf(u"line 3000 "));
    ComparisonWindow& window = compared(left, right);
    ASSERT_EQ(window.differences()->size(), 2U);
    const auto goTo = [](ComparisonSide& side, int line) {
        side.view().centerOn(side.text().lineStart(LineIndex(line)));
        QTest::qWait(30);
    };
    goTo(window.left(), 500);
    EXPECT_NEAR(middleLine(window.right()), middleLine(window.left()), 1);
    goTo(window.left(), 2000);
    EXPECT_NEAR(middleLine(window.right()), middleLine(window.left()) + 500, 1);
    goTo(window.right(), 3800);
    EXPECT_NEAR(middleLine(window.left()), middleLine(window.right()), 1);
    goTo(window.left(), 3250); // what the right one lacks
    EXPECT_NEAR(middleLine(window.right()), 3500, 1);

    // From where one is, and both into sight.
    goTo(window.left(), 2000);
    QTest::keyClick(&window, Qt::Key_F7, Qt::ShiftModifier);
    EXPECT_EQ(window.current(), 0);
    QTest::qWait(30);
    EXPECT_GE(window.left().yOf(1000), 0);
    EXPECT_LT(window.left().yOf(1000), window.left().view().viewport()->height());
    EXPECT_EQ(window.left().yOf(1000), window.right().yOf(1000));
    window.close();
}

TEST_F(ComparisonTest, ChoiceClosesTheWindowAndActs)
{
    const QPointer<ComparisonWindow> window = &compared(QStringLiteral("a"), QStringLiteral("a"));
    EXPECT_EQ(window->outcome(), u"No differences");
    auto* button = window->findChild<QPushButton*>();
    ASSERT_TRUE(button);
    button->click();
    EXPECT_EQ(restored, 1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window; }, patience));

    // With the document's window it goes too.
    const QPointer<ComparisonWindow> other = &compared(QStringLiteral("a"), QStringLiteral("b"));
    document->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !other; }, patience));
}

TEST_F(ComparisonTest, HugeTextsKeepNobodyWaiting)
{
    // Two texts of 100 MB that differ all over; of 10 where every step costs more.
#ifdef QUILLORY_SANITIZED
    constexpr TextOffset size = TextOffset(10) << 20;
#else
    constexpr TextOffset size = TextOffset(100) << 20;
#endif
    const auto huge = [](int seed) {
        TextSnapshot part(numbered(20'000, seed));
        TextSnapshot text;
        while (text.length() < size)
            text = text.replacing({text.length() / 2, 0}, part);
        return text;
    };
    const TextSnapshot left = huge(7);
    const TextSnapshot right = huge(5);
    const EventLoopWatchdog watchdog;
    ComparisonWindow& window = compared(left, right);
    EXPECT_GT(window.differences()->size(), 1000U);
    for (int i = 0; i < 10; ++i) {
        QTest::keyClick(&window, Qt::Key_F7);
        QTest::qWait(10);
    }
    window.right().view().centerOn(right.length() / 2);
    QTest::qWait(50);
    window.close();
}

TEST_F(ComparisonTest, FileChangedByAnotherProgramIsCompared)
{
    DocumentWindow& window = open(write("a.txt", "one\ntwo\n"));
    (void)QTest::qWaitForWindowExposed(&window);
    QTest::qWait(200); // it is watched
    press(window, {QStringLiteral("'mine '")});
    write("a.txt", "one\ntheirs\n");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return !message(window, Subject::FileOnDisk).isEmpty(); }, patience));
    ASSERT_TRUE(pressWayOut(window, QStringLiteral("Compare")));
    ComparisonWindow* comparison = nullptr;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] {
            for (QWidget* widget : QApplication::topLevelWidgets()) {
                if (auto* found = qobject_cast<ComparisonWindow*>(widget))
                    comparison = found;
            }
            return comparison && comparison->differences();
        },
        patience));
    EXPECT_EQ(comparison->left().text().string(), u"one\ntheirs\n");
    EXPECT_EQ(comparison->right().text().string(), u"mine one\ntwo\n");
    for (QPushButton* button : comparison->findChildren<QPushButton*>()) {
        if (button->text().contains(u"Reload"))
            button->click();
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return textOf(window) == u"one\ntheirs\n"; }, patience));
}

} // namespace
} // namespace quillory
