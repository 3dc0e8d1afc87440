#include "text/TextSnapshot.h"

#include "text/LineMetrics.h"
#include "text/TextBuilder.h"

#include <string>

namespace quillory {

namespace {

constexpr char16_t codeOf(char latin1)
{
    return uchar(latin1);
}

constexpr char16_t codeOf(QChar unit)
{
    return unit.unicode();
}

TextNodePointer partOf(const TextLeaf& leaf, TextOffset from, TextOffset to)
{
    std::u16string string;
    leaf.appendTo(string, from, to);
    return TextNodePointer(new TextLeaf(string));
}

TextNodePointer cutBefore(const TextNodePointer& root, TextOffset offset)
{
    if (!root || offset <= 0)
        return {};
    if (offset >= root->metrics.units)
        return root;
    const auto [leaf, start] = leafAt(*root, offset);
    const TextNodePointer whole = treeBefore(root, start);
    return offset == start ? whole : concatenated(whole, partOf(*leaf, 0, offset - start));
}

TextNodePointer cutAfter(const TextNodePointer& root, TextOffset offset)
{
    if (!root || offset <= 0)
        return root;
    if (offset >= root->metrics.units)
        return {};
    const auto [leaf, start] = leafAt(*root, offset);
    if (offset == start)
        return treeAfter(root, start);
    const TextOffset end = start + leaf->metrics.units;
    return concatenated(partOf(*leaf, offset - start, end - start), treeAfter(root, end));
}

/// Cuts \a string into leaves of like size, none of which ends inside what belongs together.
TextNodePointer treeOf(std::u16string_view string)
{
    std::vector<TextNodePointer> leaves;
    // One unit below the maximum, since a cut may move by one.
    const size_t most = size_t(TextLeaf::maximumUnits) - 1;
    const size_t count = (string.size() + most - 1) / most;
    size_t begin = 0;
    for (size_t i = 1; i <= count; ++i) {
        size_t end = string.size() * i / count;
        if (end < string.size() && belongTogether(string[end - 1], string[end]))
            --end;
        leaves.emplace_back(new TextLeaf(string.substr(begin, end - begin)));
        begin = end;
    }
    return treeOfLeaves(std::move(leaves));
}

/// \a left followed by \a right, with their seam mended: small leaves beside it are merged, and
/// what belongs together comes into one leaf.
TextNodePointer sewn(TextNodePointer left, TextNodePointer right)
{
    if (!left || !right)
        return left ? left : right;
    const TextLeaf* last = leafAt(*left, left->metrics.units).leaf;
    const TextLeaf* first = leafAt(*right, 0).leaf;
    const TextOffset lastUnits = last->metrics.units;
    const TextOffset firstUnits = first->metrics.units;
    if (lastUnits >= TextLeaf::minimumUnits && firstUnits >= TextLeaf::minimumUnits &&
        !belongTogether(last->at(lastUnits - 1), first->at(0)))
        return concatenated(left, right);

    std::u16string seam;
    seam.reserve(size_t(lastUnits + firstUnits));
    last->appendTo(seam, 0, lastUnits);
    first->appendTo(seam, 0, firstUnits);
    left = treeBefore(left, left->metrics.units - lastUnits);
    right = treeAfter(right, firstUnits);
    if (left && TextOffset(seam.size()) < TextLeaf::minimumUnits) {
        const auto [before, start] = leafAt(*left, left->metrics.units);
        std::u16string longer;
        before->appendTo(longer, 0, before->metrics.units);
        seam.insert(0, longer);
        left = treeBefore(left, start);
    }
    return concatenated(concatenated(left, treeOf(seam)), right);
}

} // namespace

TextSnapshot::TextSnapshot(QStringView string)
{
    TextBuilder builder;
    builder.append(string);
    m_root = builder.finish().m_root;
}

char16_t TextSnapshot::at(TextOffset offset) const
{
    Q_ASSERT(offset >= 0 && offset < length());
    const auto [leaf, start] = leafAt(*m_root, offset);
    return leaf->at(offset - start);
}

QString TextSnapshot::string(TextRange range) const
{
    Q_ASSERT(range.location >= 0 && range.length >= 0 && range.end() <= length());
    QString result;
    result.reserve(range.length);
    forEachPiece(range, [&](const TextPiece& piece) {
        std::visit([&](auto units) { result.append(units); }, piece.units);
    });
    return result;
}

TextSnapshot TextSnapshot::slice(TextRange range) const
{
    Q_ASSERT(range.location >= 0 && range.length >= 0 && range.end() <= length());
    if (range.isEmpty())
        return {};
    // A few characters need no tree between.
    if (const auto [leaf, start] = leafAt(*m_root, range.location);
        range.end() < start + leaf->metrics.units)
        return TextSnapshot(partOf(*leaf, range.location - start, range.end() - start));
    return TextSnapshot(cutAfter(cutBefore(m_root, range.end()), range.location));
}

TextSnapshot TextSnapshot::replacing(TextRange range, const TextSnapshot& replacement) const
{
    Q_ASSERT(range.location >= 0 && range.length >= 0 && range.end() <= length());
    const auto isLeaf = [](const TextNodePointer& node) { return node && node->height == 0; };
    const TextOffset newLength = length() - range.length + replacement.length();
    if (isLeaf(m_root) && isLeaf(replacement.m_root) && newLength <= TextLeaf::maximumUnits) {
        const auto& leaf = static_cast<const TextLeaf&>(*m_root);
        std::u16string units;
        leaf.appendTo(units, 0, range.location);
        static_cast<const TextLeaf&>(*replacement.m_root).appendTo(units, 0, replacement.length());
        leaf.appendTo(units, range.end(), length());
        return TextSnapshot(TextNodePointer(new TextLeaf(units)));
    }
    return TextSnapshot(sewn(sewn(cutBefore(m_root, range.location), replacement.m_root),
                             cutAfter(m_root, range.end())));
}

TextSnapshot TextSnapshot::replacing(std::span<const TextEdit> edits) const
{
    TextSnapshot result = *this;
    TextOffset shift = 0;
    while (!edits.empty()) {
        // Edits closer than a leaf would each make the same leaf anew; what lies between them is
        // written once instead. A long replacement keeps its tree.
        size_t count = 1;
        while (count < edits.size() &&
               edits[count].replacement.length() <= TextLeaf::maximumUnits &&
               edits[count - 1].replacement.length() <= TextLeaf::maximumUnits &&
               edits[count].range.location - edits[count - 1].range.end() < TextLeaf::maximumUnits)
            ++count;
        const auto together = edits.first(count);
        edits = edits.subspan(count);
        const TextRange whole =
            TextRange::between(together.front().range.location, together.back().range.end());
        const TextSnapshot replacement =
            count == 1 ? together.front().replacement : rewritten(together);
        result = result.replacing({whole.location + shift, whole.length}, replacement);
        shift += replacement.length() - whole.length;
    }
    return result;
}

/// What \a edits make of the stretch from the first to the last of them.
TextSnapshot TextSnapshot::rewritten(std::span<const TextEdit> edits) const
{
    TextBuilder builder;
    const auto append = [&](const TextPiece& piece) {
        std::visit([&](auto units) { builder.append(units); }, piece.units);
    };
    TextPieces pieces(m_root.data());
    for (size_t i = 0; i < edits.size(); ++i) {
        const TextSnapshot& replacement = edits[i].replacement;
        replacement.forEachPiece(replacement.range(), append);
        if (i + 1 == edits.size())
            break;
        const TextOffset end = edits[i + 1].range.location;
        for (TextOffset offset = edits[i].range.end(); offset < end;) {
            const TextPiece piece = pieces.at(offset);
            const TextPiece part = trimmed(piece, offset - piece.location, end - offset);
            append(part);
            offset += part.length();
        }
    }
    return builder.finish();
}

LineIndex TextSnapshot::lineAt(TextOffset offset) const
{
    Q_ASSERT(offset >= 0 && offset <= length());
    if (!m_root)
        return LineIndex(0);
    const TextNode* node = m_root.data();
    qsizetype breaks = 0;
    while (node->height > 0) {
        const auto* branch = static_cast<const TextBranch*>(node);
        const size_t child = size_t(branch->childAtUnit(offset));
        breaks += branch->breaksBefore[child];
        offset -= branch->unitsBefore[child];
        node = branch->children[child].data();
    }
    const auto* leaf = static_cast<const TextLeaf*>(node);
    return LineIndex(breaks + leaf->breaksBefore(offset));
}

TextOffset TextSnapshot::lineStart(LineIndex line) const
{
    Q_ASSERT(line.value() >= 0);
    if (line.value() == 0)
        return 0;
    if (line.value() >= lineCount())
        return length();
    const TextNode* node = m_root.data();
    qsizetype number = line.value(); // the line starts where this break ends
    TextOffset start = 0;
    while (node->height > 0) {
        const auto* branch = static_cast<const TextBranch*>(node);
        const size_t child = size_t(branch->childAtBreak(number - 1));
        number -= branch->breaksBefore[child];
        start += branch->unitsBefore[child];
        node = branch->children[child].data();
    }
    const auto* leaf = static_cast<const TextLeaf*>(node);
    return start + leaf->endOfBreak(number);
}

TextRange TextSnapshot::line(LineIndex line) const
{
    const TextOffset start = lineStart(line);
    return TextRange::between(start, lineStart(line + 1));
}

TextRange TextSnapshot::lineContent(LineIndex index) const
{
    TextRange range = line(index);
    if (range.isEmpty() || !isLineBreak(at(range.end() - 1)))
        return range;
    --range.length;
    if (range.length > 0 && at(range.end()) == u'\n' && at(range.end() - 1) == u'\r')
        --range.length;
    return range;
}

TextRange TextSnapshot::lineRangeForRange(TextRange range) const
{
    const LineIndex first = lineAt(range.location);
    // A range that ends just after a line break does not touch the line that follows.
    const LineIndex last = range.isEmpty() ? first : lineAt(range.end() - 1);
    return TextRange::between(lineStart(first), lineStart(last + 1));
}

TextPiece TextSnapshot::pieceAt(TextOffset offset) const
{
    Q_ASSERT(offset >= 0 && offset <= length());
    if (offset == length())
        return {offset, QLatin1StringView()};
    return TextPieces(m_root.data()).at(offset);
}

bool TextSnapshot::operator==(const TextSnapshot& other) const
{
    return length() == other.length() && commonPrefixLength(*this, other) == length();
}

TextOffset commonPrefixLength(const TextSnapshot& a, const TextSnapshot& b)
{
    const TextOffset length = std::min(a.length(), b.length());
    return a.isSameTree(b) ? length : commonLength(a, 0, b, 0, length);
}

TextOffset commonLength(const TextSnapshot& a, TextOffset from, const TextSnapshot& b,
                        TextOffset other, TextOffset length)
{
    TextPieces ours(a.root().data());
    TextPieces others(b.root().data());
    for (TextOffset done = 0; done < length;) {
        const TextPiece mine = ours.at(from + done);
        const TextPiece theirs = others.at(other + done);
        const TextOffset skipMine = from + done - mine.location;
        const TextOffset skipTheirs = other + done - theirs.location;
        const TextOffset next =
            std::min({length - done, mine.length() - skipMine, theirs.length() - skipTheirs});
        const TextOffset same = std::visit(
            [](auto x, auto y) -> TextOffset {
                if (x == y)
                    return x.size();
                const auto isSame = [](auto i, auto j) { return codeOf(i) == codeOf(j); };
                return std::mismatch(x.begin(), x.end(), y.begin(), isSame).first - x.begin();
            },
            trimmed(mine, skipMine, next).units, trimmed(theirs, skipTheirs, next).units);
        done += same;
        if (same < next)
            return done;
    }
    return length;
}

TextPiece trimmed(const TextPiece& piece, TextOffset skipped, TextOffset length)
{
    return std::visit(
        [&](auto units) -> TextPiece {
            return {piece.location + skipped,
                    units.sliced(skipped, std::min(length, units.size() - skipped))};
        },
        piece.units);
}

} // namespace quillory
