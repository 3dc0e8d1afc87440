#include "commands/CommandLine.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

struct Case
{
    QString line;
    QStringList words;
};

TEST(CommandLine, IsDividedIntoWords)
{
    const Case cases[] = {
        {QStringLiteral("/usr/bin/wc -l"), {QStringLiteral("/usr/bin/wc"), QStringLiteral("-l")}},
        {QStringLiteral("a  b"), {QStringLiteral("a"), QString(), QStringLiteral("b")}},
        {QString(), {QString()}},
        {QStringLiteral("sh -c 'a b' c"),
         {QStringLiteral("sh"), QStringLiteral("-c"), QStringLiteral("a b"), QStringLiteral("c")}},
        {QStringLiteral("p \"it's\"  x"),
         {QStringLiteral("p"), QStringLiteral("it's"), QStringLiteral("x")}},
        {QStringLiteral("p \"\" x"), {QStringLiteral("p"), QString(), QStringLiteral("x")}},
        {QStringLiteral("p 'it\\'s so' x"),
         {QStringLiteral("p"), QStringLiteral("it\\'s so"), QStringLiteral("x")}},
        {QStringLiteral("p 'open end"), {QStringLiteral("p"), QStringLiteral("open end")}},
        {QStringLiteral("p --a='b c'"),
         {QStringLiteral("p"), QStringLiteral("--a='b"), QStringLiteral("c'")}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(divideIntoArrayFromString(c.line), c.words) << c.line.toStdString();
}

} // namespace
} // namespace quillory
