#pragma once

#include "text/TextRange.h"

#include <QStringView>
#include <string_view>

namespace quillory {

/// Finds a string at or after places that never go back; however many of them are asked for, the
/// units are read once. Code units are compared as they are.
class NextOccurrence
{
public:
    /// \a needle must not be empty to be found.
    NextOccurrence(std::u16string_view units, QStringView needle)
        : m_units(units), m_needle(needle.utf16(), size_t(needle.size()))
    {}

    /// Where the first occurrence at \a place or after it begins; -1 where there is none.
    TextOffset from(TextOffset place)
    {
        if (place > m_found && m_found != none)
            m_found = search(place);
        return m_found == none ? -1 : m_found;
    }

private:
    static constexpr TextOffset none = std::numeric_limits<TextOffset>::max();

    TextOffset search(TextOffset place) const
    {
        if (m_needle.empty())
            return none;
        const QStringView all(m_units.data(), TextOffset(m_units.size()));
        while ((place = all.indexOf(QChar(m_needle.front()), place)) >= 0) {
            if (m_units.substr(size_t(place), m_needle.size()) == m_needle)
                return place;
            ++place;
        }
        return none;
    }

    std::u16string_view m_units;
    std::u16string_view m_needle;
    TextOffset m_found = -1;
};

} // namespace quillory
