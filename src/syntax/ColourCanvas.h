#pragma once

#include "syntax/ColourRole.h"
#include "text/TextSnapshot.h"
#include "text/TextUnits.h"

#include <QChar>
#include <string>
#include <vector>

namespace quillory {

/// The character that begins at \a at of \a units; an unpaired surrogate as it stands.
inline char32_t characterAt(std::u16string_view units, TextOffset at)
{
    const char16_t unit = units[size_t(at)];
    if (QChar::isHighSurrogate(unit) && size_t(at) + 1 < units.size() &&
        QChar::isLowSurrogate(units[size_t(at) + 1]))
        return QChar::surrogateToUcs4(unit, units[size_t(at) + 1]);
    return unit;
}

/// The lines that are being coloured: their code units side by side, and the role that each was
/// painted in last. Places count from the first unit; at -1 stands a line break, for the one before
/// the lines or, where they begin the text, in its place.
class ColourCanvas
{
public:
    /// A line: where it begins, where its line break begins and where that ends.
    struct Line
    {
        TextOffset begin = 0;
        TextOffset contentEnd = 0;
        TextOffset end = 0;
    };

    /// \a lines: whole lines of \a text. Up to \a lookahead units after them can be searched too.
    ColourCanvas(const TextSnapshot& text, TextRange lines, const ColourRoles& roles,
                 TextOffset lookahead);

    /// \a line alone, as if more text came behind it.
    ColourCanvas(std::u16string_view line, const ColourRoles& roles);

    const TextSnapshot& text() const { return m_text; }
    TextRange range() const { return m_range; }
    TextOffset length() const { return m_range.length; }

    /// Where the whole text ends.
    TextOffset textEnd() const { return m_textEnd; }

    std::u16string_view units() const { return unitsAfterBreak().substr(1); }
    std::u16string_view unitsAndLookahead() const { return std::u16string_view(m_units).substr(1); }

    /// The units with the line break before them.
    std::u16string_view unitsAfterBreak() const
    {
        return std::u16string_view(m_units).substr(0, size_t(length()) + 1);
    }

    const std::vector<Line>& lines() const { return m_lines; }

    ColourRole roleAt(TextOffset place) const { return m_painted[size_t(place + 1)]; }

    /// Does what is painted at \a place look like \a role?
    bool isIn(TextOffset place, ColourRole role) const { return m_roles.same(roleAt(place), role); }
    const ColourRoles& roles() const { return m_roles; }

    /// Paints from \a begin to \a end, as far as there is canvas.
    void paint(TextOffset begin, TextOffset end, ColourRole role);

    /// What is painted, in offsets of the text.
    std::vector<RoleRun> runs() const;

private:
    void findLines();

    TextSnapshot m_text;
    TextRange m_range;
    TextOffset m_textEnd;
    const ColourRoles& m_roles;
    std::u16string m_units;
    std::vector<ColourRole> m_painted;
    std::vector<Line> m_lines;
};

/// The line that holds a place, for places that never go back.
class LineCursor
{
public:
    explicit LineCursor(const ColourCanvas& canvas) : m_lines(canvas.lines()) {}

    const ColourCanvas::Line& at(TextOffset place)
    {
        while (place >= m_lines[m_index].end && m_index + 1 < m_lines.size())
            ++m_index;
        return m_lines[m_index];
    }

private:
    const std::vector<ColourCanvas::Line>& m_lines;
    size_t m_index = 0;
};

} // namespace quillory
