#include "view/VisualMovement.h"

#include "text/TextBoundary.h"

namespace quillory {

namespace {
// Layouts count in 64ths of a pixel; no character that shows is as narrow as this.
constexpr double hair = 0.25;
} // namespace

void VisualMovement::move(bool right, bool extending)
{
    if (m_course && (m_course->right != right || m_course->selections != m_editor.selections()))
        m_course.reset();
    std::vector<CaretPlace> places;
    m_editor.moveEach(
        [&](const Selection& selection) {
            places.push_back(extending || selection.isCaret()
                                 ? step(m_affinity.placeOf(selection.head), right)
                                 : edgeOf(selection.range(), right));
            return places.back().offset;
        },
        extending);
    m_affinity.setPlaces(std::move(places));
    if (m_course)
        m_course->selections = m_editor.selections();
}

void VisualMovement::moveByWord(bool right, bool extending)
{
    m_editor.moveEach(
        [&](const Selection& selection) {
            const auto row = m_geometry.rowAt(m_affinity.placeOf(selection.head));
            return right != m_geometry.isRightToLeft(row)
                       ? wordEndAfter(m_geometry.text(), selection.head)
                       : wordStartBefore(m_geometry.text(), selection.head);
        },
        extending);
    m_affinity.clear();
}

CaretPlace VisualMovement::step(const CaretPlace& from, bool right)
{
    const TextSnapshot& text = m_geometry.text();
    const auto row = m_geometry.rowAt(from);
    const bool hasRightToLeft = m_geometry.hasRightToLeft(row, from.offset);
    const TextOffset edge = right ? row.content.end() : row.content.location;
    if (!hasRightToLeft && from.offset == edge) {
        if (const auto crossed = crossLines(row, from, right))
            return *crossed;
    }
    if (!hasRightToLeft)
        return {right ? characterAfter(text, from.offset) : characterBefore(text, from.offset)};

    const double x = m_geometry.xOf(row, from);
    const double probe = right ? x + hair : x - hair;
    const auto edges = m_geometry.edgesOf(row);
    const bool atEdge = right ? probe >= edges.right : probe <= edges.left;
    if (row.range.isEmpty() || atEdge)
        return cross(row, from, right);
    const auto passed = m_geometry.characterAt(row, probe);
    const bool forward = right != passed.rightToLeft;
    CaretPlace place{forward ? passed.range.end() : passed.range.location,
                     forward ? CaretSide::Before : CaretSide::After};
    // Over characters that have no width of their own, too.
    while (row.range.contains(forward ? place.offset : place.offset - 1)) {
        const double reached = m_geometry.xOf(row, place);
        if (right ? reached >= probe : reached <= probe)
            break;
        place.offset =
            forward ? characterAfter(text, place.offset) : characterBefore(text, place.offset);
    }
    place.offset = std::clamp(place.offset, row.range.location, row.range.end());
    // The end of a row that goes on below is the start of the next.
    if (row.placeOf(place.offset).side == CaretSide::Before)
        place.side = CaretSide::Any;
    return place;
}

/// From the edge of \a row to a line that runs the other way, or on from there; none where the
/// lines' own direction tells where to go.
std::optional<CaretPlace> VisualMovement::crossLines(const TextGeometry::Row& row,
                                                     const CaretPlace& from, bool right)
{
    const bool rightToLeft = m_geometry.isRightToLeft(row);
    const bool down = m_course ? m_course->down : right != rightToLeft;
    const auto next = down ? m_geometry.rowAfter(row) : m_geometry.rowBefore(row);
    if (!next)
        return m_course ? std::optional(from) : std::nullopt;
    const bool nextRightToLeft = m_geometry.isRightToLeft(*next);
    if (!m_course && nextRightToLeft == rightToLeft)
        return {};
    if (!m_course)
        m_course = {right, down, {}};
    return right != nextRightToLeft ? CaretPlace{next->range.location}
                                    : next->placeOf(next->range.end());
}

/// Over the edge of \a row.
CaretPlace VisualMovement::cross(const TextGeometry::Row& row, const CaretPlace& from, bool right)
{
    const TextSnapshot& text = m_geometry.text();
    const bool forward = right != m_geometry.isRightToLeft(row);
    const bool leavesLine = forward ? row.endsLine() : row.range.location == row.content.location;
    if (m_course || leavesLine) {
        if (const auto crossed = crossLines(row, from, right))
            return *crossed;
    }
    if (forward && !row.endsLine())
        return {from.offset < row.range.end() ? row.range.end()
                                              : characterAfter(text, row.range.end())};
    if (forward) {
        const auto after = m_geometry.rowAfter(row);
        return after ? CaretPlace{after->range.location} : from;
    }
    return row.range.location > 0 ? CaretPlace{characterBefore(text, row.range.location)} : from;
}

CaretPlace VisualMovement::edgeOf(TextRange range, bool right)
{
    const auto first = m_geometry.rowAt(range.location);
    const auto last = m_geometry.rowAt(range.end());
    bool atEnd = right != m_geometry.isRightToLeft(first);
    if (first.range == last.range && m_geometry.hasRightToLeft(first, range.location)) {
        const double start = m_geometry.xOf(first, {range.location, CaretSide::After});
        const double end = m_geometry.xOf(first, {range.end(), CaretSide::Before});
        atEnd = right == (start < end);
        if (atEnd)
            return {range.end(), CaretSide::Before};
    }
    return {atEnd ? range.end() : range.location};
}

} // namespace quillory
