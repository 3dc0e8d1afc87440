#include "view/TextViewAccessible.h"

#include "text/TextBoundary.h"
#include "view/AccessibleAttributes.h"
#include "view/LineNumberView.h"
#include "view/TextViewWidget.h"

#include <cmath>
#include <limits>

namespace quillory {

namespace {

int toInt(TextOffset offset)
{
    return int(std::min<TextOffset>(offset, std::numeric_limits<int>::max()));
}

QAccessibleInterface* makeInterface(const QString&, QObject* object)
{
    auto* view = qobject_cast<TextViewWidget*>(object);
    return view ? new TextViewAccessible(*view) : nullptr;
}

} // namespace

void installTextViewAccessibility()
{
    QAccessible::installFactory(makeInterface);
}

TextViewAccessible::TextViewAccessible(TextViewWidget& view)
    : QAccessibleWidget(&view, QAccessible::EditableText), m_view(view),
      m_units(view.textGeometry())
{}

QPTextView& TextViewAccessible::editor() const
{
    return m_view.editor();
}

// The object

void* TextViewAccessible::interface_cast(QAccessible::InterfaceType type)
{
    switch (type) {
    case QAccessible::TextInterface:
        return static_cast<QAccessibleTextInterface*>(this);
    case QAccessible::EditableTextInterface:
        return static_cast<QAccessibleEditableTextInterface*>(this);
    case QAccessible::ValueInterface:
        return static_cast<QAccessibleValueInterface*>(this);
    default:
        return QAccessibleWidget::interface_cast(type);
    }
}

QAccessible::State TextViewAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.multiLine = true;
    state.selectableText = true;
    state.editable = editor().isEditable();
    state.readOnly = !editor().isEditable();
    return state;
}

/// The viewport is the text itself; the numbers of its lines are told otherwise.
QList<QWidget*> TextViewAccessible::controls() const
{
    QList<QWidget*> result = m_view.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    result.removeIf([&](const QWidget* child) {
        return child == m_view.viewport() || qobject_cast<const LineNumberView*>(child) ||
               child->isWindow() || !child->isVisibleTo(&m_view);
    });
    return result;
}

int TextViewAccessible::childCount() const
{
    return int(controls().size());
}

QAccessibleInterface* TextViewAccessible::child(int index) const
{
    return QAccessible::queryAccessibleInterface(controls().value(index));
}

int TextViewAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    return child ? int(controls().indexOf(child->object())) : -1;
}

QAccessibleInterface* TextViewAccessible::childAt(int x, int y) const
{
    const QPoint point = m_view.mapFromGlobal(QPoint(x, y));
    const QList<QWidget*> all = controls();
    const auto hit = std::find_if(all.begin(), all.end(), [&](const QWidget* control) {
        return control->geometry().contains(point);
    });
    return hit == all.end() ? nullptr : QAccessible::queryAccessibleInterface(*hit);
}

// Offsets

TextOffset TextViewAccessible::offsetOf(int offset) const
{
    const TextOffset length = editor().string().length();
    if (offset == -1)
        return length;
    if (offset == -2)
        return std::min(editor().primarySelection().head, length);
    return std::clamp<TextOffset>(offset, 0, length);
}

TextRange TextViewAccessible::rangeOf(int start, int end) const
{
    return TextRange::between(offsetOf(start), offsetOf(end));
}

// Selections

/// Of the selections that are more than carets.
std::vector<size_t> TextViewAccessible::selectedIndexes() const
{
    const auto& all = editor().selections();
    std::vector<size_t> result;
    for (size_t i = 0; i < all.size(); ++i) {
        if (!all[i].isCaret())
            result.push_back(i);
    }
    return result;
}

void TextViewAccessible::select(std::vector<Selection> selections, size_t primary)
{
    editor().setSelections(std::move(selections), primary);
    m_view.showCaret();
}

int TextViewAccessible::selectionCount() const
{
    return int(selectedIndexes().size());
}

void TextViewAccessible::selection(int index, int* start, int* end) const
{
    *start = *end = 0;
    const std::vector<size_t> selected = selectedIndexes();
    if (index < 0 || size_t(index) >= selected.size())
        return;
    const TextRange range = editor().selections()[selected[size_t(index)]].range();
    *start = toInt(range.location);
    *end = toInt(range.end());
}

void TextViewAccessible::addSelection(int start, int end)
{
    std::vector<Selection> selections;
    for (const size_t index : selectedIndexes())
        selections.push_back(editor().selections()[index]);
    selections.push_back({offsetOf(start), offsetOf(end)});
    const size_t primary = selections.size() - 1;
    select(std::move(selections), primary);
}

void TextViewAccessible::removeSelection(int index)
{
    const std::vector<size_t> selected = selectedIndexes();
    if (index < 0 || size_t(index) >= selected.size())
        return;
    std::vector<Selection> selections = editor().selections();
    const auto removed = selections.begin() + qsizetype(selected[size_t(index)]);
    if (selections.size() == 1)
        *removed = Selection::caret(removed->head);
    else
        selections.erase(removed);
    const size_t primary = selections.size() - 1;
    select(std::move(selections), primary);
}

void TextViewAccessible::setSelection(int index, int start, int end)
{
    const std::vector<size_t> selected = selectedIndexes();
    if (index >= 0 && size_t(index) == selected.size()) {
        // Qt's bridge to AT-SPI adds a selection so.
        addSelection(start, end);
    } else if (index >= 0 && size_t(index) < selected.size()) {
        std::vector<Selection> selections = editor().selections();
        const size_t place = selected[size_t(index)];
        selections[place] = {offsetOf(start), offsetOf(end)};
        select(std::move(selections), place);
    }
}

