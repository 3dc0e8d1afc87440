#include "view/RowMovement.h"

#include "text/LineMetrics.h"
#include "text/TextReader.h"
#include "view/PlainColumns.h"

namespace quillory {

namespace {

// With more carets than this, laying out a line for each would be felt.
constexpr size_t fewCarets = 64;

// Beyond it a line is looked up rather than read through.
constexpr TextOffset shortLine = 200;

/// The rows of carets in the order of the text, which often stand in one line after the other. They
/// are then found by reading on from the line before.
class RowsInOrder
{
public:
    explicit RowsInOrder(TextGeometry& geometry)
        : m_geometry(geometry), m_reader(geometry.text()), m_counts(!geometry.wraps())
    {}

    TextGeometry::Row rowAt(const CaretPlace& place)
    {
        if (holds(m_target, place.offset))
            return *m_target;
        if (!holds(m_source, place.offset)) {
            m_before = m_source;
            if (m_source)
                m_source = rowAfter(*m_source);
            if (!holds(m_source, place.offset))
                m_source = m_geometry.rowAt(place);
        }
        return *m_source;
    }

    /// The row \a rows away from one that rowAt() answered.
    std::optional<TextGeometry::Row> rowFrom(const TextGeometry::Row& row, qsizetype rows)
    {
        const LineIndex line = row.line + rows;
        const auto source = std::exchange(m_source, row);
        m_target.reset();
        for (const auto& known : {source, m_before}) {
            if (m_counts && known && known->line == line)
                m_target = known;
        }
        if (!m_target)
            m_target = rows == 1 ? rowAfter(row) : m_geometry.rowFrom(row, rows);
        return m_target;
    }

private:
    bool holds(const std::optional<TextGeometry::Row>& row, TextOffset offset) const
    {
        return m_counts && row && row->content.location <= offset && offset <= row->content.end();
    }

    std::optional<TextGeometry::Row> rowAfter(const TextGeometry::Row& row)
    {
        const LineIndex line = row.line + 1;
        if (!m_counts || line.value() >= m_geometry.text().lineCount())
            return m_geometry.rowAfter(row);
        const TextOffset length = m_reader.length();
        TextOffset start = row.content.end();
        const bool isPair =
            m_reader.at(start) == u'\r' && start + 1 < length && m_reader.at(start + 1) == u'\n';
        start += isPair ? 2 : 1;
        TextOffset end = start;
        while (end < length && !isLineBreak(m_reader.at(end)) && end - start < shortLine)
            ++end;
        if (end - start == shortLine)
            return m_geometry.rowAfter(row);
        const TextRange content = TextRange::between(start, end);
        return TextGeometry::Row{line, content, content};
    }

    TextGeometry& m_geometry;
    TextReader m_reader;
    bool m_counts;                             ///< every line is one row
    std::optional<TextGeometry::Row> m_before; ///< above m_source, perhaps
    std::optional<TextGeometry::Row> m_source;
    std::optional<TextGeometry::Row> m_target;
};

} // namespace

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
    const PlainColumns columns(m_geometry);
    const bool byColumns = m_editor.selections().size() > fewCarets && columns.areUsable();
    RowsInOrder known(m_geometry);
    if (m_editor.selections() != m_moved) {
        m_x.clear();
        for (const Selection& selection : m_editor.selections()) {
            const CaretPlace place = m_affinity.placeOf(selection.head);
            const auto row = known.rowAt(place);
            const auto x = byColumns ? columns.xOf(row, place.offset) : std::nullopt;
            m_x.push_back(x ? *x : m_geometry.xOf(row, place));
        }
    }
    size_t index = 0;
    moveEach(
        [&](const Selection& selection) {
            const double x = m_x[index++];
            const auto from = known.rowAt(m_affinity.placeOf(selection.head));
            const auto row = known.rowFrom(from, rows);
            if (!row)
                return CaretPlace{rows < 0 ? 0 : m_geometry.text().length()};
            const auto place = byColumns ? columns.placeAt(*row, x) : std::nullopt;
            return row->placeOf(place ? *place : m_geometry.offsetAt(*row, x));
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
