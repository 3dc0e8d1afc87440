#include "editing/MarkedRanges.h"

namespace quillory {

std::span<const TextRange> MarkedRanges::touching(TextRange range) const
{
    const auto first = std::partition_point(m_ranges.begin(), m_ranges.end(),
                                            [&](TextRange r) { return r.end() < range.location; });
    const auto last = std::partition_point(first, m_ranges.end(),
                                           [&](TextRange r) { return r.location <= range.end(); });
    return {first, last};
}

void MarkedRanges::followEdit(const TextChange& change, bool joinsBefore, bool joinsAfter)
{
    const TextOffset start = change.replaced.location;
    const TextOffset end = change.replaced.end();
    const auto first = std::partition_point(m_ranges.begin(), m_ranges.end(), [&](TextRange r) {
        return joinsBefore ? r.end() < start : r.end() <= start;
    });
    const auto last = std::partition_point(first, m_ranges.end(), [&](TextRange r) {
        return joinsAfter ? r.location <= end : r.location < end;
    });
    auto next = m_ranges.erase(first, last);
    for (; next != m_ranges.end(); ++next)
        next->location += change.delta();
}

TextRange MarkedRanges::replace(TextRange checked, std::span<const TextRange> found)
{
    const auto first = std::partition_point(m_ranges.begin(), m_ranges.end(), [&](TextRange r) {
        return r.location < checked.location && r.end() <= checked.location;
    });
    const auto last = std::partition_point(first, m_ranges.end(),
                                           [&](TextRange r) { return r.location < checked.end(); });
    const std::span<const TextRange> old(first, last);
    const auto [oldDiffers, foundDiffers] =
        std::mismatch(old.begin(), old.end(), found.begin(), found.end());
    if (oldDiffers == old.end() && foundDiffers == found.end())
        return {};
    TextOffset start = checked.end();
    TextOffset end = checked.location;
    for (const auto& rest :
         {std::span(oldDiffers, old.end()), std::span(foundDiffers, found.end())}) {
        if (rest.empty())
            continue;
        start = std::min(start, rest.front().location);
        end = std::max(end, rest.back().end());
    }
    m_ranges.insert(m_ranges.erase(first, last), found.begin(), found.end());
    return TextRange::between(start, end);
}

void MarkedRanges::trim(TextRange range, size_t most)
{
    if (m_ranges.size() <= most)
        return;
    std::erase_if(m_ranges, [&](TextRange r) { return r.intersection(range).isEmpty(); });
}

} // namespace quillory
