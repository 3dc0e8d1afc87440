#include "EventLoopWatchdog.h"
#include "ViewHarness.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QTest>

namespace quillory {

namespace {

class TypingKeysTest : public testing::Test
{
protected:
    TypingKeysTest()
    {
        harness.defaults.setValue(keys::indentNewLinesBraces, true);
        harness.defaults.setValue(keys::insertClosingParenthesisandBrace, true);
    }
    ~TypingKeysTest() override { QGuiApplication::clipboard()->clear(); }

    void expect(const char* marked) { EXPECT_EQ(harness.marked(), QString::fromUtf8(marked)); }

    /// 100 MB of \a part over and over, then a line break.
    void fill(const QString& part)
    {
        const TextSnapshot many(part.repeated(1'000'000 / part.size()));
        std::vector<TextEdit> pieces(100, TextEdit{{}, many});
        pieces.push_back({{}, TextSnapshot(u"\n")});
        harness.storage.replaceCharactersInRange(harness.storage.snapshot().range(),
                                                 TextSnapshot().replacing(pieces));
        harness.editor.setSelection(Selection::caret(harness.storage.length()));
    }

    ViewHarness harness;
};

TEST_F(TypingKeysTest, everyReturnIndents)
{
    harness.setMarked(QStringLiteral("  {|"));
    harness.press({QStringLiteral("Return")});
    expect("  {\n  \t|");
    harness.press({QStringLiteral("Shift+Return")});
    expect("  {\n  \t\n  \t|");
    QTest::keyClick(&harness.view, Qt::Key_Enter, Qt::KeypadModifier);
    expect("  {\n  \t\n  \t\n  \t|");
    harness.press({QStringLiteral("'}'")});
    expect("  {\n  \t\n  \t\n  }|");
}

TEST_F(TypingKeysTest, tabMovesLinesOrTypesOrCollapses)
{
    harness.setMarked(QStringLiteral("^a\n|b"));
    harness.press({QStringLiteral("Tab"), QStringLiteral("Tab")});
    expect("\t\t^a\n|b");
    harness.setMarked(QStringLiteral("a ^b|c"));
    harness.press({QStringLiteral("Tab")});
    expect("a b|c");
    harness.press({QStringLiteral("Tab")});
    expect("a b\t|c");
}

TEST_F(TypingKeysTest, bracketsCloseWhenTypedByKeysOrAnInputMethod)
{
    harness.press({QStringLiteral("'f(x'")});
    expect("f(x|)");
    harness.press({QStringLiteral("Ctrl+Z")});
    expect("|");
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("["));
    QCoreApplication::sendEvent(&harness.view, &event);
    expect("[|]");
}

TEST_F(TypingKeysTest, whatIsPastedStaysAsItIs)
{
    for (const char* text : {"{", "}", "\n", "\t"}) {
        harness.setMarked(QStringLiteral("\t{\n  |\n"));
        QGuiApplication::clipboard()->setText(QLatin1String(text));
        harness.press({QStringLiteral("Ctrl+V")});
        EXPECT_EQ(harness.marked(),
                  QStringLiteral("\t{\n  ") + QLatin1String(text) + QStringLiteral("|\n"));
    }
}

TEST_F(TypingKeysTest, bracketsAreMatchedInHugeTextsWithoutAPause)
{
    EventLoopWatchdog watchdog;
    auto* noting = harness.editor.findChild<BracketNoting*>();
    ASSERT_TRUE(noting);
    QSignalSpy noted(noting, &BracketNoting::noted);
    for (const char* part : {"(", "{", "{ } "}) {
        SCOPED_TRACE(part);
        fill(QLatin1String(part));
        ASSERT_TRUE(noted.wait(60'000));
        const TextOffset length = harness.storage.length();
        for (const char16_t key : {u'}', u')'}) {
            watchdog.watch("a closer at the end", [&] {
                QTest::sendKeyEvent(QTest::Click, &harness.view, Qt::Key_unknown,
                                    QString(QChar(key)), Qt::NoModifier);
            });
        }
        EXPECT_EQ(harness.storage.length(), length + 2);
        watchdog.watch("a double click at the start", [&] {
            (void)harness.editor.selectionRangeForProposedRange({0, 0}, SelectionGranularity::Word,
                                                                2);
        });
    }
}

} // namespace

} // namespace quillory
