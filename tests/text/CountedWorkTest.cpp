// What editing and opening cost, counted: counts are steady where times are not.

#include "text/TextDecoder.h"
#include "text/TextStorage.h"

#include <gtest/gtest.h>
#include <set>

namespace quillory {
namespace {

/// An edit makes the leaf that it falls into anew, and its neighbours where that got small.
constexpr qsizetype few = 4;

/// The leaves of a text, by where they lie in memory.
std::set<const TextLeaf*> leavesOf(const TextSnapshot& text)
{
    std::set<const TextLeaf*> leaves;
    const auto collect = [&](const auto& self, const TextNode& node) -> void {
        if (node.height == 0) {
            leaves.insert(static_cast<const TextLeaf*>(&node));
            return;
        }
        const auto& branch = static_cast<const TextBranch&>(node);
        for (int i = 0; i < branch.count; ++i)
            self(self, *branch.children[size_t(i)]);
    };
    if (!text.isEmpty())
        collect(collect, *text.root());
    return leaves;
}

qsizetype leavesMade(const TextSnapshot& before, const TextSnapshot& after)
{
    const auto old = leavesOf(before);
    const auto now = leavesOf(after);
    return std::count_if(now.begin(), now.end(), [&](auto* leaf) { return !old.contains(leaf); });
}

ByteBuffer lines(qsizetype size)
{
    QByteArray bytes;
    while (bytes.size() < size)
        bytes += "a line of some forty characters, or so it is\n";
    return ByteBuffer(bytes);
}

TEST(CountedWork, AnEditMakesAFewLeavesHoweverLongTheText)
{
    for (const qsizetype size : {qsizetype(100'000), qsizetype(20'000'000)}) {
        const TextSnapshot text = *decode(lines(size), StringEncoding::utf8);
        TextSnapshot edited = text;
        TextOffset caret = text.length() / 2;
        for (int i = 0; i < 100; ++i) {
            const TextSnapshot next = edited.replacing({caret++, 0}, TextSnapshot(u"x"));
            EXPECT_LE(leavesMade(edited, next), few);
            edited = next;
        }
        EXPECT_LE(leavesMade(text, text.replacing({1000, text.length() - 2000}, TextSnapshot())),
                  few);
        EXPECT_LE(leavesMade(text, text.slice({5000, text.length() - 10000})), few);
        // Moving half of the text to its end copies none of it.
        const TextRange half{0, text.length() / 2};
        const TextSnapshot moved =
            text.replacing(half, TextSnapshot())
                .replacing({text.length() - half.length, 0}, text.slice(half));
        EXPECT_LE(leavesMade(text, moved), 2 * few);
    }
}

TEST(CountedWork, OpeningAsciiCopiesOnlyTheEnds)
{
    const ByteBuffer file = lines(1'000'000);
    const TextSnapshot text = *decode(file, StringEncoding::utf8);
    qsizetype copied = 0;
    for (const TextLeaf* leaf : leavesOf(text)) {
        if (!leaf->isShared())
            copied += leaf->metrics.units;
    }
    EXPECT_LE(copied, 2 * TextLeaf::maximumUnits);
}

TEST(CountedWork, AFewForeignCharactersLeaveTheOthersAtOneByteEach)
{
    QByteArray bytes;
    for (int line = 0; line < 2000; ++line)
        bytes +=
            "a line of some eighty characters, which mostly are ASCII, with one \xD1\x8F in it\n";
    const TextSnapshot text = *decode(ByteBuffer(bytes), StringEncoding::utf8);
    TextOffset wide = 0;
    text.forEachPiece(text.range(), [&](const TextPiece& piece) {
        if (std::holds_alternative<QStringView>(piece.units))
            wide += piece.length();
    });
    EXPECT_EQ(wide, 2000);
}

TEST(CountedWork, TypingReportsOneSmallChange)
{
    TextStorage storage;
    storage.replaceCharactersInRange({0, 0}, *decode(lines(1'000'000), StringEncoding::utf8));
    TextChange last;
    QObject::connect(&storage, &TextStorage::edited,
                     [&](const TextChange& change) { last = change; });
    storage.replaceCharactersInRange({500'000, 0}, u"x");
    EXPECT_EQ(last, (TextChange{{500'000, 0}, 1}));
}

} // namespace
} // namespace quillory
