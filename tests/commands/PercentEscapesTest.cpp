#include "commands/PercentEscapes.h"

#include <gtest/gtest.h>

namespace quillory {
namespace {

TEST(PercentEscapes, AreTheBytesOfTheEncoding)
{
    const struct
    {
        QString text;
        StringEncoding encoding;
        const char* also;
        std::optional<QString> escaped;
    } cases[] = {
        {QStringLiteral("https://a.org/?q=a b"), StringEncoding::utf8, "",
         QStringLiteral("https://a.org/?q=a%20b")},
        {QStringLiteral("-_.!~*'();/?:@&=+$,"), StringEncoding::utf8, "",
         QStringLiteral("-_.!~*'();/?:@&=+$,")},
        {QStringLiteral("100%#\"<[]>\\^`{|}\n"), StringEncoding::ascii, "",
         QStringLiteral("100%25%23%22%3C%5B%5D%3E%5C%5E%60%7B%7C%7D%0A")},
        {QStringLiteral("é€"), StringEncoding::utf8, "", QStringLiteral("%C3%A9%E2%82%AC")},
        {QStringLiteral("é"), StringEncoding::isoLatin1, "", QStringLiteral("%E9")},
        {QStringLiteral("é a"), StringEncoding::utf16, "", QStringLiteral("%E9%00%20%00a")},
        {QStringLiteral("😀"), StringEncoding::utf8, "", QStringLiteral("%F0%9F%98%80")},
        {QStringLiteral("€"), StringEncoding::isoLatin1, "", std::nullopt},
        {QString(QChar(0xD800)), StringEncoding::utf8, "", std::nullopt},
        {QStringLiteral("a+b=c?/:"), StringEncoding::utf8, "?=&+",
         QStringLiteral("a%2Bb%3Dc%3F/:")},
        {QString(), StringEncoding::utf8, "", QString()},
    };
    for (const auto& c : cases)
        EXPECT_EQ(withPercentEscapes(c.text, c.encoding, QLatin1StringView(c.also)), c.escaped)
            << c.text.toStdString();
}

} // namespace
} // namespace quillory
