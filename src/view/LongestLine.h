#pragma once

#include "text/TextSnapshot.h"

namespace quillory {

/// The longest line of a text, found without reading it.
class LongestLine
{
public:
    /// Code units, without the line break.
    TextOffset length() const { return m_text.longestLine(); }
    /// Whether its first strong character, among the first few thousand units, is one of a script
    /// that is written from right to left.
    bool isRightToLeft() const { return m_rightToLeft; }

    /// Looks it up in \a text; of no cost while that is the same tree. Else O(log n).
    void follow(const TextSnapshot& text);

private:
    TextSnapshot m_text;
    bool m_rightToLeft = false;
};

/// An offset in the longest line of \a text, its end included; of several in the first. O(log n).
TextOffset offsetInLongestLine(const TextSnapshot& text);

} // namespace quillory
