#include "text/TextSearch.h"

#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

TextOffset expectedFirst(const QString& text, QStringView needle, TextRange within)
{
    const qsizetype found = QStringView(text).first(within.end()).indexOf(needle, within.location);
    return needle.isEmpty() ? -1 : found;
}

TextOffset expectedLast(const QString& text, QStringView needle, TextRange within)
{
    const QStringView part = QStringView(text).sliced(within.location, within.length);
    for (qsizetype at = part.size() - needle.size(); at >= 0 && !needle.isEmpty(); --at) {
        if (part.sliced(at, needle.size()) == needle)
            return within.location + at;
    }
    return -1;
}

TEST(TextSearch, FindsWhatAPlainStringFinds)
{
    std::mt19937 random(31);
    for (int round = 0; round < 150; ++round) {
        // Few different characters, so that near misses abound; some leaves wide, some narrow.
        QString text;
        const qsizetype length = qsizetype(random() % 15000);
        while (text.size() < length) {
            const bool wide = random() % 4 == 0;
            const qsizetype run = qsizetype(random() % 3000);
            for (qsizetype i = 0; i < run; ++i)
                text += QChar(char16_t((wide && random() % 50 == 0 ? 0x400 : 0x60) + random() % 3));
        }
        const TextSnapshot snapshot(text);
        for (int search = 0; search < 20; ++search) {
            const TextRange within =
                TextRange::between(TextOffset(random() % size_t(text.size() + 1)),
                                   TextOffset(random() % size_t(text.size() + 1)));
            // A needle out of the text, often at a leaf's seam, and often spoilt in one place.
            const TextOffset at = random() % 2 == 0 ? TextOffset(random() % size_t(text.size() + 1))
                                                    : std::min<TextOffset>(4090, text.size());
            QString needle = text.mid(at, qsizetype(random() % 20));
            if (!needle.isEmpty() && random() % 3 == 0)
                needle[qsizetype(random() % size_t(needle.size()))] = u'b';
            ASSERT_EQ(find(snapshot, needle, within), expectedFirst(text, needle, within))
                << round << ' ' << search;
            ASSERT_EQ(findBackwards(snapshot, needle, within), expectedLast(text, needle, within))
                << round << ' ' << search;
        }
    }
}

TEST(TextSearch, NeedleMayStraddleSeveralLeaves)
{
    const QString needle = QString(9000, u'n') + u'e';
    const QString text = QString(5000, u'n') % u"x" % needle % needle % u"y";
    const TextSnapshot snapshot(text);
    EXPECT_EQ(find(snapshot, needle, snapshot.range()), 5001);
    EXPECT_EQ(findBackwards(snapshot, needle, snapshot.range()), 5001 + 9001);
    EXPECT_EQ(find(snapshot, needle, {5002, snapshot.length() - 5002 - 2}), -1);
    EXPECT_EQ(findBackwards(snapshot, needle, {0, 5001 + 9001}), 5001);
}

TEST(TextSearch, EveryAlignmentIsSeen)
{
    for (const QChar filler : {QChar(u'.'), QChar(u'\u0436')}) {
        for (qsizetype size = 1; size < 70; ++size) {
            for (qsizetype at = 0; at < size; ++at) {
                QString text(size, filler);
                text[at] = u'x';
                const TextSnapshot snapshot(text);
                EXPECT_EQ(find(snapshot, u"x", snapshot.range()), at);
                EXPECT_EQ(findBackwards(snapshot, u"x", snapshot.range()), at);
            }
        }
    }
}

} // namespace
} // namespace quillory
