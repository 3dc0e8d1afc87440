#include "text/BracketMatching.h"

#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

std::optional<TextOffset> expectedOpener(const QString& text, TextOffset offset, BracketKind kind,
                                         TextOffset from = 0)
{
    for (int depth = 0; offset-- > from;) {
        if (text[offset] == kind.closer)
            ++depth;
        else if (text[offset] == kind.opener && depth-- == 0)
            return offset;
    }
    return {};
}

std::optional<TextOffset> expectedCloser(const QString& text, TextOffset offset, BracketKind kind)
{
    for (int depth = 0; offset < text.size(); ++offset) {
        if (text[offset] == kind.opener)
            ++depth;
        else if (text[offset] == kind.closer && depth-- == 0)
            return offset;
    }
    return {};
}

/// Texts of several levels of nodes, with leaves that are narrow, wide and mixed. U+0128 and
/// U+FF08 hold an opener's byte, and are none.
QString randomText(std::mt19937& random, qsizetype length)
{
    const QString narrow = QStringLiteral("(){}[]<>");
    const QString wide = QStringLiteral(u"(){}\u0128\u7b7d\u2028\uff08");
    QString text;
    while (text.size() < length) {
        const QString& units = random() % 3 == 0 ? wide : narrow;
        const unsigned blanks = random() % 2 == 0 ? 100 : 2;
        for (qsizetype run = qsizetype(random() % 9000); run > 0; --run)
            text += random() % blanks == 0 ? units[qsizetype(random() % 8)] : QChar(u'.');
    }
    return text;
}

TEST(BracketMatching, FindsWhatCountingFindsAlsoAfterEdits)
{
    std::mt19937 random(5);
    const auto anywhere = [&](const QString& text) {
        return TextOffset(random() % size_t(text.size() + 1));
    };
    for (int round = 0; round < 8; ++round) {
        QString text = randomText(random, qsizetype(random() % 200'000));
        TextSnapshot snapshot(text);
        if (round % 2 == 0)
            noteBrackets(snapshot);
        for (int look = 0; look < 60; ++look) {
            const TextOffset offset = anywhere(text);
            for (const BracketKind kind :
                 {roundBrackets, curlyBrackets, squareBrackets, angleBrackets}) {
                ASSERT_EQ(openerBefore(snapshot, offset, kind), expectedOpener(text, offset, kind))
                    << round << ' ' << look;
                const TextOffset from = anywhere(text);
                ASSERT_EQ(openerBefore(snapshot, offset, kind, from),
                          expectedOpener(text, offset, kind, from))
                    << round << ' ' << look;
                ASSERT_EQ(closerFrom(snapshot, offset, kind), expectedCloser(text, offset, kind))
                    << round << ' ' << look;
            }
            const TextRange old = TextRange::between(offset, std::min(anywhere(text), offset + 9));
            const QString brackets = QStringLiteral("}}({").left(qsizetype(random() % 5));
            text.replace(old.location, old.length, brackets);
            snapshot = snapshot.replacing(old, TextSnapshot(brackets));
        }
    }
}

TEST(BracketMatching, CountsTheKindThatIsAskedForAlone)
{
    struct Case
    {
        const char* text;
        TextOffset at;
        std::optional<TextOffset> partner;
    };
    const Case cases[] = {
        {"(a (b) c)", 8, 0}, {"(a (b) c)", 0, 8}, {"(a (b) c)", 5, 3}, {"({)}", 2, 0},
        {"\"{\" }", 4, 1},   {"a)", 1, {}},       {"((a)", 0, {}},     {"<a>", 0, 2},
        {"[]]", 2, {}},      {"a)", 0, {}}, // no bracket
    };
    for (const Case& c : cases) {
        const TextSnapshot text{QString::fromLatin1(c.text)};
        const bool opens = kindOpenedBy(text.at(c.at)).has_value();
        EXPECT_EQ(opens ? matchingCloser(text, c.at) : matchingOpener(text, c.at), c.partner)
            << c.text << ' ' << c.at;
    }
    EXPECT_FALSE(openerBefore(TextSnapshot(), 0, curlyBrackets));
    EXPECT_FALSE(closerFrom(TextSnapshot(), 0, curlyBrackets));
}

} // namespace
} // namespace quillory
