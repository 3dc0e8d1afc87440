#pragma once

#include "text/TextRange.h"

#include <algorithm>
#include <vector>

namespace quillory {

/// Which of the characters beside it a caret hangs on.
enum class CaretSide
{
    Any,    ///< the one after, or where the writing direction turns, the one that runs as its line
    Before, ///< the one before
    After   ///< the one after
};

/// A place for a caret between two characters.
///
/// The two may stand apart: where a line wraps, one ends a row and the other begins the next, and
/// where the writing direction turns, the next character begins at the far end of its stretch. A
/// caret shows at the character that it hangs on.
struct CaretPlace
{
    TextOffset offset = 0;
    CaretSide side = CaretSide::Any;
    bool operator==(const CaretPlace&) const = default;
};

/// Which carets of a view hang on a certain side. It holds until the selections change.
class CaretAffinity
{
public:
    void clear() { m_places.clear(); }
    /// Has the carets at \a places hang as told, and all others on any side.
    void setPlaces(std::vector<CaretPlace> places)
    {
        std::erase_if(places, [](const CaretPlace& p) { return p.side == CaretSide::Any; });
        std::sort(places.begin(), places.end(),
                  [](const CaretPlace& a, const CaretPlace& b) { return a.offset < b.offset; });
        m_places = std::move(places);
    }
    /// Those that hang on a certain side, in order.
    const std::vector<CaretPlace>& places() const { return m_places; }
    CaretPlace placeOf(TextOffset head) const
    {
        const auto it = std::partition_point(m_places.begin(), m_places.end(),
                                             [=](const CaretPlace& p) { return p.offset < head; });
        return it != m_places.end() && it->offset == head ? *it : CaretPlace{head};
    }

private:
    std::vector<CaretPlace> m_places;
};

} // namespace quillory
