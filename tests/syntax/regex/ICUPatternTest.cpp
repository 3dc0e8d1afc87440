#include "syntax/regex/ICUPattern.h"
#include "syntax/regex/ICUMatcher.h"
#include "syntax/regex/NSStringICUAdditions.h"

#include <gtest/gtest.h>

using namespace quillory;
using namespace Qt::StringLiterals;

namespace {

/// "name|reason" of what \a work throws, or "nothing".
template<class Work>
QString thrown(Work&& work)
{
    try {
        work();
    } catch (const ICUException& exception) {
        EXPECT_EQ(QByteArray(exception.what()),
                  (exception.name() + u": " + exception.reason()).toUtf8());
        return exception.name() + u"|" + exception.reason();
    }
    return u"nothing"_s;
}

ICUMatcher over(const QString& pattern, const QString& subject)
{
    return ICUMatcher::matcherWithPattern(ICUPattern::patternWithString(pattern), subject);
}

const QString backtracking = u"(?:a|aa)+$"_s;

} // namespace

TEST(ICUPattern, throws)
{
    struct Row
    {
        const char* what;
        std::function<void()> work;
        QString expected;
    };
    const Row rows[] = {
        {"syntax", [] { ICUPattern(u"(a"_s); },
         u"Invalid Pattern Exception|Could not compile pattern: U_REGEX_MISMATCHED_PAREN"_s},
        {"empty", [] { ICUPattern(u""_s); },
         u"Invalid Pattern Exception|Could not compile pattern: U_ILLEGAL_ARGUMENT_ERROR"_s},
        {"null subject", [] { over(u"a"_s, QString()); },
         u"Assertion Exception|Invalid parameter not satisfying: string"_s},
        {"empty subject", [] { over(u"a"_s, u""_s); }, u"nothing"_s},
        {"no subject", [] { ICUPattern(u"a"_s).reset(); },
         u"Pattern Exception|Could not reset pattern: U_REGEX_INVALID_STATE"_s},
        {"place outside", [] { over(u"a"_s, u"aa"_s).findFromIndex(3); },
         u"Find Exception|U_INDEX_OUTOFBOUNDS_ERROR"_s},
        {"far outside", [] { over(u"a"_s, u"aa"_s).findFromIndex(qsizetype(1) << 40); },
         u"Find Exception|U_INDEX_OUTOFBOUNDS_ERROR"_s},
        {"no match, all groups", [] { NSStringICUAdditions::findPattern(u"abc"_s, u"x"_s); },
         u"Find Exception|U_REGEX_INVALID_STATE"_s},
        {"unknown group",
         [] {
             ICUMatcher matcher = over(u"a"_s, u"a"_s);
             matcher.findNext();
             matcher.groupAtIndex(1);
         },
         u"Find Exception|U_INDEX_OUTOFBOUNDS_ERROR"_s},
        {"replacement", [] { over(u"a"_s, u"a"_s).replaceAllWithString(u"$7"_s); },
         u"Find Exception|Could not perform find and replace: U_INDEX_OUTOFBOUNDS_ERROR"_s},
    };
    for (const Row& row : rows)
        EXPECT_EQ(thrown(row.work), row.expected) << row.what << thrown(row.work).toStdString();
}

TEST(ICUPattern, keepsItsSubjectWhenTheNextIsRefused)
{
    ICUMatcher matcher = over(u"b"_s, u"abc"_s);
    EXPECT_NE(thrown([&] { matcher.pattern()->setStringToSearch(QString()); }), u"nothing"_s);
    EXPECT_EQ(matcher.pattern()->stringToSearch(), u"abc"_s);
    EXPECT_TRUE(matcher.findNext());
    EXPECT_EQ(matcher.rangeOfMatch(), (TextRange{1, 1}));
}

