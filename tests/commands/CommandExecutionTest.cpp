#include "CommandHarness.h"

#include "commands/CommandException.h"

namespace quillory::test {
namespace {

using D = PropertyList::Dictionary;

QString s(const char* text)
{
    return QString::fromUtf8(text);
}

D item(int kind, const char* string, D more = {})
{
    more.insert(s("kind"), kind);
    if (string)
        more.insert(s("string"), s(string));
    return more;
}

D with(const char* key, const PropertyList& value = true)
{
    return D{{s(key), value}};
}

TEST(CommandExecution, InsertsAndWraps)
{
    const struct
    {
        const char* before;
        D item;
        const char* clipboard;
        const char* after;
    } cases[] = {
        {"a «word» b", item(1, "(%@)"), nullptr, "a «(word)» b"},
        {"a | b", item(1, "(%@)"), nullptr, "a (|) b"},
        {"a | b", item(1, "none"), nullptr, "a none| b"},
        {"a «x» b", item(1, "none"), nullptr, "a «none» b"},
        {"|", item(1, "100%% %@ %@ %d"), nullptr, "100% | %@ %d"},
        {"«%@ %%»", item(1, "<%@>"), nullptr, "«<%@ %%>»"},
        {"«a» | ‹b› «cc»", item(1, "(%@)"), nullptr, "«(a)» (|) «(b)» «(cc)»"},
        {"|", item(1, nullptr), nullptr, "|"},

        {"|", item(0, "[CLIPBOARD]"), "x", "[x]|"},
        {"«old» y", item(0, "[CLIPBOARD:CLIPBOARD](%@)"), "CLIPBOARD %@ %%",
         "«[CLIPBOARD %@ %%:CLIPBOARD %@ %%](old)» y"},
        {"|", item(0, "[CLIPBOARD]", with("stringWithout", s("<%@>"))), nullptr, "<|>"},
        {"|", item(0, "[clipboard]"), "x", "[clipboard]|"},
        {"|", item(0, "[CLIPBOARD]"), nullptr, "|"},

        {"a «word» b", item(2, "%@ %% x"), nullptr, "a %@ %% x| b"},
        {"«a» b|", item(2, "new"), nullptr, "new| bnew|"},
        {"a «word» b", item(3, "all of %@"), nullptr, "all of %@|"},
        {"|a| b", item(3, "all"), nullptr, "all|"},
        {"a «b»", item(42, "nothing"), nullptr, "a «b»"},
        {"a «b»", item(1000, "nothing"), nullptr, "a «b»"},
    };
    for (const auto& c : cases) {
        CommandHarness harness(c.before, c.item);
        if (c.clipboard)
            harness.clipboard = s(c.clipboard);
        harness.run();
        EXPECT_EQ(harness.editor.marked(), c.after) << c.before;
        EXPECT_EQ(harness.happened(), "");
    }
}

TEST(CommandExecution, IsOneUndoStepThatIsNamedAfterTheCommand)
{
    for (const int kind : {0, 1, 2, 3}) {
        CommandHarness harness("a «b» c|", item(kind, "<%@>CLIPBOARD", with("title", s("Do It"))));
        harness.clipboard = s("x");
        int announced = 0;
        QObject::connect(&harness.editor.view, &QPTextView::textDidChange, &harness.editor.view,
                         [&] { ++announced; });
        harness.run();
        EXPECT_NE(harness.editor.marked(), "a «b» c|");
        EXPECT_EQ(announced, 1);
        EXPECT_EQ(harness.editor.undo.undoActionName(), s("Do It"));
        harness.editor.view.undo();
        EXPECT_EQ(harness.editor.marked(), "a «b» c|") << kind;
        EXPECT_FALSE(harness.editor.undo.canUndo());
    }
}

TEST(CommandExecution, SaysWhatTheTextViewRefuses)
{
    const struct
    {
        D item;
        const char* name;
    } cases[] = {
        {item(0, "x"), "insertOrReplaceTags:"},
        {item(1, "x"), "insertOrReplaceTags:"},
        {item(2, "x"), "replaceWithTemplate"},
        {item(3, "x"), "replaceWithTemplate"},
        {item(6, "/bin/sort TEXTORCODEASFILE", with("outputCanReplaceDocument")),
         "replaceWithTemplate"},
    };
    for (const auto& c : cases) {
        CommandHarness harness("a «b»", c.item);
        harness.clipboard = s("x");
        harness.editor.view.setEditable(false);
        try {
            harness.run();
            ADD_FAILURE() << "nothing was thrown";
        } catch (const CommandException& exception) {
            EXPECT_EQ(exception.name(), s(c.name));
            EXPECT_EQ(exception.reason(), s("Cannot change text in text view"));
        }
        EXPECT_EQ(harness.editor.marked(), "a «b»");
        EXPECT_EQ(harness.happened(), "");
    }
}

TEST(CommandExecution, AClipboardThatAnswersLateIsInsertedWhereTheCaretIsThen)
{
    CommandHarness harness("|", item(0, "[CLIPBOARD]"));
    std::function<void(std::optional<QString>)> answer;
    CommandSurroundings world = harness.surroundings();
    world.clipboardText = [&](auto tell) { answer = tell; };
    CommandExecution execution(harness.editor.view, harness.colouring, harness.trust, world);
    QStringList alerts;
    QObject::connect(&execution, &CommandExecution::alertRequested, &execution,
                     [&](const QString&, const QString& message) { alerts += message; });
    execution.commandAction(harness.menu.entries().at(1));
    harness.editor.view.insertText(s("ab"));
    answer(s("x"));
    EXPECT_EQ(harness.editor.marked(), "ab[x]|");
    harness.editor.view.setEditable(false);
    answer(s("y"));
    EXPECT_EQ(alerts, QStringList(s("Cannot change text in text view")));
}

TEST(CommandExecution, ReachesTheWorld)
{
    const D selected = with("onlyValidForSelection");
    const struct
    {
        const char* text;
        D item;
        const char* happened;
    } cases[] = {
        // Addresses
        {"x «a b»", item(4, "https://a.org/?q=TEXTORCODE"), "open https://a.org/?q=a%20b"},
        {"é «é» x", item(4, "https://a.org/TEXTORCODE/TEXTORCODE"),
         "open https://a.org/%C3%A9/%C3%A9"},
        {"all|", item(4, "https://a.org/?q=TEXTORCODE"), "open https://a.org/?q=all"},
        {"«TEXTORCODE»", item(4, "https://a.org/TEXTORCODE"), "open https://a.org/TEXTORCODE"},
        {"«x»", item(4, "http://a.org/b"), "open http://a.org/b"},
        {"|", item(8, "https://a.org/b?c=%20#d"), "open https://a.org/b?c=%20#d"},
        {"|", item(8, "mailto:a@b.org"), "open mailto:a@b.org"},

        // Servers
        {"a «b»", item(5, "http://a.org/"), "send http://a.org/ a b 0"},
        {"a «b» «c»", item(5, "http://a.org/", selected), "send http://a.org/ b\nc 0"},
        {"a|", item(5, "u", with("sendAsData")), "send u a 1"},
        {"a|", item(5, "u", selected),
         "alert Error! Command (Action) is set to work with a selection."},

        // Programs
        {"a|", item(6, nullptr), "beep"},
        {"a|", item(6, ""), "beep"},
        {"a|", item(6, "", selected), "beep"},
        {"a|", item(6, "/bin/wc TEXTORCODEASFILE", selected),
         "alert Error! Command (Action) is set to work with a selection."},
        {"a|", item(6, "/bin/wc TEXTORCODE textorcodeasfile TEXTORCODEASSTRING"),
         "alert Error! Please include either TEXTORCODEASFILE or TEXTORCODEASSSTRING in the "
         "command."},
        {"a|", item(6, "TEXTORCODEASFILE x"),
         "alert Error! The text cannot be the program that runs. Please begin the command with "
         "the path of a program."},
        {"a|", item(6, "'TEXTORCODEASSSTRING' TEXTORCODEASFILE"),
         "alert Error! The text cannot be the program that runs. Please begin the command with "
         "the path of a program."},
        {"all «of» it", item(6, "/bin/wc -l TEXTORCODEASFILE"),
         "write all of it\ncapture|/bin/wc|-l|/tmp dir/1.txt"},
        {"all «of» it", item(6, "/bin/wc -l TEXTORCODEASFILE", selected),
         "write of\ncapture|/bin/wc|-l|/tmp dir/1.txt"},
        {"a b|", item(6, "/bin/echo TEXTORCODEASSSTRING"), "capture|/bin/echo|a|b"},
        {"a b|", item(6, "/bin/echo 'TEXTORCODEASSSTRING'"), "capture|/bin/echo|a b"},
        {"a|", item(6, "/bin/e TEXTORCODEASSSTRING TEXTORCODEASFILE"),
         "write a\ncapture|/bin/e|TEXTORCODEASSSTRING|/tmp dir/1.txt"},
        {"a|", item(6, "/bin/make TEXTORCODEASFILE", with("shouldRun")),
         "write a\nrun|/bin/make|/tmp dir/1.txt in /docs"},
        {"a|", item(6, "/bin/sort TEXTORCODEASFILE", with("outputCanReplaceDocument")),
         "write a\nreplace|/bin/sort|/tmp dir/1.txt"},
        {"|", item(6, "/bin/wc TEXTORCODEASFILE"), "write \ncapture|/bin/wc|/tmp dir/1.txt"},

        // LaTeX
        {"|", item(61, "/bin/tex TEXTORCODEASFILE"), "beep"},
        {"|", item(61, "/bin/tex"), "beep"},
        {"a|", item(61, "/bin/tex", with("shouldOpenPDFPreview")),
         "alert Error! Please include either TEXTORCODEASFILE or TEXTORCODEASSSTRING in the "
         "command."},
        {"a|", item(61, "/bin/tex TEXTORCODEASFILE"), "write a\ncapture|/bin/tex|/tmp dir/1.txt"},
        {"a|", item(61, "/bin/tex TEXTORCODEASFILE", with("shouldOpenPDFPreview")),
         "write a\nlatex|/bin/tex|/tmp dir/1.txt in /docs /docs/my thesis.v2"},

        // Scripts
        {"a|", item(7, "beep"), "alert Error! Please check the script."},
        {"a|", item(7, nullptr), "alert Error! Please check the script."},
        {"a|", item(7, "say TEXTORCODE"),
         "alert Error! Scripts cannot be run here: this system has no interpreter for them."},
        {"a|", item(7, "beep", selected),
         "alert Error! Command (Action) is set to work with a selection."},
    };
    for (const auto& c : cases) {
        CommandHarness harness(c.text, c.item);
        harness.run();
        EXPECT_EQ(harness.happened(), c.happened) << c.text;
        EXPECT_EQ(harness.editor.marked(), c.text);
        EXPECT_TRUE(harness.editor.view.isEditable());
    }
}

TEST(CommandExecution, KeepsToTheSandbox)
{
    const char* const sorry =
        "alert Sorry! This feature is not available in the sandboxed Mac App Store version.";
    const struct
    {
        D item;
        std::string happened;
    } cases[] = {
        {item(6, "/bin/x TEXTORCODEASFILE", with("shouldRun")), sorry},
        {item(61, "/bin/x TEXTORCODEASFILE", with("shouldOpenPDFPreview")), sorry},
        {item(7, "say TEXTORCODE"), sorry},
        {item(6, "/bin/x TEXTORCODEASSSTRING"), "capture|/bin/x|a"},
    };
    for (const auto& c : cases) {
        CommandHarness harness("a|", c.item);
        harness.isSandboxed = true;
        harness.run();
        EXPECT_EQ(harness.happened(), c.happened);
    }
}

TEST(CommandExecution, TellsWhatCannotBeDone)
{
    const std::string tooLong(CommandExecution::longestArgument + 1, 'a');
    const struct
    {
        std::string text;
        D item;
        StringEncoding encoding;
        const char* happened;
    } cases[] = {
        {"a|", item(8, ""), StringEncoding::utf8, "open nothing"},
        {"a|", item(8, "a.org"), StringEncoding::utf8, "open nothing"},
        {"«€»", item(4, "https://a.org/TEXTORCODE"), StringEncoding::isoLatin1,
         "alert Error! The document's encoding lacks a character of the text. Choose another "
         "encoding."},
        {"«é»", item(4, "https://a.org/TEXTORCODE"), StringEncoding::isoLatin1,
         "open https://a.org/%E9"},
        {tooLong + "|", item(4, "https://a.org/TEXTORCODE"), StringEncoding::utf8,
         "alert Error! The text is too long for an address. Select a part of it."},
        {tooLong + "|", item(6, "/bin/echo TEXTORCODEASSSTRING"), StringEncoding::utf8,
         "alert Error! The text is too long for a command line. Use TEXTORCODEASFILE in the "
         "command, or select a part of the text."},
    };
    for (const auto& c : cases) {
        CommandHarness harness(c.text.c_str(), c.item);
        harness.encoding = c.encoding;
        harness.agrees = true;
        harness.run();
        if (std::string_view(c.happened) == "open nothing")
            EXPECT_TRUE(harness.log.back().endsWith(s("is no address that can be opened.")));
        else
            EXPECT_EQ(harness.happened(), c.happened);
    }
    CommandHarness full("a|", item(6, "/bin/x TEXTORCODEASFILE", with("outputCanReplaceDocument")));
    full.diskIsFull = true;
    full.run();
    EXPECT_EQ(full.happened(), "write a\nalert Error! No space left");
    EXPECT_TRUE(full.editor.view.isEditable());
}

TEST(CommandExecution, OutputGoesWhereTheItemSays)
{
    const D replacing = with("outputCanReplaceDocument");
    CommandHarness log("b\na|", item(6, "/bin/x TEXTORCODEASFILE"));
    log.run();
    log.pending(TextSnapshot(s("out")));
    EXPECT_EQ(log.log.back(), s("log out"));
    EXPECT_EQ(log.editor.marked(), "b\na|");

    for (const int kind : {6, 61}) {
        CommandHarness document("b\n«aa»\n|", item(kind, "/bin/x TEXTORCODEASFILE", replacing));
        document.run();
        document.pending(TextSnapshot(s("first\nb\n\n")));
        EXPECT_EQ(document.editor.marked(), "first\n«b»\n|\n");
        document.editor.view.undo();
        EXPECT_EQ(document.editor.marked(), "b\n«aa»\n|");
        EXPECT_FALSE(document.editor.undo.canUndo());
    }

    CommandHarness other("a|", item(6, "/bin/x TEXTORCODEASFILE", replacing));
    other.run();
    other.editor.view.insertText(s("b"));
    other.pending(TextSnapshot(s("out")));
    EXPECT_EQ(other.editor.marked(), "ab|"); // it was no more the text that the program saw
}

} // namespace
} // namespace quillory::test
