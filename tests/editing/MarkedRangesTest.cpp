#include "editing/MarkedRanges.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace quillory {
namespace {

/// A text whose units are known one by one, so that it is plain what became of each word.
struct Model
{
    struct Unit
    {
        int id;
        char letter;
    };
    struct Word
    {
        std::vector<int> ids; ///< from the unit before it to the one after; 0 for none
    };

    std::vector<Unit> text;
    std::vector<Word> words;
    int lastId = 0;

    int idAt(TextOffset offset) const
    {
        return offset >= 0 && offset < TextOffset(text.size()) ? text[size_t(offset)].id : 0;
    }
    bool separates(TextOffset offset) const
    {
        return idAt(offset) == 0 || text[size_t(offset)].letter == ' ';
    }
    void note(TextRange range)
    {
        Word word;
        for (TextOffset i = range.location - 1; i <= range.end(); ++i)
            word.ids.push_back(idAt(i));
        words.push_back(word);
    }
    void replace(TextRange range, const std::string& letters)
    {
        std::vector<Unit> inserted;
        for (const char letter : letters)
            inserted.push_back({++lastId, letter});
        text.erase(text.begin() + range.location, text.begin() + range.end());
        text.insert(text.begin() + range.location, inserted.begin(), inserted.end());
    }
    /// Where \a word stands, if nothing of it changed and nothing new was joined to it.
    std::optional<TextRange> find(Word& word) const
    {
        const TextOffset length = TextOffset(word.ids.size()) - 2;
        for (TextOffset start = 0; start + length <= TextOffset(text.size()); ++start) {
            TextOffset same = 0;
            while (same < length && idAt(start + same) == word.ids[size_t(same) + 1])
                ++same;
            if (same < length)
                continue;
            for (const auto& [offset, id] :
                 {std::pair(start - 1, &word.ids.front()), {start + length, &word.ids.back()}}) {
                if (idAt(offset) != *id && !separates(offset))
                    return {};
                *id = idAt(offset);
            }
            return TextRange{start, length};
        }
        return {};
    }
    std::vector<TextRange> ranges()
    {
        std::vector<TextRange> result;
        std::erase_if(words, [&](Word& word) {
            const auto range = find(word);
            if (range)
                result.push_back(*range);
            return !range;
        });
        return result;
    }
};

TEST(MarkedRangesTest, theyFollowEditsAsTheUnitsDo)
{
    std::mt19937 random(7);
    const auto below = [&](TextOffset limit) {
        return TextOffset(random() % std::mt19937::result_type(limit));
    };
    for (int round = 0; round < 300; ++round) {
        Model model;
        MarkedRanges ranges;
        std::vector<TextRange> found;
        for (int i = 0; i < 12; ++i) {
            const TextOffset start = TextOffset(model.text.size());
            const TextOffset length = 1 + below(4);
            model.replace({start, 0}, std::string(size_t(length), 'a') + ' ');
            if (below(3) > 0)
                found.push_back({start, length});
        }
        for (const TextRange range : found)
            model.note(range);
        EXPECT_EQ(ranges.replace({0, TextOffset(model.text.size())}, found).isEmpty(),
                  found.empty());
        for (int edit = 0; edit < 12; ++edit) {
            const TextOffset size = TextOffset(model.text.size());
            const TextOffset start = below(size + 1);
            const TextRange range{start, below(std::min<TextOffset>(4, size - start) + 1)};
            static const char* const insertions[]{"", "", "b", " ", "b b", " b"};
            const std::string letters = insertions[below(std::size(insertions))];
            const TextChange change{range, TextOffset(letters.size())};
            if (change.isEmpty())
                continue;
            model.replace(range, letters);
            ranges.followEdit(change, !model.separates(start),
                              !model.separates(change.inserted().end() - 1));
            ASSERT_EQ(ranges.all(), model.ranges()) << "round " << round << ", edit " << edit;
        }
    }
}

TEST(MarkedRangesTest, whatWasCheckedAnewIsTakenAndTold)
{
    MarkedRanges ranges;
    const std::vector<TextRange> first{{2, 3}, {10, 3}, {20, 3}};
    EXPECT_EQ(ranges.replace({0, 30}, first), (TextRange{2, 21}));
    EXPECT_EQ(ranges.replace({0, 30}, first), TextRange());
    // Only what stands in the range is replaced; what touches it from outside stays.
    const std::vector<TextRange> second{{15, 2}};
    EXPECT_EQ(ranges.replace({5, 15}, second), (TextRange{10, 7}));
    EXPECT_EQ(ranges.all(), (std::vector<TextRange>{{2, 3}, {15, 2}, {20, 3}}));
    // One that reaches into it goes as a whole.
    EXPECT_EQ(ranges.replace({16, 5}, {}), (TextRange{15, 8}));
    EXPECT_EQ(ranges.all(), (std::vector<TextRange>{{2, 3}}));
}

TEST(MarkedRangesTest, thoseAtAPlace)
{
    MarkedRanges ranges;
    ranges.replace({0, 30}, std::vector<TextRange>{{2, 3}, {5, 3}, {10, 3}});
    EXPECT_EQ(ranges.touching({5, 0}).size(), 2U);
    EXPECT_EQ(ranges.touching({9, 0}).size(), 0U);
    EXPECT_EQ(ranges.touching({13, 4}).size(), 1U);
    ranges.trim({4, 5}, 3);
    EXPECT_EQ(ranges.all().size(), 3U);
    ranges.trim({4, 5}, 2);
    EXPECT_EQ(ranges.all(), (std::vector<TextRange>{{2, 3}, {5, 3}}));
}

} // namespace
} // namespace quillory
