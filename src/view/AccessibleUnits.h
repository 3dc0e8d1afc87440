#pragma once

#include "text/TextSnapshot.h"

#include <QAccessible>
#include <optional>

namespace quillory {

class TextGeometry;

/// The longest text that an assistive technology is given at once, in UTF-16 code units.
constexpr TextOffset longestSpokenText = 1 << 20;

/// The character, word, sentence, row or line (a paragraph here) of a text that holds an offset, as
/// assistive technologies ask for it. Together the units of one kind make up the whole text; rows
/// and lines include their line breaks. Every look-up reads a bounded stretch: a row or line longer
/// than a few thousand code units is read in pieces of that length.
class AccessibleUnits
{
public:
    explicit AccessibleUnits(TextGeometry& geometry) : m_geometry(geometry) {}

    /// The unit that holds the code unit at \a offset, which may be the text's end.
    TextRange unitAt(TextOffset offset, QAccessible::TextBoundaryType kind) const;
    /// The unit before, or after, the one at \a offset; none at the text's ends.
    std::optional<TextRange> unitBefore(TextOffset offset,
                                        QAccessible::TextBoundaryType kind) const;
    std::optional<TextRange> unitAfter(TextOffset offset, QAccessible::TextBoundaryType kind) const;

private:
    TextRange lineAt(TextOffset offset) const;
    TextRange rowAt(TextOffset offset) const;
    TextRange sentenceAt(TextOffset offset) const;
    TextRange piece(TextRange unit, TextOffset offset) const;

    TextGeometry& m_geometry;
};

} // namespace quillory