TEST(ICUPattern, sharesTheCharactersOfItsSubject)
{
    QString subject = u"one"_s + QString::number(2);
    const ICUPattern pattern(u"."_s);
    auto shared = std::make_shared<ICUPattern>(pattern);
    ICUMatcher matcher(shared, subject);
    EXPECT_EQ(shared->textToSearch(), QStringView(subject).utf16());
    EXPECT_EQ(shared->textToSearch()[subject.size()], u'\0');
    subject[0] = u'X'; // the caller's own string may change; the subject does not
    ASSERT_TRUE(matcher.findNext());
    EXPECT_EQ(matcher.group(), u"o"_s);
    EXPECT_EQ(matcher.groupAtIndex(0), u"o"_s);

    // A stretch of some other string has no NUL of its own.
    const QString whole = u"abcdef"_s;
    ICUMatcher part(shared, QString::fromRawData(whole.constData(), 3));
    EXPECT_EQ(shared->textToSearch()[3], u'\0');
    int found = 0;
    while (part.findNext())
        ++found;
    EXPECT_EQ(found, 3);
}

TEST(ICUPattern, isCopiedWithFlagsAndWithoutSubject)
{
    ICUPattern original(u"A."_s, UREGEX_CASE_INSENSITIVE);
    original.setStringToSearch(u"ab"_s);
    ICUPattern copy(original);
    EXPECT_EQ(copy.pattern(), u"A."_s);
    EXPECT_EQ(copy.flags(), original.flags());
    EXPECT_EQ(copy.textToSearch(), nullptr);
    EXPECT_TRUE(copy.matchesString(u"aX"_s));
    EXPECT_EQ(original.stringToSearch(), u"ab"_s);
    // The limits hold for copies too.
    const ICUPattern slow(backtracking);
    EXPECT_EQ(thrown([&] { ICUPattern(slow).matchesString(QString(60, u'a') + u'b'); }),
              u"Find Exception|U_REGEX_TIME_OUT"_s);
}

TEST(ICUPattern, splits)
{
    QStringList many;
    for (int i = 0; i < 100; ++i)
        many.append(QString(i % 7, u'x') + QString::number(i));
    const QStringList sixteen = many.mid(0, 16);
    struct Row
    {
        QString pattern;
        QString subject;
        QStringList expected;
    };
    const Row rows[] = {
        {u","_s, many.join(u','), many},
        {u","_s, sixteen.join(u','), sixteen},
        {u","_s, sixteen.join(u',') + u",", sixteen + QStringList{u""_s}},
        {u","_s, u"abc"_s, {u"abc"_s}},
        {u","_s, u""_s, {}},
        {u","_s, u"a\0b,c"_s, {u"a\0b"_s, u"c"_s}},
        {u"(,)(;)?"_s, u"a,b,;c"_s, {u"a"_s, u","_s, u""_s, u"b"_s, u","_s, u";"_s, u"c"_s}},
        {backtracking, QString(60, u'a') + u'b', {QString(60, u'a') + u'b'}}, // the time limit
    };
    for (const Row& row : rows)
        EXPECT_EQ(ICUPattern(row.pattern).componentsSplitFromString(row.subject), row.expected)
            << row.pattern.toStdString() << " in " << row.subject.toStdString();
}

TEST(ICUMatcher, findsRangesAndGroups)
{
    ICUMatcher matcher = over(u"(\\w)(\\d)?"_s, u"-a1 \U0001F600b"_s);
    ASSERT_TRUE(matcher.findNext());
    EXPECT_EQ(matcher.rangeOfMatch(), (TextRange{1, 2}));
    EXPECT_EQ(matcher.rangeOfMatchGroup(2), (TextRange{2, 1}));
    ASSERT_TRUE(matcher.findNext());
    EXPECT_EQ(matcher.rangeOfMatch(), (TextRange{6, 1})); // after a surrogate pair
    EXPECT_EQ(matcher.rangeOfMatchGroup(2), (TextRange{-1, 0}));
    EXPECT_EQ(matcher.groupAtIndex(2), u""_s);
    EXPECT_EQ(matcher.numberOfGroups(), 2);
    EXPECT_FALSE(matcher.findNext());
    EXPECT_TRUE(matcher.findFromIndex(2)); // from the beginning again
    EXPECT_EQ(matcher.group(), u"1"_s);

    struct Row
    {
        QString pattern;
        QString subject;
        bool matches;
        bool lookingAt;
        bool lookingAtOne;
    };
    const Row rows[] = {
        {u"ab"_s, u"ab"_s, true, true, false},
        {u"ab"_s, u"abc"_s, false, true, false},
        {u"b"_s, u"abc"_s, false, false, true},
        {u"(?<=a)b"_s, u"ab"_s, false, false, true},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(over(row.pattern, row.subject).matches(), row.matches);
        EXPECT_EQ(ICUPattern(row.pattern).matchesString(row.subject), row.matches);
        EXPECT_EQ(over(row.pattern, row.subject).lookingAt(), row.lookingAt);
        EXPECT_EQ(over(row.pattern, row.subject).lookingAt(1), row.lookingAtOne);
    }
}

