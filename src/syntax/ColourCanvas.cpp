#include "syntax/ColourCanvas.h"

#include "text/LineMetrics.h"

namespace quillory {

ColourCanvas::ColourCanvas(const TextSnapshot& text, TextRange lines, const ColourRoles& roles,
                           TextOffset lookahead)
    : m_text(text), m_range(lines), m_textEnd(text.length() - lines.location), m_roles(roles),
      m_painted(size_t(lines.length) + 1, ColourRole::none)
{
    const TextRange read =
        TextRange::between(lines.location, std::min(lines.end() + lookahead, text.length()));
    m_units.reserve(size_t(read.length) + 1);
    m_units.push_back(u'\n');
    text.forEachPiece(read, [&](const TextPiece& piece) {
        if (const auto* wide = std::get_if<QStringView>(&piece.units)) {
            m_units.append(wide->utf16(), size_t(wide->size()));
        } else {
            const auto narrow = std::get<QLatin1StringView>(piece.units);
            const auto* first = reinterpret_cast<const uchar*>(narrow.data());
            m_units.append(first, first + narrow.size());
        }
    });
    findLines();
}

ColourCanvas::ColourCanvas(std::u16string_view line, const ColourRoles& roles)
    : m_range{0, TextOffset(line.size())}, m_textEnd(std::numeric_limits<TextOffset>::max()),
      m_roles(roles), m_units(1, u'\n'), m_painted(line.size() + 1, ColourRole::none)
{
    m_units.append(line);
    findLines();
}

void ColourCanvas::findLines()
{
    const std::u16string_view all = units();
    Line line;
    for (size_t i = 0; i < all.size(); ++i) {
        if (!isLineBreak(all[i]))
            continue;
        line.contentEnd = TextOffset(i);
        if (all[i] == u'\r' && i + 1 < all.size() && all[i + 1] == u'\n')
            ++i;
        line.end = TextOffset(i) + 1;
        m_lines.push_back(line);
        line.begin = line.end;
    }
    m_lines.push_back({line.begin, length(), length()});
}

void ColourCanvas::paint(TextOffset begin, TextOffset end, ColourRole role)
{
    begin = std::max<TextOffset>(begin, -1);
    end = std::min(end, length());
    if (begin < end)
        std::fill(m_painted.begin() + begin + 1, m_painted.begin() + end + 1, role);
}

std::vector<RoleRun> ColourCanvas::runs() const
{
    std::vector<RoleRun> runs;
    for (TextOffset begin = 0; begin < length();) {
        const ColourRole role = roleAt(begin);
        TextOffset end = begin + 1;
        while (end < length() && roleAt(end) == role)
            ++end;
        if (role != ColourRole::none)
            runs.push_back(
                {TextRange::between(m_range.location + begin, m_range.location + end), role});
        begin = end;
    }
    return runs;
}

} // namespace quillory
