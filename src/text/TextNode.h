#pragma once

#include "text/ByteBuffer.h"
#include "text/NodeNotes.h"
#include "text/TextRange.h"

#include <QExplicitlySharedDataPointer>
#include <QSharedData>
#include <QStringView>
#include <array>
#include <memory>
#include <span>
#include <string>
#include <variant>

// The tree under TextSnapshot: a B+ tree whose nodes never change once they are made, so that any
// number of snapshots, on any thread, share them.
//
//   branch  up to 16 children of equal height, with the running sums of their metrics
//   leaf    up to 4,096 UTF-16 code units; 8 bits each when all are below U+0100, or all but those
//           of a few runs, which are kept apart
//
// Invariants: no node is empty; every branch but a root has at least 8 children; a surrogate pair
// or a CR LF never straddles two leaves, so a leaf's line breaks can be counted without a look at
// its neighbours.

namespace quillory {

/// What is known of a stretch of text without looking at its characters. Metrics of neighbours add
/// up (`a + b` is the metrics of the text a followed by b).
struct TextMetrics
{
    TextOffset units = 0;     ///< length
    qsizetype breaks = 0;     ///< line breaks
    TextOffset firstLine = 0; ///< length up to the first break; all of it where there is none
    TextOffset innerLine = 0; ///< length of the longest line between two breaks
    TextOffset lastLine = 0;  ///< length after the last break; all of it where there is none

    /// The length of the longest line, without its break.
    TextOffset longestLine() const { return std::max({firstLine, innerLine, lastLine}); }

    friend TextMetrics operator+(const TextMetrics& a, const TextMetrics& b);
    bool operator==(const TextMetrics&) const = default;
};

struct TextNode;
using TextNodePointer = QExplicitlySharedDataPointer<const TextNode>;

/// A branch or a leaf; \a height is 0 for a leaf.
struct TextNode : QSharedData
{
    TextMetrics metrics;
    const int height;
    NodeNotes notes;

    explicit TextNode(int nodeHeight) : height(nodeHeight) {}
    TextNode(const TextNode&) = delete;
    TextNode& operator=(const TextNode&) = delete;
    virtual ~TextNode() = default;
};

/// A stretch of code units that lie side by side in memory: of 8 bits each (every one below
/// U+0100) or of 16.
struct TextPiece
{
    TextOffset location = 0; ///< of its first unit, in the text or leaf it was asked of
    std::variant<QLatin1StringView, QStringView> units;

    TextOffset length() const
    {
        return std::visit([](auto view) { return view.size(); }, units);
    }
};

struct TextLeaf final : TextNode
{
    static constexpr TextOffset maximumUnits = 4096;
    static constexpr TextOffset minimumUnits =
        1024; ///< smaller ones are merged by the next edit beside them
    /// So many runs of wide units in a leaf are kept apart from the others, which then take 8 bits
    /// each. More of them would make pieces too short to work with.
    static constexpr size_t maximumWideRuns = 64;

    /// Copies \a string, at most maximumUnits long and not empty.
    explicit TextLeaf(std::u16string_view string);

    /// Refers to \a latin1, which lies in \a owner: no byte is copied.
    TextLeaf(ByteBuffer owner, QByteArrayView latin1);

    char16_t at(TextOffset index) const;
    /// The piece that holds \a index, whole. A surrogate pair and a CR LF lie in one piece.
    /// \a hint is 0 at first, and spares a search when neighbouring pieces are asked for.
    TextPiece pieceAt(TextOffset index, size_t& hint) const;
    void appendTo(std::u16string& string, TextOffset from, TextOffset to) const;

    /// Those of LineMetrics.h.
    qsizetype breaksBefore(TextOffset end) const;
    TextOffset endOfBreak(qsizetype number) const;

    /// True where no unit was copied.
    bool isShared() const { return !m_narrowOwned && !m_wideOwned; }

private:
    /// Neighbouring units of 16 bits in a leaf whose others take 8. None of them ends a line.
    struct WideRun
    {
        quint16 begin; ///< in the leaf
        quint16 end;
        quint16 place; ///< of its first unit, in m_wideOwned
    };

    bool isWide() const { return !m_narrow; }
    std::span<const uchar> narrowUnits() const { return {m_narrow, size_t(metrics.units)}; }
    std::span<const char16_t> wideUnits() const
    {
        return {m_wideOwned.get(), size_t(metrics.units)};
    }
    bool takeApart(std::u16string_view string);
    /// The first run that ends behind \a index.
    const WideRun* runBehind(TextOffset index) const;

    /// All units, in m_narrowOwned or in m_shared, those of wide runs being 0; null where all units
    /// are in m_wideOwned.
    const uchar* m_narrow = nullptr;
    std::unique_ptr<uchar[]> m_narrowOwned;
    std::unique_ptr<char16_t[]> m_wideOwned;
    std::unique_ptr<WideRun[]> m_wideRuns;
    size_t m_wideRunCount = 0;
    ByteBuffer m_shared;
};

struct TextBranch final : TextNode
{
    static constexpr int maximumChildren = 16;
    static constexpr int minimumChildren = 8;

    int count = 0;
    std::array<TextNodePointer, maximumChildren> children;
    std::array<TextOffset, maximumChildren> unitsBefore; ///< sum over the children before each
    std::array<qsizetype, maximumChildren> breaksBefore;

    /// \a nodes: 1 to maximumChildren of them, all of one height.
    explicit TextBranch(std::span<const TextNodePointer> nodes);

    /// The last child whose sum before it is at most \a value.
    int childAtUnit(TextOffset value) const;
    int childAtBreak(qsizetype value) const;
};

struct TextLeafPlace
{
    const TextLeaf* leaf = nullptr;
    TextOffset start = 0; ///< of the leaf, in the text
};

/// The leaf of the tree under \a root that holds the unit at \a offset; the last one for the end.
TextLeafPlace leafAt(const TextNode& root, TextOffset offset);

/// Answers the pieces of a tree, which must outlive it; near the last one in O(1).
class TextPieces
{
public:
    explicit TextPieces(const TextNode* root) : m_root(root) {}

    /// The piece that holds the unit at \a offset, whole.
    TextPiece at(TextOffset offset)
    {
        if (!m_place.leaf || offset < m_place.start ||
            offset >= m_place.start + m_place.leaf->metrics.units) {
            m_place = leafAt(*m_root, offset);
            m_hint = 0;
        }
        TextPiece piece = m_place.leaf->pieceAt(offset - m_place.start, m_hint);
        piece.location += m_place.start;
        return piece;
    }

private:
    const TextNode* m_root;
    TextLeafPlace m_place;
    size_t m_hint = 0;
};

/// The tree of \a leaves in their order; null for none. O(number of leaves).
TextNodePointer treeOfLeaves(std::vector<TextNodePointer> leaves);

/// One tree after the other; either may be null. O(difference of heights).
TextNodePointer concatenated(const TextNodePointer& left, const TextNodePointer& right);

/// The tree's first \a units code units, or all but them. The cut must fall between two leaves.
TextNodePointer treeBefore(const TextNodePointer& root, TextOffset units);
TextNodePointer treeAfter(const TextNodePointer& root, TextOffset units);

} // namespace quillory