int TextViewAccessible::cursorPosition() const
{
    return toInt(offsetOf(-2));
}

void TextViewAccessible::setCursorPosition(int position)
{
    select({Selection::caret(characterStart(editor().string(), offsetOf(position)))}, 0);
}

// Text

int TextViewAccessible::characterCount() const
{
    return toInt(editor().string().length());
}

QString TextViewAccessible::text(int start, int end) const
{
    TextRange range = rangeOf(start, end);
    range.length = std::min(range.length, longestSpokenText);
    return editor().string().string(range);
}

QString TextViewAccessible::told(std::optional<TextRange> range, int* start, int* end) const
{
    *start = *end = -1;
    if (!range)
        return {};
    range->length = std::min(range->length, longestSpokenText);
    *start = toInt(range->location);
    *end = toInt(range->end());
    return editor().string().string(*range);
}

QString TextViewAccessible::textBeforeOffset(int offset, QAccessible::TextBoundaryType kind,
                                             int* start, int* end) const
{
    return told(m_units.unitBefore(offsetOf(offset), kind), start, end);
}

QString TextViewAccessible::textAfterOffset(int offset, QAccessible::TextBoundaryType kind,
                                            int* start, int* end) const
{
    return told(m_units.unitAfter(offsetOf(offset), kind), start, end);
}

QString TextViewAccessible::textAtOffset(int offset, QAccessible::TextBoundaryType kind, int* start,
                                         int* end) const
{
    return told(m_units.unitAt(offsetOf(offset), kind), start, end);
}

QString TextViewAccessible::attributes(int offset, int* start, int* end) const
{
    const AccessibleAttributes found = attributesAt(m_view, offsetOf(offset));
    *start = toInt(found.range.location);
    *end = toInt(found.range.end());
    return found.text;
}

// Places

/// In the viewport.
QRect TextViewAccessible::rectOf(TextOffset offset) const
{
    const QRect caret = m_view.textViewport().caretRect({offset});
    const auto* visible = m_view.textViewport().rowShowing({offset});
    if (!visible || caret.isEmpty())
        return {};
    TextGeometry& geometry = m_view.textGeometry();
    const TextRange character = m_units.unitAt(offset, QAccessible::CharBoundary);
    const TextRange shown = character.intersection(visible->row.range);
    if (shown.isEmpty()) // a line break, or the text's end
        return {caret.topLeft(), QSize(int(geometry.font().advance()), caret.height())};
    double from = std::numeric_limits<double>::max();
    double to = std::numeric_limits<double>::lowest();
    const double x = geometry.xOf(visible->row, offset);
    geometry.forEachSegment(visible->row, x, x, [&](const TextGeometry::Segment& segment) {
        const TextRange here = shown.intersection(segment.range);
        if (here.isEmpty())
            return;
        segment.layout->forEachStretch(segment.row, segment.indexOf(here.location),
                                       segment.indexOf(here.end()), [&](double left, double right) {
                                           from = std::min(from, segment.x + left);
                                           to = std::max(to, segment.x + right);
                                       });
    });
    if (from > to) // at a seam of two pieces of a long line
        return {caret.topLeft(), QSize(int(geometry.font().advance()), caret.height())};
    // Rounded so that neighbours neither overlap nor leave a gap.
    const int left = int(std::round(m_view.textViewport().left() + from));
    const int right = int(std::round(m_view.textViewport().left() + to));
    return {left, caret.y(), std::max(1, right - left), caret.height()};
}

QRect TextViewAccessible::characterRect(int offset) const
{
    const QRect rect = rectOf(offsetOf(offset));
    return m_view.viewport()->rect().intersects(rect)
               ? rect.translated(m_view.viewport()->mapToGlobal(QPoint()))
               : QRect();
}

int TextViewAccessible::offsetAtPoint(const QPoint& point) const
{
    const QPoint inside = m_view.viewport()->mapFromGlobal(point);
    if (!m_view.viewport()->rect().contains(inside))
        return -1;
    // The place between two characters that is nearest; the point is on one or the other.
    const TextOffset near = m_view.offsetAtPoint(inside);
    const TextOffset before = characterBefore(editor().string(), near);
    const bool onBefore = !rectOf(near).contains(inside) && rectOf(before).contains(inside);
    return toInt(onBefore ? before : near);
}

void TextViewAccessible::scrollToSubstring(int start, int end)
{
    const TextRange range = rangeOf(start, end);
    m_view.ensureVisible(range.end());
    m_view.ensureVisible(range.location);
}

// Edits

void TextViewAccessible::replaceText(int start, int end, const QString& text)
{
    const TextRange range = rangeOf(start, end);
    if (!editor().shouldChangeTextInRange(range, text))
        return;
    editor().replaceCharactersInRange(range, text);
    editor().didChangeText();
}

void TextViewAccessible::deleteText(int start, int end)
{
    replaceText(start, end, QString());
}

void TextViewAccessible::insertText(int offset, const QString& text)
{
    replaceText(offset, offset, text);
}

// Value

QVariant TextViewAccessible::currentValue() const
{
    return qlonglong(editor().string().lineAt(offsetOf(-2)).value() + 1);
}

QVariant TextViewAccessible::maximumValue() const
{
    return qlonglong(editor().string().lineCount());
}

void TextViewAccessible::setCurrentValue(const QVariant& value)
{
    const TextSnapshot& text = editor().string();
    const LineIndex line(std::clamp<qlonglong>(value.toLongLong(), 1, text.lineCount()) - 1);
    select({Selection::caret(text.lineStart(line))}, 0);
}

} // namespace quillory
