#pragma once

#include "text/Overlay.h"
#include "text/TextSnapshot.h"

namespace quillory {

/// The lines of a text that the band of an overlay lies behind.
class BandedLines
{
public:
    BandedLines() = default;

    BandedLines(const TextSnapshot& text, const std::optional<LineBand>& band)
    {
        if (!band)
            return;
        const TextRange range = band->range.clampedTo(text.length());
        m_first = text.lineAt(range.location);
        m_last = range.isEmpty() ? m_first : text.lineAt(range.end() - 1);
        m_colour = band->colour;
    }

    /// Of the band behind \a line; none where it does not lie.
    std::optional<Colour> colourOf(LineIndex line) const
    {
        const bool isBefore = line.value() < m_first.value();
        return isBefore || line.value() > m_last.value() ? std::nullopt : m_colour;
    }

private:
    LineIndex m_first;
    LineIndex m_last;
    std::optional<Colour> m_colour;
};

} // namespace quillory
