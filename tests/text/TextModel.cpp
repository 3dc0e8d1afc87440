#include "text/TextModel.h"

#include "text/LineMetrics.h"

namespace quillory::test {

namespace {

std::string nodeFault(const TextNode& node, bool isRoot, char16_t& lastUnit)
{
    if (node.metrics.units == 0)
        return "empty node";
    if (node.height == 0) {
        const auto& leaf = static_cast<const TextLeaf&>(node);
        if (leaf.metrics.units > TextLeaf::maximumUnits)
            return "leaf too long";
        if (belongTogether(lastUnit, leaf.at(0)))
            return "a pair straddles two leaves";
        lastUnit = leaf.at(leaf.metrics.units - 1);
        if (leaf.wide) {
            const auto units = leaf.wideUnits();
            if (std::none_of(units.begin(), units.end(), [](char16_t unit) { return unit > 0xFF; }))
                return "wide leaf without a wide unit";
        }
        const TextMetrics fresh =
            leaf.wide ? metricsOf(leaf.wideUnits()) : metricsOf(leaf.narrowUnits());
        return fresh == leaf.metrics ? "" : "wrong leaf metrics";
    }
    const auto& branch = static_cast<const TextBranch&>(node);
    if (branch.count < (isRoot ? 2 : TextBranch::minimumChildren))
        return "branch with too few children";
    TextMetrics sum;
    for (int i = 0; i < branch.count; ++i) {
        const TextNode& child = *branch.children[size_t(i)];
        if (child.height != node.height - 1)
            return "children of unlike height";
        if (branch.unitsBefore[size_t(i)] != sum.units ||
            branch.breaksBefore[size_t(i)] != sum.breaks)
            return "wrong running sum";
        sum = sum + child.metrics;
        if (std::string fault = nodeFault(child, false, lastUnit); !fault.empty())
            return fault;
    }
    return sum == node.metrics ? "" : "wrong branch metrics";
}

} // namespace

std::string treeFault(const TextSnapshot& snapshot)
{
    char16_t lastUnit = 0;
    return snapshot.isEmpty() ? "" : nodeFault(*snapshot.root(), true, lastUnit);
}

} // namespace quillory::test
