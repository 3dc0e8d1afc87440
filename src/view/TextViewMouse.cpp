#include "view/TextViewMouse.h"

#include "editing/SelectionCommands.h"
#include "text/TextBoundary.h"
#include "view/TextDrag.h"
#include "view/TextViewWidget.h"

#include <QApplication>
#include <QMouseEvent>

namespace quillory {

TextViewMouse::TextViewMouse(TextViewWidget& view)
    : m_view(view), m_autoscroll(view, [this](QPoint point) { extendTo(point); })
{}

void TextViewMouse::press(const QMouseEvent& event)
{
    const QPoint position = event.position().toPoint();
    const TextOffset offset = m_view.offsetAtPoint(position);
    if (event.button() == Qt::MiddleButton) {
        m_view.editor().setSelection(Selection::caret(offset));
        m_view.commands().pastePrimarySelection();
        return;
    }
    if (event.button() != Qt::LeftButton)
        return;
    m_pressed = position;
    const bool triple =
        m_sinceDoubleClick.isValid() &&
        !m_sinceDoubleClick.hasExpired(QApplication::doubleClickInterval()) &&
        (position - m_doubleClickPosition).manhattanLength() < QApplication::startDragDistance();
    m_sinceDoubleClick.invalidate();
    const bool adding = event.modifiers() & Qt::ControlModifier;
    const bool extending = event.modifiers() & Qt::ShiftModifier;
    const auto& before = m_view.editor().selections();
    m_othersByWords = m_view.editor().selectionGranularity() == SelectionGranularity::Word ||
                      std::all_of(before.begin(), before.end(),
                                  [](const Selection& selection) { return selection.isCaret(); });
    if (triple) {
        start(offset, SelectionGranularity::Paragraph, adding);
    } else if (event.modifiers() & Qt::AltModifier) {
        m_action = Action::SelectColumn;
        if (extending)
            m_view.columnSelection().resume();
        else
            m_view.columnSelection().start(m_view.cornerAtPoint(position));
        extendTo(position);
    } else if (extending) {
        const Selection primary = m_view.editor().primarySelection();
        m_granularity = SelectionGranularity::Character;
        m_origin = {primary.anchor, 0};
        m_others.clear();
        m_action = Action::Select;
        extendTo(position);
    } else if (isOnSelectedText(position)) {
        m_action = Action::Grab;
    } else if (!adding || !removeSelectionAt(m_view.editor(), offset)) {
        start(offset, SelectionGranularity::Character, adding);
    }
}

void TextViewMouse::pressLine(const QMouseEvent& event)
{
    m_pressed = event.position().toPoint();
    const TextOffset offset = m_view.offsetAtPoint(m_pressed);
    const QPTextView& editor = m_view.editor();
    const Selection primary = editor.primarySelection();
    const bool adding = event.modifiers() & Qt::ControlModifier;
    if (!(event.modifiers() & Qt::ShiftModifier)) {
        start(offset, SelectionGranularity::Paragraph, adding);
        return;
    }
    // A selection that goes up begins behind the last character of its first line.
    const TextOffset origin = primary.head < primary.anchor ? primary.anchor - 1 : primary.anchor;
    start(origin, SelectionGranularity::Paragraph, false);
    extendTo(m_pressed);
}

void TextViewMouse::doubleClick(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || event.modifiers() & Qt::AltModifier) {
        press(event);
        return;
    }
    m_pressed = m_doubleClickPosition = event.position().toPoint();
    m_sinceDoubleClick.start();
    start(characterAt(m_doubleClickPosition), SelectionGranularity::Word,
          event.modifiers() & Qt::ControlModifier);
}

