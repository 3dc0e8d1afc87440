#pragma once

#include "text/TextNode.h"
#include "text/TextRange.h"

#include <QString>
#include <QStringView>
#include <span>

namespace quillory {

struct TextEdit;

/// A text that never changes: the root of a balanced tree of immutable leaves of a few kilobytes.
///
/// Copying one costs O(1), and so does keeping it while the text that it was taken from goes on
/// changing. Every look-up and every edit costs O(log n) of the text's length. Offsets and lengths
/// are UTF-16 code units; unpaired surrogates are kept as they are. Offsets outside the text are a
/// fault of the caller (asserted); functions that take a range accept any range inside the text.
///
/// Lines end at LF, CR, CR LF, U+2028 and U+2029. A text has one line more than it has line
/// breaks, so the empty text has one, and one that ends in a break has an empty last line.
class TextSnapshot
{
public:
    /// The empty text.
    TextSnapshot() = default;
    explicit TextSnapshot(QStringView string);
    explicit TextSnapshot(TextNodePointer root) : m_root(std::move(root)) {}

    TextOffset length() const { return m_root ? m_root->metrics.units : 0; }
    bool isEmpty() const { return length() == 0; }
    TextRange range() const { return {0, length()}; }

    /// The code unit at \a offset. Loops use a TextReader instead.
    char16_t at(TextOffset offset) const;

    QString string(TextRange range) const;
    QString string() const { return string(range()); }

    /// The text of \a range, sharing its leaves with this one.
    TextSnapshot slice(TextRange range) const;

    /// This text with \a replacement in the place of \a range.
    TextSnapshot replacing(TextRange range, const TextSnapshot& replacement) const;

    /// This text with all of \a edits made: ranges of this text, in order and apart (they may
    /// touch). Many edits near each other cost little more than copying the text between them.
    TextSnapshot replacing(std::span<const TextEdit> edits) const;

    qsizetype lineCount() const { return (m_root ? m_root->metrics.breaks : 0) + 1; }

    /// The line that holds \a offset; the end of the text lies on the last line.
    LineIndex lineAt(TextOffset offset) const;

    /// Where \a line begins. A line past the last one begins at the text's end.
    TextOffset lineStart(LineIndex line) const;

    /// \a line with its line break.
    TextRange line(LineIndex line) const;

    /// \a line without its line break.
    TextRange lineContent(LineIndex line) const;

    /// The whole lines, with their line breaks, that \a range touches.
    TextRange lineRangeForRange(TextRange range) const;

    /// The length of the longest line, without its break.
    TextOffset longestLine() const { return m_root ? m_root->metrics.longestLine() : 0; }

    /// The piece that holds \a offset, whole; at the text's end an empty one.
    TextPiece pieceAt(TextOffset offset) const;

    /// Calls \a visit with each piece of \a range, first to last, cut to the range.
    /// A \a visit that answers a bool ends the walk with false.
    template<class Visit>
    void forEachPiece(TextRange range, Visit&& visit) const;

    /// The same characters, whatever the trees' shapes.
    bool operator==(const TextSnapshot& other) const;

    /// True when both are the very same tree, which needs no comparison of characters.
    bool isSameTree(const TextSnapshot& other) const { return m_root == other.m_root; }

    const TextNodePointer& root() const { return m_root; }

private:
    TextSnapshot rewritten(std::span<const TextEdit> edits) const;

    TextNodePointer m_root; ///< null for the empty text
};

/// One replacement among several.
struct TextEdit
{
    TextRange range;
    TextSnapshot replacement;
};

/// How many units \a a and \a b begin with in common.
TextOffset commonPrefixLength(const TextSnapshot& a, const TextSnapshot& b);

/// How many units are the same from \a from on in \a a and \a other on in \a b; at most \a length,
/// which both have from there on.
TextOffset commonLength(const TextSnapshot& a, TextOffset from, const TextSnapshot& b,
                        TextOffset other, TextOffset length);

/// \a piece without its first \a skipped units and with at most \a length units left.
TextPiece trimmed(const TextPiece& piece, TextOffset skipped, TextOffset length);

template<class Visit>
void TextSnapshot::forEachPiece(TextRange range, Visit&& visit) const
{
    TextPieces pieces(m_root.data());
    for (TextOffset offset = range.location; offset < range.end();) {
        const TextPiece whole = pieces.at(offset);
        const TextPiece piece = trimmed(whole, offset - whole.location, range.end() - offset);
        if constexpr (std::is_same_v<decltype(visit(piece)), bool>) {
            if (!visit(piece))
                return;
        } else {
            visit(piece);
        }
        offset += piece.length();
    }
}

} // namespace quillory
