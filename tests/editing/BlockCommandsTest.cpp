#include "editing/BlockCommands.h"

#include "MarkedEditor.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

using Command = void (BlockCommands::*)();

struct Case
{
    const char* before; // as in MarkedEditor
    const char* after;
};

struct Bench
{
    MarkedEditor editor;
    BlockCommands commands;
    QSignalSpy changes{&editor.view, &QPTextView::textDidChange};
    QSignalSpy beeps{&editor.view, &QPTextView::beep};

    explicit Bench(const QString& marked, const QString& marker = QStringLiteral("//"))
        : editor(marked), commands(editor.view, [marker] { return marker; })
    {}
};

/// One undo step and one announced change each; undo and redo bring the selections back too.
void expectUndoable(Command command, std::span<const Case> cases,
                    const QString& marker = QStringLiteral("//"))
{
    for (const Case& c : cases) {
        Bench bench(QString::fromUtf8(c.before), marker);
        (bench.commands.*command)();
        EXPECT_EQ(bench.editor.marked(), c.after) << "from " << c.before;
        EXPECT_EQ(bench.changes.size(), 1) << "from " << c.before;
        if (!bench.editor.undo.canUndo()) {
            EXPECT_TRUE(bench.editor.undo.isClean()) << c.before;
            continue;
        }
        EXPECT_FALSE(bench.editor.undo.undoActionName().isEmpty());
        bench.editor.view.undo();
        EXPECT_EQ(bench.editor.marked(), c.before);
        EXPECT_FALSE(bench.editor.undo.canUndo());
        bench.editor.view.redo();
        EXPECT_EQ(bench.editor.marked(), c.after) << "redone from " << c.before;
    }
}

/// No step, no announced change, but a text that is not that of the disk any more.
void expectDirect(Command command, std::span<const Case> cases)
{
    for (const Case& c : cases) {
        Bench bench(QString::fromUtf8(c.before));
        const TextSnapshot before = bench.editor.view.string();
        (bench.commands.*command)();
        EXPECT_EQ(bench.editor.marked(), c.after) << "from " << c.before;
        EXPECT_FALSE(bench.editor.undo.canUndo()) << "from " << c.before;
        EXPECT_EQ(bench.changes.size(), 0) << "from " << c.before;
        EXPECT_EQ(bench.editor.undo.isClean(), bench.editor.view.string() == before) << c.before;
    }
}

TEST(BlockCommands, IndentingPutsTabsAtTheSelectionsStartAndBehindItsBreaks)
{
    const Case cases[] = {
        {"[a\nb\nc\n]d", "[\ta\n\tb\n\tc\n]d"},
        {"wo|rd", "wo\t|rd"},
        {"a[b\nc]d", "a[\tb\n\tc]d"},
        {"{a\nb}", "{\ta\n\tb}"},
        {"a[\n]b", "a[\t\n\t]b"},     // a break alone is no break at the end
        {"[a\n\n]b", "[\ta\n\t\n]b"}, // an empty line too
        {"[a\r\nb\r\n]c", "[\ta\r\n\tb\r\n]c"},
        {"[a\rb\r]c", "[\ta\r\tb\r]c"},
        {"[a\u2028b]", "[\ta\u2028b]"}, // no break of this kind
        {"[a\nb\n][c\nd]", "[\ta\n\tb\n][\tc\n\td]"},
        {"|a\n[b\nc\n]d|", "\t|a\n[\tb\n\tc\n]d\t|"},
        {"|", "\t|"},
    };
    expectDirect(&BlockCommands::indentSelection, cases);
}

TEST(BlockCommands, UnindentingTakesATabOrUpToFourSpaces)
{
    const Case cases[] = {
        {"[      a\n      b]c", "[  a\n  b]c"},
        {"[\t\ta\n \tb\n\t b\n]c", "[\ta\n\tb\n b]\nc"},
        {"    |a", "    |a"},
        {"a[b\n\tc]d", "a[b\nc]d"},
        {"[\n\ta]", "[\na]"},
        {"[\n]\ta", "[\n]\ta"},
        {"{\ta\n\tb}", "{a\nb}"},
        {"[\ta\r\n\tb\r\n]c", "[a\r\nb\r]\nc"},
        // At the end of the range fewer spaces go behind a break.
        {"[a\n    ]b", "[a\n ]b"},
        {"[a\n    b]", "[a\nb]"},
        {"[a\n  ]  b", "[a\n ]  b"},
        // At the start of the text fewer go from the first line: no more than the last index.
        {"[ ]   a", "[ ]   a"},
        {"[  ]  a", "[ ]  a"},
        {"[   ] a", "[ ] a"},
        {"xxxx[ ]   a", "xxxx|a"},
        {"xxxx[  ]", "xxxx|"},
        // One selection after the other, each in what the ones before have left.
        {"[\ta\n]\tb\n[\tc]\n|d", "[a]\n\tb\n[c]\n|d"},
        {"xxxx[ ] [ ] a", "xxxx|a"},
        {"xxxx[ ]   [ ]  a", "xxxx|a"},
    };
    expectDirect(&BlockCommands::unindentSelection, cases);
}

