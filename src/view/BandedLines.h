#pragma once

#include "text/Overlay.h"
#include "text/TextSnapshot.h"

namespace quillory {

/// The lines of a text that the bands of an overlay lie behind.
class BandedLines
{
public:
    BandedLines() = default;

    BandedLines(const TextSnapshot& text, const std::vector<LineBand>& bands)
    {
        for (const LineBand& band : bands) {
            const TextRange range = band.range.clampedTo(text.length());
            const LineIndex first = text.lineAt(range.location);
            const LineIndex last = range.isEmpty() ? first : text.lineAt(range.end() - 1);
            m_stretches.push_back({first, last, band.colour});
        }
    }

    /// Of the band behind \a line; none where none lies.
    std::optional<Colour> colourOf(LineIndex line) const
    {
        for (const Stretch& stretch : m_stretches) {
            if (line.value() >= stretch.first.value() && line.value() <= stretch.last.value())
                return stretch.colour;
        }
        return std::nullopt;
    }

private:
    struct Stretch
    {
        LineIndex first;
        LineIndex last;
        Colour colour;
    };
    std::vector<Stretch> m_stretches;
};

} // namespace quillory
