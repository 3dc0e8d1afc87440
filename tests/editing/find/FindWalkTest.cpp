#include "editing/find/FindQuery.h"
#include "editing/find/FindTemplate.h"

#include <QRegularExpression>
#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

using namespace Qt::StringLiterals;

std::vector<TextRange> all(const QString& text, const FindQuery& query)
{
    FindWalk walk{TextSnapshot(text), query.pattern()};
    std::vector<TextRange> found;
    while (const std::optional<TextRange> match = walk.next())
        found.push_back(*match);
    return found;
}

QString shown(const QString& text, const FindQuery& query)
{
    QString marked = text;
    const std::vector<TextRange> found = all(text, query);
    for (auto match = found.rbegin(); match != found.rend(); ++match) {
        marked.insert(match->end(), u']');
        marked.insert(match->location, u'[');
    }
    return marked;
}

TEST(FindWalk, FindsWhatIsAskedFor)
{
    struct Case
    {
        FindQuery query;
        QString text;
        QString found;
    };
    const Case cases[] = {
        {{u"b"_s}, u"abBb"_s, u"a[b][B][b]"_s},
        {{.text = u"b"_s, .matchesCase = true}, u"abBb"_s, u"a[b]B[b]"_s},
        {{u"aa"_s}, u"aaaaa"_s, u"[aa][aa]a"_s},
        {{u"a.c"_s}, u"abc a.c"_s, u"abc [a.c]"_s},
        {{u"\\d(*$"_s}, u"x\\d(*$"_s, u"x[\\d(*$]"_s},
        {{u"straße 🙂"_s}, u"STRASSE 🙂 Straße 🙂"_s, u"[STRASSE 🙂] [Straße 🙂]"_s},
        {{.text = u"a"_s, .wholeWords = true}, u"a ab ba a_ éa (a)"_s, u"[a] ab ba a_ éa ([a])"_s},
        {{.text = u"a|ab"_s, .isRegex = true, .wholeWords = true}, u"ab aba"_s, u"[ab] aba"_s},
        {{.text = u"(+)"_s, .wholeWords = true}, u"(+) x(+)"_s, u"[(+)] x(+)"_s},
        {{.text = u"^\\w"_s, .isRegex = true}, u"ab\nc\r\nd"_s, u"[a]b\n[c]\r\n[d]"_s},
        {{.text = u"b?$"_s, .isRegex = true}, u"ab\n\nb"_s, u"a[b][]\n[]\n[b][]"_s},
        {{.text = u"x*"_s, .isRegex = true}, u"🙂"_s, u"[]🙂[]"_s},
        {{.text = u"(?<=a)b"_s, .isRegex = true}, u"ab b"_s, u"a[b] b"_s},
        {{.text = u"\\A."_s, .isRegex = true}, u"ab\ncd"_s, u"[a]b\ncd"_s},
        {{u"nothing"_s}, u""_s, u""_s},
        {{.text = u"^"_s, .isRegex = true}, u""_s, u"[]"_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(shown(c.text, c.query), c.found) << c.query.text.toStdString();
    EXPECT_THROW((FindQuery{.text = u"("_s, .isRegex = true}.pattern()), ICUException);
}

/// What is cut by a window's end, or depends on what follows it, is found as in one piece.
TEST(FindWalk, FindsTheSameWhereverWindowsEnd)
{
    const TextOffset edge = FindWalk::window;
    const auto filled = [](TextOffset length) { return u"-"_s.repeated(length); };
    for (TextOffset before = edge - 6; before <= edge + 2; ++before) {
        const QString start = filled(before);
        const auto expect = [&](const FindQuery& query, const QString& place, const QString& rest) {
            const std::vector<TextRange> found = all(start + place + rest, query);
            ASSERT_EQ(found.size(), 1u) << query.text.toStdString() << " at " << before;
            EXPECT_EQ(found[0], (TextRange{before, place.size()})) << query.text.toStdString();
        };
        expect({u"needle"_s}, u"needle"_s, filled(edge));
        expect({.text = u"\\w+"_s, .isRegex = true}, u"needle"_s, filled(10));
        expect({.text = u"ab\\b"_s, .isRegex = true}, u"ab"_s, u"- abc"_s);
        expect({.text = u"a(?!bc)"_s, .isRegex = true}, u"a"_s, u"b-abc"_s);
        expect({.text = u"a\\R"_s, .isRegex = true}, u"a\r\n"_s, filled(3));
        expect({.text = u"🙂"_s}, u"🙂"_s, filled(3));
        expect({.text = u"a$"_s, .isRegex = true}, u"a"_s, u"\n"_s + filled(3) + u"ab"_s);
    }
    for (TextOffset before = edge - 3; before > edge - FindWalk::overlap; before -= 9999) {
        const QString place = u"<"_s + filled(FindWalk::overlap - 2) + u'>';
        EXPECT_EQ(all(filled(before) + place + filled(9), {.text = u"<[^>]*>"_s, .isRegex = true}),
                  std::vector<TextRange>({{before, place.size()}}));
    }
    // Longer than a window.
    const QString text = u"<"_s + filled(3 * edge) + u"> <"_s;
    EXPECT_EQ(all(text, {.text = u"<[\\s\\S]*"_s, .isRegex = true}),
              std::vector<TextRange>({{0, text.size()}}));
}

TEST(FindWalk, FindsWhatAnotherEngineFinds)
{
    std::mt19937 random(7);
    const QString letters[] = {u"a"_s, u"b"_s, u"\n"_s, u"-"_s, u"é"_s, u"🙂"_s};
    const QString patterns[] = {u"a"_s, u"b+"_s, u"[a-]b"_s, u"a$"_s, u"(é|a)*b"_s, u"^-?a"_s};
    for (int round = 0; round < 30; ++round) {
        QString text;
        for (int i = int(random() % 400); i > 0; --i)
            text += letters[random() % std::size(letters)];
        for (const QString& pattern : patterns) {
            std::vector<TextRange> expected;
            const QRegularExpression other(pattern,
                                           QRegularExpression::MultilineOption |
                                               QRegularExpression::UseUnicodePropertiesOption);
            for (auto matches = other.globalMatch(text); matches.hasNext();) {
                const QRegularExpressionMatch match = matches.next();
                expected.push_back({match.capturedStart(), match.capturedLength()});
            }
            EXPECT_EQ(all(text, {.text = pattern, .isRegex = true, .matchesCase = true}), expected)
                << pattern.toStdString() << " in " << text.toStdString();
        }
    }
}

TEST(FindWalk, GivesUpWhatTakesTooLong)
{
    FindWalk walk{TextSnapshot(u"a"_s.repeated(60)),
                  FindQuery{.text = u"(a+)+b"_s, .isRegex = true}.pattern()};
    try {
        walk.next();
        FAIL();
    } catch (const ICUException& exception) {
        EXPECT_TRUE(exception.isLimit());
    }
}

TEST(FindWalk, EndsBetweenWindowsWhenItIsGivenUp)
{
    std::atomic_bool givesUp = false;
    const QString text = u"a"_s + u"-"_s.repeated(3 * FindWalk::window) + u"a"_s;
    FindWalk walk(TextSnapshot(text), FindQuery{u"a"_s}.pattern(), 0, &givesUp);
    EXPECT_TRUE(walk.next());
    givesUp = true;
    EXPECT_FALSE(walk.next());
    EXPECT_LT(walk.position(), FindWalk::window);
}

TEST(FindTemplate, PutsGroupsInTheirPlaces)
{
    FindWalk walk{TextSnapshot(u"x key=12"_s),
                  FindQuery{.text = u"(\\w+)=(?<value>\\d+)(z)?"_s, .isRegex = true}.pattern()};
    ASSERT_TRUE(walk.next());
    const std::pair<QStringView, QStringView> cases[] = {
        {u"$2 = $1", u"12 = key"},
        {u"${value}0${1}", u"120key"},
        {u"[$0]", u"[key=12]"},
        {u"\\$1\\\\\\n\\t", u"$1\\\n\t"},
        {u"$3|$4|${none}|$", u"|$4|${none}|$"},
        {u"", u""},
        {u"$12", u"key2"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(FindTemplate(text.toString(), true).replacement(walk), expected);
    EXPECT_EQ(FindTemplate(u"$1\\n"_s, false).replacement(walk), u"$1\\n"_s);
}

} // namespace
} // namespace quillory
