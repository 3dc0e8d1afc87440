#pragma once

#include "text/SequenceDiff.h"
#include "text/TextSnapshot.h"

#include <optional>
#include <vector>

namespace quillory {

/// Some lines of a text that follow each other; none, where \a count is 0, before \a first.
struct LineStretch
{
    LineIndex first;
    qsizetype count = 0;

    LineIndex end() const { return first + count; }
    bool operator==(const LineStretch&) const = default;
};

/// Lines of one text that stand in the place of lines of another one. One side may have none.
struct LineDifference
{
    LineStretch left;
    LineStretch right;
    bool operator==(const LineDifference&) const = default;
};

using LineDifferences = std::vector<LineDifference>; ///< in order, with equal lines between them

/// Compares two texts line by line. Lines are the same when they are so to the last character,
/// their line breaks included; the empty line after a text's last break counts for none.
///
/// Any thread may do it; it takes about a second for 100 MB, whatever they hold (see
/// compareSequences() for how good the answer is then). Where texts differ from each other over
/// more than mostLines lines, the answer is one difference. No answer when \a goesOn said no.
std::optional<LineDifferences> lineDifferences(const TextSnapshot& left, const TextSnapshot& right,
                                               const GoesOn& goesOn = {});

/// Of both texts together.
inline constexpr qsizetype mostLines = 20'000'000;

/// The characters of \a lines in \a text, with their breaks.
TextRange rangeOf(const TextSnapshot& text, const LineStretch& lines);

} // namespace quillory
