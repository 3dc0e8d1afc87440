#pragma once

#include "editing/QPTextView.h"
#include "view/TextGeometry.h"

namespace quillory {

/// Moves carets by rows as they are shown, where QPTextView moves them by characters, words and
/// lines.
class RowMovement
{
public:
    RowMovement(QPTextView& editor, TextGeometry& geometry, CaretAffinity& affinity)
        : m_editor(editor), m_geometry(geometry), m_affinity(affinity)
    {}

    /// Down when positive. Every caret keeps to the x at which it stood before the first of several
    /// such moves in a row. Past the first or last row it goes to the text's start or end.
    void moveByRows(qsizetype rows, bool extending);
    void moveToRowStart(bool extending);
    /// Behind the last character of the row, though the next row begins at the same offset.
    void moveToRowEnd(bool extending);

private:
    using Target = std::function<CaretPlace(const Selection& selection)>;
    void moveEach(const Target& target, bool extending);
    TextGeometry::Row rowOf(const Selection& selection)
    {
        return m_geometry.rowAt(m_affinity.placeOf(selection.head));
    }

    QPTextView& m_editor;
    TextGeometry& m_geometry;
    CaretAffinity& m_affinity;
    std::vector<Selection> m_moved; ///< the selections as the last move by rows left them
    std::vector<double> m_x;        ///< of each of them
};

} // namespace quillory
