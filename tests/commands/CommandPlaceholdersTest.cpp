#include "commands/CommandPlaceholders.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

QString s(const char* text)
{
    return QString::fromUtf8(text);
}

TEST(CommandPlaceholders, ATemplateHasOnePlace)
{
    const struct
    {
        const char* written;
        const char* cut; ///< with "|" at the place
    } cases[] = {
        {"(%@)", "(|)"},
        {"", ""},
        {"no place", "no place"},
        {"100%% of %@", "100% of |"},
        {"%%@", "%@"},
        {"%@ and %@, 5%%", "| and %@, 5%"},
        {"50% %d %", "50% %d %"},
        {"%%%@%", "%|%"},
    };
    for (const auto& c : cases) {
        const TagTemplate tags = TagTemplate::from(s(c.written));
        EXPECT_EQ(tags.before + (tags.hasPlace ? s("|") : QString()) + tags.after, s(c.cut));
    }
    for (const char* text : {"%@", "%%", "a%", "%d %@ %%@"}) {
        const TagTemplate tags = TagTemplate::from(escapedForTemplate(s(text)));
        EXPECT_FALSE(tags.hasPlace);
        EXPECT_EQ(tags.before, s(text));
    }
}

TEST(CommandPlaceholders, APathStaysOneArgument)
{
    const struct
    {
        const char* body;
        QStringList words;
    } cases[] = {
        {"/bin/wc -l TEXTORCODEASFILE", {s("/bin/wc"), s("-l"), s("/a b/it's \"1\".txt")}},
        {"/bin/wc --files0-from=TEXTORCODEASFILE x",
         {s("/bin/wc"), s("--files0-from=/a b/it's \"1\".txt"), s("x")}},
        {"/bin/sh -c 'cat \"$1\"' sh TEXTORCODEASFILE",
         {s("/bin/sh"), s("-c"), s("cat \"$1\""), s("sh"), s("/a b/it's \"1\".txt")}},
        {"/bin/cat TEXTORCODEASFILE TEXTORCODEASFILE textorcodeasfile",
         {s("/bin/cat"), s("/a b/it's \"1\".txt"), s("/a b/it's \"1\".txt"),
          s("textorcodeasfile")}},
    };
    for (const auto& c : cases) {
        const CommandLine line = commandLineWithFile(s(c.body), s("/a b/it's \"1\".txt"));
        EXPECT_EQ(QStringList(line.program) + line.arguments, c.words) << c.body;
    }
}

TEST(CommandPlaceholders, ATextIsDividedWhereItIsNotQuoted)
{
    const struct
    {
        const char* body;
        const char* text;
        QStringList words;
    } cases[] = {
        {"/bin/echo TEXTORCODEASSSTRING end", "a b", {s("/bin/echo"), s("a"), s("b"), s("end")}},
        {"/bin/echo TEXTORCODEASSSTRING", "'a b' c", {s("/bin/echo"), s("a b"), s("c")}},
        {"/bin/echo \"TEXTORCODEASSSTRING\"", "a b", {s("/bin/echo"), s("a b")}},
        {"/bin/echo 'TEXTORCODEASSSTRING' x",
         "it's\" -rf",
         {s("/bin/echo"), s("it's\" -rf"), s("x")}},
        {"/bin/echo TEXTORCODEASSSTRING",
         "TEXTORCODEASSSTRING TEXTORCODEASFILE",
         {s("/bin/echo"), s("TEXTORCODEASSSTRING"), s("TEXTORCODEASFILE")}},
        {"/bin/echo x", "unused", {s("/bin/echo"), s("x")}},
    };
    for (const auto& c : cases) {
        const CommandLine line = commandLineWithText(s(c.body), s(c.text));
        EXPECT_EQ(QStringList(line.program) + line.arguments, c.words) << c.body;
    }
    EXPECT_TRUE(hasPlaceholderAsProgram(s("TEXTORCODEASFILE x")));
    EXPECT_TRUE(hasPlaceholderAsProgram(s("'/bin/TEXTORCODEASSSTRING' x")));
    EXPECT_FALSE(hasPlaceholderAsProgram(s("/bin/sh TEXTORCODEASFILE")));
}

} // namespace
} // namespace quillory
