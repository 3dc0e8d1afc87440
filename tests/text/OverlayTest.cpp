#include "text/Overlay.h"

#include <gtest/gtest.h>
#include <random>

namespace quillory {
namespace {

const Colour red{1, 0, 0, 1};
const Colour green{0, 1, 0, 1};

/// One attribute set for every unit of the text.
using Model = std::vector<OverlayAttributes>;

void expectSame(const Overlay& overlay, const Model& model)
{
    ASSERT_EQ(overlay.textLength(), TextOffset(model.size()));
    Model flat(model.size());
    TextOffset end = 0;
    for (const OverlayRun& run : overlay.runs({0, overlay.textLength()})) {
        ASSERT_GE(run.range.location, end);
        ASSERT_FALSE(run.range.isEmpty() || run.attributes.isEmpty());
        end = run.range.end();
        std::fill_n(flat.begin() + run.range.location, run.range.length, run.attributes);
    }
    ASSERT_TRUE(flat == model);
}

TEST(Overlay, RandomChangesKeepToTheModel)
{
    std::minstd_rand engine(5);
    const auto below = [&](qsizetype limit) { return qsizetype(engine() % size_t(limit)); };
    Overlay overlay;
    Model model;
    for (int i = 0; i < 40000; ++i) {
        const TextOffset size = TextOffset(model.size());
        const TextOffset location = below(size + 1);
        const TextOffset length = std::min(size - location, below(12));
        const auto begin = model.begin() + location;
        const OverlayAttributes attributes{below(2) ? std::optional(red) : std::nullopt,
                                           below(2) ? std::optional(green) : std::nullopt};
        switch (below(6)) {
        case 0: {
            const TextOffset inserted = below(size > 200 ? 5 : 20);
            OverlayAttributes inside;
            const bool within = length == 0 && location > 0 && location < size &&
                                overlay.runs({location - 1, 2}).size() == 1 &&
                                overlay.runs({location - 1, 2}).front().range.length == 2;
            const bool alike =
                std::all_of(begin, begin + length, [&](const auto& a) { return a == *begin; });
            if (within || (length > 0 && alike))
                inside = model[size_t(location)];
            overlay.textChanged({{location, length}, inserted});
            model.erase(begin, begin + length);
            model.insert(model.begin() + location, size_t(inserted), inside);
            break;
        }
        case 1:
            overlay.setAttributes({location, length}, attributes);
            std::fill_n(begin, length, attributes);
            break;
        case 2:
            overlay.removeForeground({location, length});
            std::for_each(begin, begin + length, [](auto& a) { a.foreground.reset(); });
            break;
        case 3:
            overlay.removeBackground({location, length});
            std::for_each(begin, begin + length, [](auto& a) { a.background.reset(); });
            break;
        case 4: {
            const TextRange half{location, length / 2};
            overlay.setForegrounds({location, length}, std::vector{OverlayRun{half, attributes}});
            for (TextOffset at = location; at < location + length; ++at)
                model[size_t(at)].foreground =
                    at < half.end() ? attributes.foreground : std::nullopt;
            break;
        }
        default:
            overlay.setBackground({location, length}, red);
            std::for_each(begin, begin + length, [](auto& a) { a.background = red; });
        }
        ASSERT_NO_FATAL_FAILURE(expectSame(overlay, model)) << "step " << i;
        if (location < TextOffset(model.size())) {
            ASSERT_TRUE(overlay.attributesAt(location) == model[size_t(location)]);
        }
    }
}

TEST(Overlay, NewForegroundsTellOfWhatTheyChangeAlone)
{
    Overlay overlay;
    overlay.textChanged({{}, 100});
    std::vector<TextRange> told;
    QObject::connect(&overlay, &Overlay::changed, [&](TextRange range) { told.push_back(range); });
    const auto set = [&](const std::vector<OverlayRun>& runs) {
        told.clear();
        overlay.setForegrounds({10, 80}, runs);
        return told;
    };
    const OverlayAttributes inRed{red, std::nullopt};
    const OverlayAttributes inGreen{green, std::nullopt};
    const std::vector<OverlayRun> runs{{{10, 5}, inRed}, {{20, 5}, inGreen}, {{80, 10}, inRed}};
    struct Row
    {
        std::vector<OverlayRun> runs;
        std::vector<TextRange> told;
    };
    const Row rows[] = {
        {runs, {{10, 80}}},
        {runs, {}},
        {{{{10, 2}, inRed}, {{12, 3}, inRed}, runs[1], runs[2]}, {}},
        {{runs[0], {{20, 5}, inRed}, runs[2]}, {{20, 5}}},
        {{runs[0], {{30, 5}, inRed}, runs[2]}, {{20, 15}}},
        {{runs[0], runs[2]}, {{30, 5}}},
        {{runs[0]}, {{80, 10}}},
        {{}, {{10, 5}}},
        {{}, {}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(set(row.runs), row.told) << &row - rows;
    EXPECT_EQ(overlay.runCount(), 0U);
}

} // namespace
} // namespace quillory