TEST(ICUMatcher, sharesOneSubjectOverOnePattern)
{
    ICUMatcher first = over(u"\\d"_s, u"a1"_s);
    const ICUMatcher second(first.pattern(), u"abc2"_s);
    ASSERT_TRUE(first.findNext());
    EXPECT_EQ(first.rangeOfMatch(), (TextRange{3, 1}));
}

TEST(ICUMatcher, returnsLongGroupsAndReplacementsWhole)
{
    for (const qsizetype length : {0, 1, 127, 128, 129, 256, 100'000}) {
        const QString subject(length, u'x');
        ICUMatcher matcher = over(u"(x*)"_s, subject);
        ASSERT_TRUE(matcher.findNext());
        EXPECT_EQ(matcher.groupAtIndex(1), subject) << length;
        EXPECT_EQ(NSStringICUAdditions::replaceOccurrencesOfPattern(subject, u"x"_s, u"12345"_s),
                  QString(u"12345"_s).repeated(length));
    }
    EXPECT_EQ(over(u"(a)(b)"_s, u"abab"_s).replaceAllWithString(u"$2$1\\$"_s), u"ba$ba$"_s);
    EXPECT_EQ(over(u"a"_s, u"aaa"_s).replaceFirstWithString(u"bcdefghij"_s), u"bcdefghijaa"_s);
    EXPECT_EQ(NSStringICUAdditions::replaceOccurrencesOfPattern(QString(), u"^"_s, u"a"_s), u"a"_s);
}

TEST(ICUMatcher, givesUpAtALimitAndSaysSo)
{
    ICUMatcher slow = over(backtracking, QString(60, u'a') + u'b');
    ICUMatcher deep = over(u"(?:(a)|b)*c"_s, QString(20'000'000, u'a'));
    for (ICUMatcher* matcher : {&slow, &deep}) {
        try {
            matcher->findNext();
            ADD_FAILURE() << "no limit";
        } catch (const ICUException& exception) {
            EXPECT_TRUE(exception.isLimit()) << exception.what();
        }
    }
    // What is long but simple stays under both.
    const QString quoted = u"x\"" + QString(4'000'000, u'y') + u'"';
    EXPECT_TRUE(
        over(u"\\W\"[^\"\\\\]*+(?:\\\\(?:.|$)[^\"\\\\]*+)*+\""_s, u' ' + quoted.mid(1)).findNext());
    QString strings;
    while (strings.size() < 8'000'000)
        strings += u" \"a\\\"b\\\\c\""_s;
    ICUMatcher all = over(u"\\W\"[^\"\\\\]*+(?:\\\\(?:.|$)[^\"\\\\]*+)*+\""_s, strings);
    qsizetype count = 0;
    while (all.findNext())
        ++count;
    EXPECT_EQ(count, strings.size() / 10);
}

TEST(NSStringICUAdditions, workOnAnyString)
{
    EXPECT_EQ(NSStringICUAdditions::findPattern(u"key = value"_s, u"(\\w+) = (\\w+)"_s),
              (QStringList{u"key = value"_s, u"key"_s, u"value"_s}));
    EXPECT_TRUE(NSStringICUAdditions::matchesPattern(u"2026"_s, u"\\d+"_s));
    EXPECT_FALSE(NSStringICUAdditions::matchesPattern(u"2026a"_s, u"\\d+"_s));
    EXPECT_EQ(NSStringICUAdditions::componentsSeparatedByPattern(u"a1b22c"_s, u"\\d+"_s),
              (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(NSStringICUAdditions::stringWithICUString(u"ab\0c"), u"ab"_s);
    EXPECT_EQ(NSStringICUAdditions::nativeUTF16Encoding(), StringEncoding::utf16LittleEndian);
    const QString text = u"h\u00e9"_s;
    const auto copy = NSStringICUAdditions::copyUTF16String(text);
    EXPECT_EQ(QStringView(copy.get()), text);
    EXPECT_EQ(QStringView(NSStringICUAdditions::UTF16String(text)), text);
}
