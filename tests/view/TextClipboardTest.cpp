#include "view/TextClipboard.h"

#include "EventLoopWatchdog.h"
#include "ViewHarness.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QTest>

namespace quillory {

namespace {

class TextClipboardTest : public testing::Test
{
protected:
    ~TextClipboardTest() override { clipboard.clear(); }

    /// Has another program offer \a bytes.
    void offer(const char* format, const QByteArray& bytes)
    {
        auto* data = new QMimeData;
        data->setData(QLatin1String(format), bytes);
        clipboard.setMimeData(data);
    }

    QClipboard& clipboard = *QGuiApplication::clipboard();
    ViewHarness harness;
};

TEST_F(TextClipboardTest, pasteTakesWhatOtherProgramsOffer)
{
    struct Case
    {
        const char* format;
        const char* bytes;
        const char* text;
    };
    const Case cases[] = {
        {"text/plain;charset=utf-8", "a\r\nb\rc\n\xE6\x97\xA5", "a\nb\nc\n\u65e5"},
        {"text/plain;charset=utf-8", "bad \xFF bytes", "bad \uFFFD bytes"},
        {"text/plain", "plain\r\n", "plain\n"},
        {"text/html", "<p>rich <b>text</b></p><p>two</p>", "rich text\ntwo"},
        {"image/png", "no text", "|"},
    };
    for (const Case& c : cases) {
        harness.setMarked(QStringLiteral("|"));
        offer(c.format, c.bytes);
        harness.view.commands().paste();
        EXPECT_EQ(harness.text(), QString::fromUtf8(c.text).remove(u'|')) << c.bytes;
    }
}

TEST_F(TextClipboardTest, whatIsCopiedIsOfferedInUtf8AndAsColourlessHtml)
{
    harness.setMarked(QString::fromUtf8("^a<b\u00e9|\n^\u65e5\U0001F600|"));
    harness.view.commands().copy();
    const QMimeData& data = *clipboard.mimeData();
    const QString copied = QString::fromUtf8("a<b\u00e9\n\u65e5\U0001F600");
    EXPECT_EQ(data.data(QStringLiteral("text/plain;charset=utf-8")), copied.toUtf8());
    EXPECT_EQ(data.data(QStringLiteral("text/plain")), copied.toUtf8());
    EXPECT_EQ(data.text(), copied);
    EXPECT_TRUE(data.html().contains(copied.toHtmlEscaped()));
    EXPECT_TRUE(data.html().contains(QStringLiteral("<pre")));
    EXPECT_FALSE(data.html().contains(QStringLiteral("color")));
}

TEST_F(TextClipboardTest, withinTheProgramEveryUnitSurvives)
{
    QString odd = QStringLiteral("a\r\nb\rc");
    odd += QChar(0);
    odd += QChar(0xD800);
    odd += u'z';
    harness.storage.replaceCharactersInRange({}, odd);
    harness.view.commands().selectAll();
    harness.view.commands().copy();
    harness.view.commands().paste();
    EXPECT_EQ(harness.text(), odd);
    EXPECT_EQ(clipboard.mimeData()->data(QStringLiteral("text/plain")),
              QByteArray("a\r\nb\rc\0\xEF\xBF\xBDz", 11));
}

TEST_F(TextClipboardTest, severalSelectionsAreCutAndPastedEachToItsOwn)
{
    harness.setMarked(QStringLiteral("^a\nb| ^c| d"));
    harness.view.commands().cut();
    EXPECT_EQ(harness.marked(), QStringLiteral("| | d"));
    EXPECT_EQ(harness.undo.undoActionName(), QStringLiteral("Cut"));
    harness.view.commands().paste();
    EXPECT_EQ(harness.marked(), QStringLiteral("a\nb| c| d"));
    harness.press({QStringLiteral("Ctrl+Z"), QStringLiteral("Ctrl+Z")});
    EXPECT_EQ(harness.marked(), QStringLiteral("^a\nb| ^c| d"));
    // Without a selection the clipboard keeps what it has.
    harness.editor.setSelectedRange({0, 0});
    harness.view.commands().cut();
    harness.view.commands().copy();
    EXPECT_EQ(clipboard.text(), QStringLiteral("a\nb\nc"));
}

TEST_F(TextClipboardTest, aLongTextIsPastedWhereItWasAskedFor)
{
    const QByteArray bytes = QByteArray("a line of foreign text\r\n").repeated(1'000'000);
    const TextOffset length = bytes.size() - 1'000'000;
    struct Case
    {
        const char* name;
        void (*meanwhile)(ViewHarness&);
        TextOffset place; ///< of the text; -1 where it is not to come
    };
    const Case cases[] = {
        {"nothing", [](ViewHarness&) {}, 3},
        {"typed before",
         [](ViewHarness& h) {
             h.editor.setSelectedRange({0, 0});
             h.editor.insertText(QStringLiteral("xy"));
         },
         5},
        {"the caret is elsewhere",
         [](ViewHarness& h) {
             h.editor.setSelectedRange({6, 0});
         },
         3},
        {"its place is gone",
         [](ViewHarness& h) {
             h.editor.selectAll();
             h.editor.insertText(QStringLiteral("new"));
         },
         -1},
    };
    for (const Case& c : cases) {
        harness.setMarked(QStringLiteral("one| two"));
        offer("text/plain;charset=utf-8", bytes);
        EventLoopWatchdog watchdog;
        watchdog.watch(c.name, [&] { harness.view.commands().paste(); });
        c.meanwhile(harness);
        const auto isThere = [&] { return harness.storage.length() > length; };
        EXPECT_EQ(QTest::qWaitFor(isThere, c.place < 0 ? 1000 : 20000), c.place >= 0) << c.name;
        if (c.place >= 0) {
            EXPECT_EQ(harness.storage.snapshot().string({c.place, 6}), QStringLiteral("a line"));
            EXPECT_EQ(harness.editor.selectedRange(), (TextRange{c.place + length, 0}));
        }
    }
}

} // namespace

} // namespace quillory