TEST(BlockCommands, CommentsAreToggledByTheFirstLineOfEachSelection)
{
    const Case cases[] = {
        {"[  //x\ny]", "[  x\ny]"},
        {"[x\n  //y]", "[//x\n//  //y]"},
        {"[x\n\n y\n]z", "[//x\n//\n// y\n]z"},
        {"[//x\n\n // y\n]z", "[x\n\n  y\n]z"},
        {"[\t //x\n  y //z\n//]", "[\t x\n  y //z\n]"},
        {"a[b\nc]d", "[//ab\n//c]d"},
        {"{a\nb}", "{//a\n//b}"},
        {"a[b\r\nc\r\n]d", "[//ab\r\n//c\r\n]d"},
        {"a[b\u2028c]", "[//ab\u2028//c]"},
        // A caret's line; the range begins at the line's start.
        {"x\nab|c\ny", "x\n[//ab]c\ny"},
        {"//ab|c", "[ab]c"},
        {"|//a", "|a"},
        {"/|/a", "|a"},
        // The marker at the selection's own start is as good as one at the line's.
        {"x = 1 [//y\nz]", "[x = 1 //y\nz]"},
        {"x = 1 [// y\n//z]", "[x = 1 // y\nz]"},
        // One selection after the other.
        {"[a]\n[//b]\n[c]", "[//a]\n[b]\n[//c]"},
        {"[a\n][b]", "[//a\n][//b]"},
        {"[a\nb]\nc|d\n//[e\n]", "[//a\n//b]\n[//c]d\n[e\n]"},
        // What the first puts before the line is what the second finds there.
        {"[a]b[c]\nd", "[abc]\nd"},
        {"////a|b|c", "[abc]"},
    };
    expectUndoable(&BlockCommands::commentAction, cases);

    const Case rem[] = {
        {"[rem a\n\tREM b\nReMc]", "[a\n\tb\nReMc]"},
        {"[a]bcd", "[Rem a]bcd"},
    };
    expectUndoable(&BlockCommands::commentAction, rem, QStringLiteral("Rem "));
    const Case hostile[] = {
        {"[\n\n\nx]", "[\nx]"},
        {"[x\n\ny]", "[\n\nx\n\n\n\n\n\ny]"},
    };
    expectUndoable(&BlockCommands::commentAction, hostile, QStringLiteral("\n\n"));
}

TEST(BlockCommands, CommandsThatCannotDoAnythingBeep)
{
    struct Refusal
    {
        const char* text;
        Command command;
        const char* marker;
        bool editable;
        int beeps;
    };
    const Refusal refusals[] = {
        {"[a]bc", &BlockCommands::commentAction, "", true, 1},
        {"[a]bc", &BlockCommands::commentAction, "----", true, 1},
        {"[a]bc", &BlockCommands::commentAction, "//", false, 1},
        {"[a]bc", &BlockCommands::indentSelection, "//", false, 1},
        {"[\ta]bc", &BlockCommands::unindentSelection, "//", false, 1},
        {"[a ]", &BlockCommands::removeWhitespace, "//", false, 1},
        {"[a\n]", &BlockCommands::unwrap, "//", false, 1},
        {"[\ta]", &BlockCommands::reformat, "//", false, 1},
        {"[a\uffff]", &BlockCommands::zapGremlins, "//", false, 1},
        {"<b>|", &BlockCommands::closeCurrentTag, "//", false, 1},
        {"<b>[a]", &BlockCommands::closeCurrentTag, "//", true, 1},
        {"a|", &BlockCommands::closeCurrentTag, "//", true, 1},
        {"<b></b>|", &BlockCommands::closeCurrentTag, "//", true, 1},
    };
    for (const Refusal& r : refusals) {
        Bench bench(QString::fromUtf8(r.text), QString::fromLatin1(r.marker));
        QSignalSpy alerts(&bench.commands, &BlockCommands::alertRequested);
        bench.editor.view.setEditable(r.editable);
        (bench.commands.*r.command)();
        EXPECT_EQ(bench.editor.marked(), r.text);
        EXPECT_EQ(bench.beeps.size(), r.beeps) << r.text;
        EXPECT_EQ(bench.changes.size(), 0) << r.text;
        EXPECT_EQ(alerts.size(), 0) << r.text;
        EXPECT_FALSE(bench.editor.undo.canUndo()) << r.text;
    }
}

