#include "text/TextNode.h"

#include "text/LineMetrics.h"

#include <vector>

namespace quillory {

TextLeaf::TextLeaf(std::u16string_view string) : TextNode(0)
{
    Q_ASSERT(!string.empty() && TextOffset(string.size()) <= maximumUnits);
    // All units at once: a loop that stops early is not vectorised.
    char16_t bits = 0;
    for (const char16_t unit : string)
        bits |= unit;
    wide = bits > 0xFF;
    if (wide) {
        m_wideOwned = std::make_unique_for_overwrite<char16_t[]>(string.size());
        std::copy(string.begin(), string.end(), m_wideOwned.get());
        units = m_wideOwned.get();
        metrics = metricsOf(std::span<const char16_t>(string.data(), string.size()));
    } else {
        m_narrowOwned = std::make_unique_for_overwrite<uchar[]>(string.size());
        std::copy(string.begin(), string.end(), m_narrowOwned.get());
        units = m_narrowOwned.get();
        metrics = metricsOf(std::span<const uchar>(m_narrowOwned.get(), string.size()));
    }
}

TextLeaf::TextLeaf(ByteBuffer owner, QByteArrayView latin1)
    : TextNode(0), units(latin1.data()), m_shared(std::move(owner))
{
    Q_ASSERT(!latin1.isEmpty() && latin1.size() <= maximumUnits);
    metrics =
        metricsOf(std::span<const uchar>(static_cast<const uchar*>(units), size_t(latin1.size())));
}

TextBranch::TextBranch(std::span<const TextNodePointer> nodes) : TextNode(nodes.front()->height + 1)
{
    Q_ASSERT(int(nodes.size()) <= maximumChildren);
    for (const TextNodePointer& node : nodes) {
        unitsBefore[size_t(count)] = metrics.units;
        breaksBefore[size_t(count)] = metrics.breaks;
        children[size_t(count++)] = node;
        metrics = metrics + node->metrics;
    }
}

int TextBranch::childAtUnit(TextOffset value) const
{
    const auto sums = std::span(unitsBefore).first(size_t(count));
    return int(std::upper_bound(sums.begin(), sums.end(), value) - sums.begin()) - 1;
}

int TextBranch::childAtBreak(qsizetype value) const
{
    const auto sums = std::span(breaksBefore).first(size_t(count));
    return int(std::upper_bound(sums.begin(), sums.end(), value) - sums.begin()) - 1;
}

namespace {

using Nodes = std::vector<TextNodePointer>;

const TextBranch& asBranch(const TextNodePointer& node)
{
    return static_cast<const TextBranch&>(*node);
}

std::span<const TextNodePointer> childrenOf(const TextNodePointer& node)
{
    return std::span(asBranch(node).children).first(size_t(asBranch(node).count));
}

TextNodePointer makeBranch(std::span<const TextNodePointer> nodes)
{
    return TextNodePointer(new TextBranch(nodes));
}

/// One branch over \a nodes, or two under a new root, each with enough children where there are
/// enough to share out. At most twice maximumChildren nodes.
TextNodePointer branchOver(std::span<const TextNodePointer> nodes)
{
    if (nodes.size() <= TextBranch::maximumChildren)
        return makeBranch(nodes);
    const size_t half = nodes.size() / 2;
    const std::array<TextNodePointer, 2> halves{makeBranch(nodes.first(half)),
                                                makeBranch(nodes.subspan(half))};
    return makeBranch(halves);
}

bool isFull(const TextNodePointer& node)
{
    return node->height == 0 || asBranch(node).count >= TextBranch::minimumChildren;
}

Nodes joined(std::span<const TextNodePointer> a, std::span<const TextNodePointer> b)
{
    Nodes nodes(a.begin(), a.end());
    nodes.insert(nodes.end(), b.begin(), b.end());
    return nodes;
}

/// The nodes of \a node's level \a height that it stands for: itself, or its children when it is
/// one level higher.
std::span<const TextNodePointer> atHeight(const TextNodePointer& node, int height)
{
    return node->height == height ? std::span(&node, 1) : childrenOf(node);
}

} // namespace

TextNodePointer treeOfLeaves(Nodes nodes)
{
    if (nodes.empty())
        return {};
    while (nodes.size() > 1) {
        // Shared out evenly, so that no branch gets fewer than half of what it may hold.
        const size_t branches =
            (nodes.size() + TextBranch::maximumChildren - 1) / TextBranch::maximumChildren;
        Nodes level;
        level.reserve(branches);
        for (size_t i = 0; i < branches; ++i) {
            const size_t begin = nodes.size() * i / branches;
            const size_t end = nodes.size() * (i + 1) / branches;
            level.push_back(makeBranch(std::span(nodes).subspan(begin, end - begin)));
        }
        nodes = std::move(level);
    }
    return nodes.front();
}

TextNodePointer concatenated(const TextNodePointer& left, const TextNodePointer& right)
{
    if (!left)
        return right;
    if (!right)
        return left;
    if (left->height == right->height) {
        if (isFull(left) && isFull(right))
            return makeBranch(std::array{left, right});
        return branchOver(joined(childrenOf(left), childrenOf(right)));
    }
    // The lower tree goes down the flank of the higher one to where it fits; what comes back is of
    // the height of the flank's node, or of one more.
    if (left->height > right->height) {
        const auto children = childrenOf(left);
        if (left->height == right->height + 1 && isFull(right))
            return branchOver(joined(children, std::span(&right, 1)));
        const TextNodePointer flank = concatenated(children.back(), right);
        return branchOver(
            joined(children.first(children.size() - 1), atHeight(flank, left->height - 1)));
    }
    const auto children = childrenOf(right);
    if (right->height == left->height + 1 && isFull(left))
        return branchOver(joined(std::span(&left, 1), children));
    const TextNodePointer flank = concatenated(left, children.front());
    return branchOver(joined(atHeight(flank, right->height - 1), children.subspan(1)));
}

TextNodePointer treeBefore(const TextNodePointer& root, TextOffset units)
{
    if (!root || units <= 0)
        return {};
    if (units >= root->metrics.units)
        return root;
    Q_ASSERT(root->height > 0);
    const TextBranch& branch = asBranch(root);
    const int cut = branch.childAtUnit(units);
    TextNodePointer before;
    if (cut == 1)
        before = branch.children[0];
    else if (cut > 1)
        before = makeBranch(childrenOf(root).first(size_t(cut)));
    return concatenated(
        before, treeBefore(branch.children[size_t(cut)], units - branch.unitsBefore[size_t(cut)]));
}

TextNodePointer treeAfter(const TextNodePointer& root, TextOffset units)
{
    if (!root || units <= 0)
        return root;
    if (units >= root->metrics.units)
        return {};
    Q_ASSERT(root->height > 0);
    const TextBranch& branch = asBranch(root);
    const int cut = branch.childAtUnit(units);
    TextNodePointer after;
    if (cut == branch.count - 2)
        after = branch.children[size_t(cut) + 1];
    else if (cut < branch.count - 2)
        after = makeBranch(childrenOf(root).subspan(size_t(cut) + 1));
    return concatenated(
        treeAfter(branch.children[size_t(cut)], units - branch.unitsBefore[size_t(cut)]), after);
}

} // namespace quillory
