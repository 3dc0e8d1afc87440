#include "view/RowMovement.h"

namespace quillory {

void RowMovement::moveEach(const Target& target, bool extending)
{
    std::vector<CaretPlace> places;
    m_editor.moveEach(
        [&](const Selection& selection) {
            places.push_back(target(selection));
            return places.back().offset;
        },
        extending);
    m_affinity.setPlaces(std::move(places));
}

void RowMovement::moveByRows(qsizetype rows, bool extending)
{
    if (m_editor.selections() != m_moved) {
        m_x.clear();
        for (const Selection& selection : m_editor.selections())
            m_x.push_back(m_geometry.xOf(rowOf(selection), m_affinity.placeOf(selection.head)));
    }
    size_t index = 0;
    moveEach(
        [&](const Selection& selection) {
            const double x = m_x[index++];
            const auto row = m_geometry.rowFrom(rowOf(selection), rows);
            if (!row)
                return CaretPlace{rows < 0 ? 0 : m_geometry.text().length()};
            return row->placeOf(m_geometry.offsetAt(*row, x));
        },
        extending);
    m_moved = m_editor.selections();
    if (m_moved.size() != m_x.size()) // some met, so their places start anew
        m_moved.clear();
}

void RowMovement::moveToRowStart(bool extending)
{
    moveEach(
        [&](const Selection& selection) { return CaretPlace{rowOf(selection).range.location}; },
        extending);
}

void RowMovement::moveToRowEnd(bool extending)
{
    moveEach(
        [&](const Selection& selection) {
            const auto row = rowOf(selection);
            return row.placeOf(row.range.end());
        },
        extending);
}

} // namespace quillory
