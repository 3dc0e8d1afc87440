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
        std::u16string units;
        leaf.appendTo(units, 0, leaf.metrics.units);
        for (TextOffset i = 0; i < leaf.metrics.units; ++i) {
            if (units[size_t(i)] != leaf.at(i))
                return "a leaf that reads in two ways";
        }
        size_t hint = 0;
        for (TextOffset i = 0; i < leaf.metrics.units;) {
            const TextPiece piece = leaf.pieceAt(i, hint);
            if (piece.location != i || piece.length() == 0)
                return "pieces with gaps";
            const bool isWide = std::holds_alternative<QStringView>(piece.units);
            const QString string = isWide ? std::get<QStringView>(piece.units).toString()
                                          : QString(std::get<QLatin1StringView>(piece.units));
            if (string != QStringView(units).sliced(i, piece.length()))
                return "a piece unlike its leaf";
            if (isWide && std::all_of(string.begin(), string.end(),
                                      [](QChar unit) { return unit.unicode() <= 0xFF; }))
                return "a wide piece without a wide unit";
            i += piece.length();
        }
        const TextMetrics fresh = metricsOf(std::span<const char16_t>(units));
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
