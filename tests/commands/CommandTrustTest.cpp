#include "CommandHarness.h"

namespace quillory::test {
namespace {

using D = PropertyList::Dictionary;

QString s(const char* text)
{
    return QString::fromUtf8(text);
}

D item(int kind, const char* string)
{
    return {{s("kind"), kind}, {s("string"), s(string)}};
}

/// Makes the definition in use one that did not come with the program.
void makeForeign(const CommandHarness& harness)
{
    QFile file(harness.folders.applicationSupport + s("/Definitions/T.plist"));
    ASSERT_TRUE(file.open(QFile::Append));
    file.write("\n");
}

TEST(CommandTrust, ForeignCommandsAskOnceBeforeTheyReachOut)
{
    const struct
    {
        D item;
        const char* question; ///< none for a command that needs no trust
        const char* action;
    } cases[] = {
        {item(6, "/bin/sh -c 'rm  x' TEXTORCODEASSSTRING"),
         "ask /bin/sh\n    -c\n    rm  x\n    TEXTORCODEASSSTRING", "capture|/bin/sh|-c|rm  x|a"},
        {item(61, "/bin/tex TEXTORCODEASSSTRING"), "ask /bin/tex\n    TEXTORCODEASSSTRING",
         "capture|/bin/tex|a"},
        {item(5, "http://a.org"), "ask http://a.org", "send http://a.org a 0"},
        {item(8, "file:///bin/x"), "ask file:///bin/x", "open file:///bin/x"},
        {item(4, "ssh:TEXTORCODE"), "ask ssh:TEXTORCODE", "open ssh:a"},
        {item(4, "https://TEXTORCODE"), nullptr, "open https://a"},
        {item(8, "https://a.org"), nullptr, "open https://a.org"},
    };
    for (const auto& c : cases) {
        {
            CommandHarness shipped("a|", c.item);
            shipped.run();
            EXPECT_EQ(shipped.happened(), c.action);
        }
        CommandHarness foreign("a|", c.item);
        makeForeign(foreign);
        const std::string asked = c.question ? c.question : c.action;
        foreign.run();
        EXPECT_EQ(foreign.happened(), asked);
        if (!c.question)
            continue;
        foreign.agrees = true;
        foreign.log.clear();
        foreign.run();
        EXPECT_EQ(foreign.happened(), asked + "\n" + c.action);
        foreign.log.clear();
        foreign.run();
        EXPECT_EQ(foreign.happened(), c.action);
    }
}

TEST(CommandTrust, HoldsForTheItemAsItIs)
{
    CommandHarness harness("a|", item(6, "/bin/a TEXTORCODEASSSTRING"));
    makeForeign(harness);
    const Definition& definition = *harness.colouring.definition();
    const CommandItem agreed = *harness.menu.entries().at(1).representedObject;
    harness.trust.trust(agreed);
    const CommandTrust later(s("/nowhere"), harness.folders.state);
    EXPECT_TRUE(later.isTrusted(agreed, definition));
    CommandItem other = agreed;
    other.onlyValidForSelection = true;
    EXPECT_FALSE(later.isTrusted(other, definition));
    other = agreed;
    *other.string += u' ';
    EXPECT_FALSE(later.isTrusted(other, definition));
    const CommandTrust forgetful(s("/nowhere"), QString());
    forgetful.trust(agreed);
    EXPECT_FALSE(forgetful.isTrusted(agreed, definition));
}

TEST(CommandTrust, AFileThatWasPutBackVouchesForNothingElse)
{
    CommandHarness harness("a|", item(6, "/bin/a TEXTORCODEASSSTRING"));
    CommandItem swapped = *harness.menu.entries().at(1).representedObject;
    swapped.string = s("/bin/b TEXTORCODEASSSTRING");
    EXPECT_FALSE(harness.trust.isTrusted(swapped, *harness.colouring.definition()));
}

TEST(CommandTrust, ShowsWhatCannotBeSeen)
{
    EXPECT_EQ(withVisibleCharacters(s("a\nb\t\u202Ec\u00A0é😀\u200B")),
              s("a\\u{a}b\\u{9}\\u{202e}c\\u{a0}é😀\\u{200b}"));
}

} // namespace
} // namespace quillory::test
