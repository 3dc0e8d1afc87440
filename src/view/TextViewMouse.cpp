#include "view/TextViewMouse.h"

#include "view/TextViewWidget.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTimerEvent>

namespace quillory {

namespace {
constexpr int autoscrollInterval = 40; // milliseconds
}

void TextViewMouse::press(const QMouseEvent& event)
{
    m_position = event.position().toPoint();
    const TextOffset offset = m_view.offsetAtPoint(m_position);
    if (event.button() == Qt::MiddleButton) {
        m_view.editor().setSelection(Selection::caret(offset));
        m_view.pastePrimarySelection();
        return;
    }
    if (event.button() != Qt::LeftButton)
        return;
    const bool triple =
        m_sinceDoubleClick.isValid() &&
        !m_sinceDoubleClick.hasExpired(QApplication::doubleClickInterval()) &&
        (m_position - m_doubleClickPosition).manhattanLength() < QApplication::startDragDistance();
    m_sinceDoubleClick.invalidate();
    if (triple) {
        start(offset, SelectionGranularity::Paragraph, false);
    } else if (event.modifiers() & Qt::ShiftModifier) {
        const Selection primary = m_view.editor().primarySelection();
        m_granularity = SelectionGranularity::Character;
        m_origin = {primary.anchor, 0};
        m_others.clear();
        m_dragging = true;
        extendTo(offset);
    } else {
        start(offset, SelectionGranularity::Character, event.modifiers() & Qt::ControlModifier);
    }
}

void TextViewMouse::doubleClick(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton) {
        press(event);
        return;
    }
    m_position = m_doubleClickPosition = event.position().toPoint();
    m_sinceDoubleClick.start();
    start(m_view.offsetAtPoint(m_position), SelectionGranularity::Word, false);
}

void TextViewMouse::start(TextOffset offset, SelectionGranularity granularity, bool adding)
{
    QPTextView& editor = m_view.editor();
    m_granularity = granularity;
    m_origin = editor.selectionRangeForProposedRange({offset, 0}, granularity);
    m_others = adding ? editor.selections() : std::vector<Selection>();
    m_dragging = true;
    extendTo(offset);
}

void TextViewMouse::extendTo(TextOffset offset)
{
    const TextRange reached =
        m_view.editor().selectionRangeForProposedRange({offset, 0}, m_granularity);
    // Whole words or lines from where the drag began; the head is where the mouse is.
    const Selection selection =
        reached.location < m_origin.location
            ? Selection{m_origin.end(), reached.location}
            : Selection{m_origin.location, std::max(m_origin.end(), reached.end())};
    std::vector<Selection> selections = m_others;
    selections.push_back(selection);
    const size_t primary = selections.size() - 1;
    m_view.editor().setSelections(std::move(selections), primary);
    m_view.takeAffinityAt(m_position);
    m_view.restartBlink();
}

void TextViewMouse::move(const QMouseEvent& event)
{
    if (!m_dragging || !(event.buttons() & Qt::LeftButton))
        return;
    m_position = event.position().toPoint();
    extendTo(m_view.offsetAtPoint(m_position));
    if (m_view.viewport()->rect().contains(m_position))
        m_autoscroll.stop();
    else if (!m_autoscroll.isActive())
        m_autoscroll.start(autoscrollInterval, this);
}

void TextViewMouse::release(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton || !m_dragging)
        return;
    m_dragging = false;
    m_autoscroll.stop();
    m_view.publishPrimarySelection();
}

void TextViewMouse::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_autoscroll.timerId())
        scrollWhileOutside();
    else
        QObject::timerEvent(event);
}

/// The further outside the mouse is, the faster.
void TextViewMouse::scrollWhileOutside()
{
    const QRect inside = m_view.viewport()->rect();
    const auto outside = [](int value, int low, int high) {
        return value < low ? value - low : std::max(0, value - high);
    };
    m_view.scrollBy(outside(m_position.x(), inside.left(), inside.right()),
                    outside(m_position.y(), inside.top(), inside.bottom()));
    const QPoint nearest(std::clamp(m_position.x(), inside.left(), inside.right()),
                         std::clamp(m_position.y(), inside.top(), inside.bottom()));
    extendTo(m_view.offsetAtPoint(nearest));
}

} // namespace quillory
