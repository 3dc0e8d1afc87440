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

} // namespace

} // namespace quillory