TEST(BlockCommands, TrailingBlanksGoFromTheLinesOfEachSelection)
{
    const Case cases[] = {
        {"[ a b \t \n\t\nc \t]", "[ a b\n\nc]"},
        {"x[a  \r\nb\t]  \nc ", "x[a\r\nb]\nc "},
        {"a [ \nb]", "a[\nb]"}, // blanks before the selection too
        {"[a \n]b ", "[a\n]b"}, // the line that holds the end
        {"a |\nb ", "a |\nb "}, // a caret changes nothing
        {"[a] [b]  [c] \nd |", "[a] [b]  [c]\nd |"},
        {"[a ]\nb |\n[c  \u2028d ]", "[a]\nb |\n[c\u2028d]"},
        {"{a \nb}", "{a\nb}"},
        {"[abc]", "[abc]"},
    };
    expectUndoable(&BlockCommands::removeWhitespace, cases);
}

TEST(BlockCommands, UnwrappingJoinsLines)
{
    const Case cases[] = {
        {"[one\ntwo\r\nthree]", "[onetwothree]"},
        {"a[\rb\n\r\n\rc]\nd", "a[bc]\nd"},
        // Other breaks go at both ends alone.
        {"[\u2028\n\u2029a\u2028b\u000b\u000c\u0085]", "[a\u2028b]"},
        {"[a\n]b[c\nd]\n|e", "[a]b[cd]\n|e"},
        {"[\r\n\n]x", "|x"},
        {"a|\nb", "a|\nb"},
    };
    expectUndoable(&BlockCommands::unwrap, cases);
}

TEST(BlockCommands, ReformattingTakesTabsAndFourSpacesWhereverTheyAre)
{
    const Case cases[] = {
        {"[        x = 1]", "[x = 1]"},
        {"[a    b]", "[ab]"},
        {"[a     b      c       d]", "[a b  c   d]"},
        {"[a  \t  b\tc]", "[abc]"}, // spaces that only a tab stood between are four
        {"[\n \ta \n\u00a0]b", "[a]b"},
        {"[a\n  \n    b]", "[a\n  \nb]"},
        {"[\ta]\t[\tb\t]", "[a]\t[b]"},
        {"\ta|", "\ta|"},
    };
    expectUndoable(&BlockCommands::reformat, cases);
}

TEST(BlockCommands, GremlinsGoFromTheEndsAndAreCounted)
{
    struct Zapped
    {
        QString before;
        QString after;
        int count;
    };
    const QString noncharacter = QStringLiteral("\uFDD0");
    const QString unassigned = QString::fromUcs4(U"\U000E0080", 1); // two units
    const QString nonPlane = QString::fromUcs4(U"\U0010FFFF", 1);
    const QString lone(QChar(0xD800));
    const QString privateUse(QChar(0xE000));
    const Zapped cases[] = {
        {u'[' + noncharacter + u"a" + unassigned + u']', QStringLiteral("[a]"), 3},
        {u"[a" + noncharacter + u"b]", u"[a" + noncharacter + u"b]", 0},
        {u'[' + nonPlane + noncharacter + nonPlane + u']', QStringLiteral("|"), 5},
        {u'[' + lone + u"a" + privateUse + u']', u'[' + lone + u"a" + privateUse + u']', 0},
        {u'[' + noncharacter + u"]a[" + noncharacter + u"b]c|" + noncharacter,
         QStringLiteral("|a[b]c|") + noncharacter, 2},
        {u'|' + noncharacter, u'|' + noncharacter, 0},
    };
    for (const Zapped& c : cases) {
        Bench bench(c.before);
        QSignalSpy alerts(&bench.commands, &BlockCommands::alertRequested);
        bench.commands.zapGremlins();
        ASSERT_EQ(alerts.size(), 1);
        EXPECT_EQ(alerts[0][0].toString(), QStringLiteral("Bye Billy."));
        EXPECT_EQ(alerts[0][1].toString(), QStringLiteral("%1 characters removed.").arg(c.count));
    }
    for (const Zapped& c : cases) {
        const QByteArray before = c.before.toUtf8();
        const QByteArray after = c.after.toUtf8();
        const Case one[] = {{before.constData(), after.constData()}};
        if (!c.before.contains(lone)) // which no UTF-8 holds
            expectUndoable(&BlockCommands::zapGremlins, one);
    }
}
/// Where the command leads by itself, undoing what was typed before takes back no more than that.
TEST(BlockCommands, UndoAndRedoGoAroundAnIndentation)
{
    MarkedEditor editor(QStringLiteral("one\ntwo\nthree|"));
    BlockCommands commands(editor.view, [] { return QStringLiteral("#"); });
    QPTextView& view = editor.view;
    view.insertText(QStringLiteral("!"));
    view.setSelectedRange({4, 0});
    view.insertText(QStringLiteral("x"));
    view.selectAll();
    commands.commentAction();
    EXPECT_EQ(editor.marked(), "[#one\n#xtwo\n#three!]");
    editor.undo.markClean();
    commands.indentSelection();
    EXPECT_EQ(editor.marked(), "[\t#one\n\t#xtwo\n\t#three!]");
    EXPECT_FALSE(editor.undo.isClean());

    const std::vector<std::string> undone{"[\tone\n\txtwo\n\tthree!]", "\tone\n|\ttwo\n\tthree!",
                                          "\tone\n\ttwo\n\tthree|"};
    for (const std::string& text : undone) {
        view.undo();
        EXPECT_EQ(editor.marked(), text);
        EXPECT_FALSE(editor.undo.isClean()); // the text on the disk is not within reach
    }
    view.selectAll();
    commands.unindentSelection();
    EXPECT_EQ(editor.marked(), "[one\ntwo\nthree]");
    view.redo();
    EXPECT_EQ(editor.marked(), "one\ntwo\nthree!|");
    view.redo();
    EXPECT_EQ(editor.marked(), "one\nx|two\nthree!");
    view.redo();
    EXPECT_EQ(editor.marked(), "[#one\n#xtwo\n#three!]");
    EXPECT_FALSE(editor.undo.canRedo());
    EXPECT_FALSE(editor.undo.isClean());
    editor.undo.markClean();
    EXPECT_TRUE(editor.undo.isClean());
}

