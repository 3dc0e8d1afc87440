#include "view/ColumnSelection.h"

#include "text/TextBoundary.h"
#include "view/PlainColumns.h"

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <cmath>

namespace quillory {

namespace {

constexpr int sliceAtOnce = 8; // milliseconds, of a frame of 16
constexpr int sliceLater = 8;

} // namespace

ColumnSelection::ColumnSelection(QPTextView& editor, TextGeometry& geometry)
    : m_editor(editor), m_geometry(geometry)
{
    connect(&editor, &QPTextView::selectionDidChange, this, [this] {
        if (!m_applying)
            forget();
    });
    connect(&editor.textStorage(), &TextStorage::edited, this, &ColumnSelection::forget);
}

void ColumnSelection::forget()
{
    m_active = false;
    m_caretX.reset();
    m_next.reset();
    m_rest.stop();
}

ColumnSelection::Corner ColumnSelection::cornerAt(TextOffset offset)
{
    return {offset, m_geometry.xOf(m_geometry.rowAt(offset), offset)};
}

void ColumnSelection::resume()
{
    if (m_active)
        return;
    const Selection primary = m_editor.primarySelection();
    start(cornerAt(primary.anchor));
    m_head = cornerAt(primary.head);
}

void ColumnSelection::start(Corner anchor)
{
    m_anchor = m_head = anchor;
    m_active = true;
}

void ColumnSelection::extendTo(Corner head)
{
    m_head = head;
    m_active = true;
    m_byColumns = PlainColumns(m_geometry).areUsable();
    m_selections.clear();
    m_next = m_geometry.rowAt(head.offset);
    m_lastRow = m_geometry.rowAt(m_anchor.offset).range.location;
    work(sliceAtOnce);
    apply();
    if (m_next)
        m_rest.start(0, this);
}

void ColumnSelection::work(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    constexpr int rowsBetweenLooks = 64;
    for (int count = 0; m_next; ++count) {
        if (count % rowsBetweenLooks == rowsBetweenLooks - 1 && timer.elapsed() >= milliseconds)
            return;
        const TextGeometry::Row row = *m_next;
        const Selection selection = selectionOn(row);
        if (!isTooShort(row, selection))
            m_selections.push_back(selection);
        if (row.range.location == m_lastRow)
            m_next.reset();
        else
            m_next = row.range.location < m_lastRow ? m_geometry.rowAfter(row)
                                                    : m_geometry.rowBefore(row);
    }
}

void ColumnSelection::apply()
{
    const QScopedValueRollback applying(m_applying, true);
    std::vector<Selection> selections = m_selections;
    if (selections.empty())
        selections.push_back(selectionOn(m_geometry.rowAt(m_head.offset)));
    size_t primary = 0;
    if (m_head.offset > m_lastRow) {
        std::reverse(selections.begin(), selections.end());
        primary = selections.size() - 1;
    }
    m_editor.setSelections(std::move(selections), primary);
}

void ColumnSelection::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_rest.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    work(sliceLater);
    if (m_next)
        return;
    m_rest.stop();
    apply();
    Q_EMIT finished();
}

// Places on a row

Selection ColumnSelection::selectionOn(const TextGeometry::Row& row)
{
    const TextOffset anchor = placeOn(row, m_anchor.x);
    return {anchor, m_anchor.x == m_head.x ? anchor : placeOn(row, m_head.x)};
}

TextOffset ColumnSelection::placeOn(const TextGeometry::Row& row, double x)
{
    if (m_byColumns) {
        if (const auto place = PlainColumns(m_geometry).placeAt(row, x))
            return *place;
    }
    return m_geometry.offsetAt(row, x);
}

/// Whether the row ends before it reaches the rectangle.
bool ColumnSelection::isTooShort(const TextGeometry::Row& row, const Selection& selection)
{
    const double half = m_geometry.font().advance() / 2;
    if (!selection.isCaret() || std::abs(m_anchor.x - m_head.x) < half ||
        selection.head < row.range.end())
        return false;
    const double end = m_geometry.xOf(row, selection.head);
    return m_geometry.isRightToLeft(row) ? end > std::max(m_anchor.x, m_head.x) + half
                                         : end < std::min(m_anchor.x, m_head.x) - half;
}

// Keys

bool ColumnSelection::isColumnKey(const QKeyEvent& event)
{
    const auto modifiers = event.modifiers() & ~(Qt::KeypadModifier | Qt::GroupSwitchModifier);
    if (modifiers != (Qt::AltModifier | Qt::ShiftModifier))
        return false;
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}

bool ColumnSelection::press(const QKeyEvent& event, int page)
{
    if (!isColumnKey(event))
        return false;
    resume();
    switch (event.key()) {
    case Qt::Key_Up:
        moveByRows(-1);
        break;
    case Qt::Key_Down:
        moveByRows(1);
        break;
    case Qt::Key_PageUp:
        moveByRows(-page);
        break;
    case Qt::Key_PageDown:
        moveByRows(page);
        break;
    case Qt::Key_Left:
        moveSideways(-1);
        break;
    default:
        moveSideways(1);
        break;
    }
    return true;
}

void ColumnSelection::moveByRows(int rows)
{
    TextGeometry::Row row = m_geometry.rowAt(m_head.offset);
    for (int left = std::abs(rows); left > 0; --left) {
        const auto next = rows < 0 ? m_geometry.rowBefore(row) : m_geometry.rowAfter(row);
        if (!next)
            break;
        row = *next;
    }
    extendTo({row.range.location, m_head.x});
}

/// By a character of the row; beside it by columns.
void ColumnSelection::moveSideways(int step)
{
    const TextGeometry::Row row = m_geometry.rowAt(m_head.offset);
    const TextGeometry::Edges edges = m_geometry.edgesOf(row);
    const double advance = m_geometry.font().advance();
    double x = m_head.x + step * advance;
    const auto [left, right] = std::minmax(m_head.x, x);
    if (left > edges.left - advance / 2 && right < edges.right + advance / 2) {
        const TextOffset place = m_geometry.offsetAt(row, m_head.x);
        const TextSnapshot& text = m_geometry.text();
        // Whichever of the two lies on that side.
        for (const TextOffset next : {characterBefore(text, place), characterAfter(text, place)}) {
            const double nextX =
                m_geometry.xOf(row, std::clamp(next, row.range.location, row.range.end()));
            if ((nextX - m_head.x) * step > 0)
                x = nextX;
        }
    }
    extendTo({m_head.offset, std::max(std::min(0.0, edges.left), x)});
}

void ColumnSelection::addCaret(int rows)
{
    std::vector<Selection> selections = m_editor.selections();
    const Selection& outermost = rows < 0 ? selections.front() : selections.back();
    const TextGeometry::Row from = m_geometry.rowAt(outermost.head);
    const double x = m_caretX ? *m_caretX : m_geometry.xOf(from, outermost.head);
    const auto row = rows < 0 ? m_geometry.rowBefore(from) : m_geometry.rowAfter(from);
    if (!row)
        return;
    selections.push_back(Selection::caret(m_geometry.offsetAt(*row, x)));
    const size_t primary = selections.size() - 1;
    m_active = false;
    const QScopedValueRollback applying(m_applying, true);
    m_editor.setSelections(std::move(selections), primary);
    m_caretX = x;
}

} // namespace quillory
