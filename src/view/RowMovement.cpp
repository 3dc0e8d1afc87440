#include "view/RowMovement.h"

namespace quillory {

void RowMovement::moveByRows(qsizetype rows, bool extending)
{
    if (m_editor.selections() != m_moved) {
        m_x.clear();
        for (const Selection& selection : m_editor.selections())
            m_x.push_back(m_geometry.xOf(m_geometry.rowAt(selection.head), selection.head));
    }
    size_t index = 0;
    m_editor.moveEach(
        [&](const Selection& selection) {
            const double x = m_x[index++];
            const auto row = m_geometry.rowFrom(m_geometry.rowAt(selection.head), rows);
            if (!row)
                return rows < 0 ? 0 : m_geometry.text().length();
            return m_geometry.offsetAt(*row, x);
        },
        extending);
    m_moved = m_editor.selections();
    if (m_moved.size() != m_x.size()) // some met, so their places start anew
        m_moved.clear();
}

void RowMovement::moveToRowStart(bool extending)
{
    m_editor.moveEach(
        [&](const Selection& selection) { return m_geometry.rowAt(selection.head).range.location; },
        extending);
}

void RowMovement::moveToRowEnd(bool extending)
{
    m_editor.moveEach(
        [&](const Selection& selection) {
            return m_geometry.rowEnd(m_geometry.rowAt(selection.head));
        },
        extending);
}

} // namespace quillory