/// Where the character under \a point begins; beside the text, the nearest place.
TextOffset TextViewMouse::characterAt(QPoint point) const
{
    const TextOffset near = m_view.offsetAtPoint(point);
    const TextOffset before = characterBefore(m_view.editor().string(), near);
    const QRect nearCaret = m_view.caretRectAt(near);
    const QRect beforeCaret = m_view.caretRectAt(before);
    const auto isInRow = [&](const QRect& caret) {
        return caret.top() <= point.y() && point.y() <= caret.bottom();
    };
    if (!isInRow(beforeCaret))
        return near;
    if (!isInRow(nearCaret)) // the place where a row ends counts as the beginning of the next one
        return before;
    const auto [from, to] = std::minmax({beforeCaret.x(), nearCaret.x()});
    return from <= point.x() && point.x() < to ? before : near;
}

bool TextViewMouse::isOnSelectedText(QPoint point) const
{
    const TextOffset character = characterAt(point);
    const auto& selections = m_view.editor().selections();
    const auto it =
        std::partition_point(selections.begin(), selections.end(), [&](const Selection& selection) {
            return selection.range().end() <= character;
        });
    return it != selections.end() && it->range().contains(character);
}

void TextViewMouse::start(TextOffset offset, SelectionGranularity granularity, bool adding)
{
    QPTextView& editor = m_view.editor();
    m_granularity = granularity;
    const int clickCount = granularity == SelectionGranularity::Word ? 2 : 1;
    m_origin = editor.selectionRangeForProposedRange({offset, 0}, granularity, clickCount);
    m_others = adding ? editor.selections() : std::vector<Selection>();
    m_action = Action::Select;
    extendToOffset(offset, m_pressed);
}

void TextViewMouse::extendTo(QPoint point)
{
    if (m_action == Action::SelectColumn)
        extendColumnTo(point);
    else if (m_granularity == SelectionGranularity::Word)
        extendToOffset(characterAt(point), point);
    else
        extendToOffset(m_view.offsetAtPoint(point), point);
}

void TextViewMouse::extendColumnTo(QPoint point)
{
    m_view.columnSelection().extendTo(m_view.cornerAtPoint(point));
    m_view.restartBlink();
}

void TextViewMouse::extendToOffset(TextOffset offset, QPoint point)
{
    const TextRange reached =
        m_origin.contains(offset)
            ? m_origin // which may be more than a word, or less
            : m_view.editor().selectionRangeForProposedRange({offset, 0}, m_granularity);
    // Whole words or lines from where the drag began; the head is where the mouse is.
    const Selection selection =
        reached.location < m_origin.location
            ? Selection{m_origin.end(), reached.location}
            : Selection{m_origin.location, std::max(m_origin.end(), reached.end())};
    std::vector<Selection> selections = m_others;
    selections.push_back(selection);
    const size_t primary = selections.size() - 1;
    m_view.editor().setSelections(std::move(selections), primary);
    if (m_others.empty() || m_othersByWords)
        m_view.editor().setSelectionGranularity(m_granularity);
    m_view.takeAffinityAt(point);
    m_view.restartBlink();
}

void TextViewMouse::move(const QMouseEvent& event)
{
    if (m_action == Action::None || !(event.buttons() & Qt::LeftButton))
        return;
    const QPoint position = event.position().toPoint();
    if (m_action == Action::Grab) {
        if ((position - m_pressed).manhattanLength() < QApplication::startDragDistance())
            return;
        m_action = Action::None;
        dragSelectedText(m_view);
        return;
    }
    extendTo(position);
    m_autoscroll.follow(position);
}

void TextViewMouse::release(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || m_action == Action::None)
        return;
    const Action action = std::exchange(m_action, Action::None);
    m_autoscroll.stop();
    if (action == Action::Grab) {
        QPTextView& editor = m_view.editor();
        const TextOffset offset = m_view.offsetAtPoint(m_pressed);
        const bool removing = event.modifiers() & Qt::ControlModifier;
        if (!removing || !removeSelectionAt(editor, offset))
            editor.setSelection(Selection::caret(offset));
    }
    m_view.commands().publishPrimarySelection();
}

} // namespace quillory
