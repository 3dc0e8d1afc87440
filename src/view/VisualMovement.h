#pragma once

#include "editing/QPTextView.h"
#include "view/TextGeometry.h"

namespace quillory {

/// Moves carets to the left and to the right as the text shows, whichever way it runs.
///
/// Among characters of both directions a caret passes the one it stands beside, and hangs on it
/// afterwards. At a row's edge it goes on to the row that follows in the line's own direction: in a
/// line that is written from right to left, the left edge is where the next row is. Words are
/// passed in that direction, too. Between lines of different directions, which would send the caret
/// back and forth over the edge that they share, it goes on up or down the text as it came, from
/// one side of each line to the other. Where all runs from left to right this is movement in the
/// order of the text, by the rules of TextBoundary.
class VisualMovement
{
public:
    VisualMovement(QPTextView& editor, TextGeometry& geometry, CaretAffinity& affinity)
        : m_editor(editor), m_geometry(geometry), m_affinity(affinity)
    {}

    /// By a character; a selection that is not extended collapses to its end on that side.
    void moveLeft(bool extending) { move(false, extending); }
    void moveRight(bool extending) { move(true, extending); }
    void moveWordLeft(bool extending) { moveByWord(false, extending); }
    void moveWordRight(bool extending) { moveByWord(true, extending); }

private:
    void move(bool right, bool extending);
    void moveByWord(bool right, bool extending);
    CaretPlace step(const CaretPlace& from, bool right);
    std::optional<CaretPlace> crossLines(const TextGeometry::Row& row, const CaretPlace& from,
                                         bool right);
    CaretPlace cross(const TextGeometry::Row& row, const CaretPlace& from, bool right);
    CaretPlace edgeOf(TextRange range, bool right);

    /// Up or down, once a caret has crossed to a line of the other direction, as long as the key
    /// that took it there is pressed.
    struct Course
    {
        bool right;
        bool down;
        std::vector<Selection> selections; ///< as the last step left them
    };

    QPTextView& m_editor;
    TextGeometry& m_geometry;
    CaretAffinity& m_affinity;
    std::optional<Course> m_course;
};

} // namespace quillory
