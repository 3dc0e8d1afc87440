#include "text/TextNode.h"

#include "text/LineMetrics.h"

#include <algorithm>
#include <vector>

namespace quillory {

namespace {

bool isWideUnit(char16_t unit)
{
    return unit > 0xFF;
}

bool hasWide(std::u16string_view string)
{
    // All units at once: a loop that stops early is not vectorised.
    char16_t bits = 0;
    for (const char16_t unit : string)
        bits |= unit;
    return isWideUnit(bits);
}

/// The index of the first wide unit from \a index on; the size where there is none.
size_t nextWide(std::u16string_view string, size_t index)
{
    constexpr size_t block = 32;
    while (index + block <= string.size() && !hasWide(string.substr(index, block)))
        index += block;
    while (index < string.size() && !isWideUnit(string[index]))
        ++index;
    return index;
}

} // namespace

TextLeaf::TextLeaf(std::u16string_view string) : TextNode(0)
{
    Q_ASSERT(!string.empty() && TextOffset(string.size()) <= maximumUnits);
    if (hasWide(string) && !takeApart(string)) {
        m_wideOwned = std::make_unique_for_overwrite<char16_t[]>(string.size());
        std::copy(string.begin(), string.end(), m_wideOwned.get());
        metrics = metricsOf(std::span<const char16_t>(string));
        return;
    }
    m_narrowOwned = std::make_unique_for_overwrite<uchar[]>(string.size());
    std::transform(string.begin(), string.end(), m_narrowOwned.get(),
                   [](char16_t unit) { return uchar(unit); });
    for (size_t i = 0; i < m_wideRunCount; ++i)
        std::fill(m_narrowOwned.get() + m_wideRuns[i].begin,
                  m_narrowOwned.get() + m_wideRuns[i].end, uchar(0));
    m_narrow = m_narrowOwned.get();
    metrics = metricsOf(std::span<const uchar>(m_narrow, string.size()));
}

TextLeaf::TextLeaf(ByteBuffer owner, QByteArrayView latin1)
    : TextNode(0), m_narrow(reinterpret_cast<const uchar*>(latin1.data())),
      m_shared(std::move(owner))
{
    Q_ASSERT(!latin1.isEmpty() && latin1.size() <= maximumUnits);
    metrics = metricsOf(std::span<const uchar>(m_narrow, size_t(latin1.size())));
}

/// Keeps the wide units of \a string apart, where that is worth while.
bool TextLeaf::takeApart(std::u16string_view string)
{
    std::array<WideRun, maximumWideRuns> runs;
    std::array<char16_t, maximumUnits / 2> units;
    size_t count = 0;
    size_t wide = 0;
    for (size_t i = nextWide(string, 0); i < string.size(); i = nextWide(string, i)) {
        if (count == maximumWideRuns)
            return false;
        runs[count].begin = quint16(i);
        runs[count].place = quint16(wide);
        for (; i < string.size() && isWideUnit(string[i]); ++i) {
            if (isLineBreak(string[i]) || 2 * wide >= string.size())
                return false;
            units[wide++] = string[i];
        }
        runs[count++].end = quint16(i);
    }
    m_wideOwned = std::make_unique_for_overwrite<char16_t[]>(wide);
    std::copy_n(units.begin(), wide, m_wideOwned.get());
    m_wideRuns = std::make_unique_for_overwrite<WideRun[]>(count);
    std::copy_n(runs.begin(), count, m_wideRuns.get());
    m_wideRunCount = count;
    return true;
}

const TextLeaf::WideRun* TextLeaf::runBehind(TextOffset index) const
{
    return std::partition_point(m_wideRuns.get(), m_wideRuns.get() + m_wideRunCount,
                                [&](const WideRun& run) { return run.end <= index; });
}

char16_t TextLeaf::at(TextOffset index) const
{
    if (isWide())
        return m_wideOwned[size_t(index)];
    const uchar unit = m_narrow[index];
    if (unit != 0 || m_wideRunCount == 0)
        return unit;
    const WideRun* run = runBehind(index);
    const bool isInside = run != m_wideRuns.get() + m_wideRunCount && run->begin <= index;
    return isInside ? m_wideOwned[size_t(index - run->begin + run->place)] : u'\0';
}

TextPiece TextLeaf::pieceAt(TextOffset index, size_t& hint) const
{
    if (isWide())
        return {0, QStringView(m_wideOwned.get(), metrics.units)};
    const WideRun* first = m_wideRuns.get();
    const auto isBehind = [&](size_t run) {
        return (run == m_wideRunCount || first[run].end > index) &&
               (run == 0 || first[run - 1].end <= index);
    };
    if (!isBehind(hint))
        hint = hint < m_wideRunCount && isBehind(hint + 1) ? hint + 1
                                                           : size_t(runBehind(index) - first);
    const WideRun* behind = first + hint;
    const bool isLast = hint == m_wideRunCount;
    if (!isLast && behind->begin <= index)
        return {behind->begin,
                QStringView(m_wideOwned.get() + behind->place, behind->end - behind->begin)};
    const TextOffset begin = hint == 0 ? 0 : behind[-1].end;
    const TextOffset end = isLast ? metrics.units : behind->begin;
    return {begin, QLatin1StringView(reinterpret_cast<const char*>(m_narrow + begin), end - begin)};
}

void TextLeaf::appendTo(std::u16string& string, TextOffset from, TextOffset to) const
{
    if (isWide()) {
        string.append(m_wideOwned.get() + from, size_t(to - from));
        return;
    }
    const size_t before = string.size();
    string.append(m_narrow + from, m_narrow + to);
    const WideRun* end = m_wideRuns.get() + m_wideRunCount;
    for (const WideRun* run = runBehind(from); run != end && run->begin < to; ++run) {
        for (TextOffset i = std::max<TextOffset>(run->begin, from);
             i < std::min<TextOffset>(run->end, to); ++i)
            string[before + size_t(i - from)] = m_wideOwned[size_t(i - run->begin + run->place)];
    }
}

qsizetype TextLeaf::breaksBefore(TextOffset end) const
{
    return isWide() ? quillory::breaksBefore(wideUnits(), end)
                    : quillory::breaksBefore(narrowUnits(), end);
}

TextOffset TextLeaf::endOfBreak(qsizetype number) const
{
    return isWide() ? quillory::endOfBreak(wideUnits(), number)
                    : quillory::endOfBreak(narrowUnits(), number);
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

TextLeafPlace leafAt(const TextNode& root, TextOffset offset)
{
    const TextNode* node = &root;
    TextOffset start = 0;
    while (node->height > 0) {
        const auto* branch = static_cast<const TextBranch*>(node);
        const size_t child = size_t(branch->childAtUnit(offset - start));
        start += branch->unitsBefore[child];
        node = branch->children[child].data();
    }
    return {static_cast<const TextLeaf*>(node), start};
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