/// The tabs that went in and out between the steps, and the letters that they must not touch.
TEST(BlockCommands, AnyMixOfIndentationsAndStepsKeepsTheLetters)
{
    std::minstd_rand engine(3);
    const auto below = [&](TextOffset n) { return TextOffset(engine() % unsigned(n)); };
    const auto letters = [](const TextSnapshot& text) {
        return text.string().remove(u'\t').toStdString();
    };
    for (int round = 0; round < 300; ++round) {
        MarkedEditor editor(QStringLiteral("ab\ncde\n\nf\nghij|"));
        BlockCommands commands(editor.view, [] { return QStringLiteral("#"); });
        QPTextView& view = editor.view;
        std::vector<std::string> texts{letters(view.string())};
        size_t step = 0;
        for (int action = 0; action < 30; ++action) {
            const TextOffset at = below(view.string().length() + 1);
            view.setSelectedRange({at, below(view.string().length() - at + 1)});
            switch (below(6)) {
            case 0:
            case 1:
                commands.indentSelection();
                break;
            case 2:
                commands.unindentSelection();
                break;
            case 3:
                view.undo();
                step -= step > 0 ? 1 : 0;
                break;
            case 4:
                view.redo();
                step += step + 1 < texts.size() ? 1 : 0;
                break;
            default:
                commands.commentAction();
                if (letters(view.string()) != texts[step]) {
                    texts.resize(++step);
                    texts.push_back(letters(view.string()));
                }
            }
            ASSERT_EQ(letters(view.string()), texts[step]) << "round " << round;
        }
        while (editor.undo.canUndo())
            view.undo();
        ASSERT_EQ(letters(view.string()), texts.front()) << "round " << round;
    }
}

/// The same as for a few lines, and nothing can be typed meanwhile.
TEST(BlockCommands, LongSelectionsAreWorkedOnAside)
{
    const qsizetype lines = 200'000;
    const QString text = QStringLiteral("some line\n").repeated(lines);
    MarkedEditor editor(text + u'|');
    BlockCommands commands(editor.view, [] { return QStringLiteral("//"); });
    QPTextView& view = editor.view;
    const auto waitUntilDone = [&] {
        EXPECT_FALSE(view.isEditable());
        view.insertText(QStringLiteral("x"));
        EXPECT_TRUE(QTest::qWaitFor([&] { return view.isEditable(); }, 60'000));
    };
    const auto expectLines = [&](const char* line) {
        EXPECT_TRUE(view.string() == TextSnapshot(QString::fromLatin1(line).repeated(lines)));
    };
    view.selectAll();
    commands.commentAction();
    waitUntilDone();
    expectLines("//some line\n");
    EXPECT_EQ(view.selectedRange(), view.string().range());
    commands.indentSelection();
    waitUntilDone();
    expectLines("\t//some line\n");
    commands.unindentSelection();
    waitUntilDone();
    expectLines("//some line\n");
    view.insertTab(); // the key
    waitUntilDone();
    expectLines("\t//some line\n");
    EXPECT_EQ(editor.undo.undoActionName(), QStringLiteral("Indent"));
    view.undo();
    view.undo();
    EXPECT_FALSE(editor.undo.canUndo());
    expectLines("some line\n");
}

} // namespace
} // namespace quillory
