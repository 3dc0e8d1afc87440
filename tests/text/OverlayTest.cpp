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
        switch (below(5)) {
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

} // namespace
} // namespace quillory
