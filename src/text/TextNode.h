#pragma once

#include "text/ByteBuffer.h"
#include "text/TextRange.h"

#include <QExplicitlySharedDataPointer>
#include <QSharedData>
#include <array>
#include <span>

// The tree under TextSnapshot: a B+ tree whose nodes never change once they are made, so that any
// number of snapshots, on any thread, share them.
//
//   branch  up to 16 children of equal height, with the running sums of their metrics
//   leaf    up to 4,096 UTF-16 code units; 8 bits each when all are below U+0100
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

    explicit TextNode(int nodeHeight) : height(nodeHeight) {}
    TextNode(const TextNode&) = delete;
    TextNode& operator=(const TextNode&) = delete;
    virtual ~TextNode() = default;
};

struct TextLeaf final : TextNode
{
    static constexpr TextOffset maximumUnits = 4096;
    static constexpr TextOffset minimumUnits =
        1024; ///< smaller ones are merged by the next edit beside them

    const void* units = nullptr; ///< uchar or char16_t, in \a owned or in \a shared
    bool wide = false;           ///< 16 bits a unit

    /// Copies \a string, at most maximumUnits long and not empty.
    explicit TextLeaf(std::u16string_view string);

    /// Refers to \a latin1, which lies in \a owner: no byte is copied.
    TextLeaf(ByteBuffer owner, QByteArrayView latin1);

    std::span<const uchar> narrowUnits() const
    {
        return {static_cast<const uchar*>(units), size_t(metrics.units)};
    }
    std::span<const char16_t> wideUnits() const
    {
        return {static_cast<const char16_t*>(units), size_t(metrics.units)};
    }
    char16_t at(TextOffset index) const
    {
        return wide ? wideUnits()[size_t(index)] : char16_t(narrowUnits()[size_t(index)]);
    }

private:
    std::unique_ptr<char16_t[]> m_wideOwned;
    std::unique_ptr<uchar[]> m_narrowOwned;
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

/// The tree of \a leaves in their order; null for none. O(number of leaves).
TextNodePointer treeOfLeaves(std::vector<TextNodePointer> leaves);

/// One tree after the other; either may be null. O(difference of heights).
TextNodePointer concatenated(const TextNodePointer& left, const TextNodePointer& right);

/// The tree's first \a units code units, or all but them. The cut must fall between two leaves.
TextNodePointer treeBefore(const TextNodePointer& root, TextOffset units);
TextNodePointer treeAfter(const TextNodePointer& root, TextOffset units);

} // namespace quillory
