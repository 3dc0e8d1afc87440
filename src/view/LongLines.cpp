#include "view/LongLines.h"

#include <algorithm>

namespace quillory {

namespace {
// More than a screen has lines; forgetting one costs only its measured widths.
constexpr size_t maximumEntries = 512;
// So much of a line tells its direction.
constexpr TextOffset directionReach = 4096;
} // namespace

LongLines::Entry& LongLines::entry(TextRange content)
{
    const auto known = std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) {
        return entry.start == content.location;
    });
    if (known != m_entries.end() && known->chunks->length() == content.length) {
        std::rotate(m_entries.begin(), known, known + 1);
        return m_entries.front();
    }
    if (known != m_entries.end())
        m_entries.erase(known);
    else if (m_entries.size() == maximumEntries)
        m_entries.pop_back();
    m_entries.insert(
        m_entries.begin(),
        {content.location, std::make_unique<LineChunks>(content.length, m_unitWidth), {}});
    return m_entries.front();
}

bool LongLines::isRightToLeft(TextRange content, const TextSnapshot& text)
{
    Entry& known = entry(content);
    if (!known.rightToLeft) {
        const TextOffset length = std::min(content.length, directionReach);
        known.rightToLeft = text.string({content.location, length}).isRightToLeft();
    }
    return *known.rightToLeft;
}

void LongLines::followEdit(const TextChange& change, const TextSnapshot& text)
{
    std::erase_if(m_entries, [&](Entry& entry) {
        const TextRange old{entry.start, entry.chunks->length()};
        if (change.replaced.location > old.end())
            return false;
        const bool inside = change.replaced.location >= old.location;
        if (change.replaced.location < old.location + directionReach)
            entry.rightToLeft.reset();
        if (inside && change.replaced.end() <= old.end())
            entry.chunks->followEdit(
                {change.replaced.location - old.location, change.replaced.length},
                change.insertedLength);
        else if (!inside && change.replaced.end() < old.location)
            entry.start += change.delta();
        else
            return true;
        // Whether it is still one whole line, and still long.
        const TextOffset length = entry.chunks->length();
        if (length <= LineChunks::longLine || entry.start + length > text.length())
            return true;
        return text.lineContent(text.lineAt(entry.start)) != TextRange{entry.start, length};
    });
}

void LongLines::setUnitWidth(double unitWidth)
{
    m_unitWidth = unitWidth;
    for (Entry& entry : m_entries)
        entry.chunks->resetWidths(unitWidth);
}

void LongLines::unsettle()
{
    for (Entry& entry : m_entries)
        entry.chunks->unsettle();
}

} // namespace quillory
