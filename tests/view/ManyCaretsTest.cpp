#include "EventLoopWatchdog.h"
#include "ViewHarness.h"

#include <QTest>

namespace quillory {

namespace {

class ManyCaretsTest : public testing::Test
{
protected:
    static constexpr int count = 40'000;

    ManyCaretsTest()
    {
        std::vector<Selection> carets;
        for (TextOffset offset = 0; offset < harness.storage.length(); offset += line.size())
            carets.push_back(Selection::caret(offset));
        harness.editor.setSelections(std::move(carets), 0);
        harness.settle();
    }

    void press(const QString& key)
    {
        watchdog.watch(qPrintable(key), [&] {
            if (key.size() == 1)
                QTest::sendKeyEvent(QTest::Click, &harness.view, Qt::Key_unknown, key,
                                    Qt::NoModifier);
            else
                QTest::sendKeyEvent(QTest::Click, &harness.view,
                                    QKeySequence::fromString(key)[0].key(), QString(),
                                    QKeySequence::fromString(key)[0].keyboardModifiers());
        });
        harness.settle();
    }

    QString firstAndLastLine() const
    {
        const TextSnapshot& text = harness.storage.snapshot();
        const auto content = [&](qsizetype index) {
            return text.string(text.lineContent(LineIndex(index)));
        };
        return content(0) + u'/' + content(count - 1);
    }

    const QString line = QStringLiteral("a line of text\n");
    ViewHarness harness{line.repeated(count).chopped(1)};
    EventLoopWatchdog watchdog;
};

TEST_F(ManyCaretsTest, keysGoToTensOfThousandsOfCaretsWithoutAPause)
{
    struct Case
    {
        const char* key;
        const char* first; ///< of the first and the last line alike
    };
    const Case cases[] = {
        {"x", "xa line"},
        {"y", "xya line"},
        {"Backspace", "xa line"},
        {"Backspace", "a line"},
        {"Right", "a line"},
        {"Shift+Right", "a line"},
        {"z", "azline"},
        {"Ctrl+Z", "a line"},
        {"Ctrl+Z", "xya line"},
        {"Ctrl+Z", "a line"},
        {"Ctrl+Shift+Z", "xya line"},
    };
    for (const Case& c : cases) {
        press(QString::fromLatin1(c.key));
        EXPECT_EQ(firstAndLastLine(), QLatin1String(c.first) + QStringLiteral(" of text/") +
                                          QLatin1String(c.first) + QStringLiteral(" of text"))
            << c.key;
        EXPECT_EQ(harness.editor.selections().size(), size_t(count)) << c.key;
    }
}

TEST_F(ManyCaretsTest, moveByRowsWithoutAPauseThoughEveryLineIsAnother)
{
    QString lines;
    std::vector<Selection> carets;
    for (int i = 0; i < 100'000; ++i) {
        carets.push_back(Selection::caret(lines.size() + 3));
        lines += QStringLiteral("\t%1 is line %1\n").arg(i);
    }
    harness.storage.replaceCharactersInRange(harness.storage.snapshot().range(), lines);
    harness.editor.setSelections(carets, 0);
    harness.settle();
    const WorkCounters before = harness.view.workCounters();
    for (const char* key : {"Down", "Down", "Up", "Shift+Down", "Shift+Up", "Up"})
        press(QString::fromLatin1(key));
    EXPECT_LT(harness.view.workCounters().linesLaidOut - before.linesLaidOut, 100);
    // Of the first two lines some carets have met, being two digits long or at the text's end.
    EXPECT_NEAR(double(harness.editor.selections().size()), 100'000, 20);
    EXPECT_EQ(harness.editor.selections()[50'000].head, carets[50'000].head);
}

} // namespace

} // namespace quillory
