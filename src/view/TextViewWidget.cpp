#include "view/TextViewWidget.h"

#include "view/FindIndicator.h"
#include "view/FoundPainter.h"
#include "view/MisspeltPainter.h"
#include "view/TextContextMenu.h"
#include "view/TextPainter.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScopedValueRollback>

namespace quillory {

TextViewWidget::TextViewWidget(QPTextView& editor, Overlay& overlay, QWidget* parent,
                               const QFont& font)
    : QAbstractScrollArea(parent), m_editor(editor), m_overlay(overlay),
      m_geometry(editor.textStorage(), TextFont(font)), m_viewport(m_geometry),
      m_scrolling(*this, m_viewport), m_rowMovement(editor, m_geometry, m_affinity),
      m_visualMovement(editor, m_geometry, m_affinity), m_columnSelection(editor, m_geometry),
      m_commands(*this), m_drop(*this), m_keys(*this), m_mouse(*this), m_input(*this),
      m_announcer(*this), m_colours(TextViewColours::fromPalette(palette()))
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setFrameShape(QFrame::NoFrame);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setCursor(Qt::IBeamCursor);
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);

    const TextStorage& storage = editor.textStorage();
    connect(&storage, &TextStorage::edited, this, &TextViewWidget::followEdit);
    connect(&storage, &TextStorage::editingEnded, this, [this] { m_announcer.editingEnded(); });
    connect(&editor, &QPTextView::selectionDidChange, this, [this] {
        m_affinity.clear();
        m_input.followCaret();
        m_blink.restart();
        scheduleRefresh();
        m_announcer.selectionChanged();
    });
    connect(&overlay, &Overlay::changed, this, [this](TextRange range) {
        m_repaint.noteRecoloured(range);
        scheduleRefresh();
    });
    connect(&overlay, &Overlay::lineBandChanged, this, &TextViewWidget::scheduleRefresh);
    connect(&m_blink, &CaretBlink::toggled, this, &TextViewWidget::updateCarets);
    connect(&m_scrolling, &TextViewScrolling::scrolled, this, &TextViewWidget::scheduleRefresh);
    connect(&m_scrolling, &TextViewScrolling::zoomRequested, this, &TextViewWidget::zoomRequested);
}

// Looks

/// Makes a change to what the layout depends on. What the user looks at stays where it is: the row
/// at the mouse, the caret's row, or else the one at the top.
void TextViewWidget::relayOut(const std::function<void()>& change)
{
    const TextOffset head = m_editor.primarySelection().head;
    const TextViewport::VisibleRow* anchor = nullptr;
    if (m_anchorY)
        anchor = &m_viewport.rowAtY(*m_anchorY);
    else if (isVisible()) // else nothing need be laid out yet
        anchor = m_viewport.rowShowing({head});
    const int y = anchor ? anchor->y : 0;
    const TextOffset kept = m_anchorY && anchor ? anchor->row.range.location : head;
    change();
    dismissFindIndicator();
    m_viewport.invalidateWidths();
    m_repaint.noteAllChanged();
    updateWrapWidth();
    if (anchor)
        m_viewport.showAt(kept, y);
    scheduleRefresh();
}

void TextViewWidget::setTextFont(const QFont& font)
{
    relayOut([&] { m_geometry.setFont(TextFont(font, tabWidth())); });
}

void TextViewWidget::setTabWidth(int columns)
{
    relayOut([&] { m_geometry.setFont(TextFont(textFont(), columns)); });
}

void TextViewWidget::setWrapLines(bool wrap)
{
    setHorizontalScrollBarPolicy(wrap ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    relayOut([&] { m_wraps = wrap; });
}

void TextViewWidget::updateWrapWidth()
{
    const double room = viewport()->width() - 2 * TextViewport::textMargin;
    m_geometry.setRightEdge(room);
    m_geometry.setWrapWidth(m_wraps ? std::max(room, 4 * m_geometry.font().advance()) : 0);
    if (m_wraps)
        m_viewport.scrollToX(0);
}

void TextViewWidget::setColours(const std::optional<TextViewColours>& colours)
{
    m_ownColours = colours.has_value();
    m_colours = colours ? *colours : TextViewColours::fromPalette(palette());
    m_repaint.noteAllChanged();
    scheduleRefresh();
    Q_EMIT coloursChanged();
}

void TextViewWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange && !m_ownColours)
        setColours({});
    QAbstractScrollArea::changeEvent(event);
}

// Following the model

void TextViewWidget::followEdit(const TextChange& change)
{
    dismissFindIndicator();
    m_geometry.followEdit(change);
    m_viewport.followEdit(change);
    m_repaint.followEdit(change);
    m_input.followCaret();
    m_announcer.followEdit(change);
    scheduleRefresh();
}

/// The refresh comes after the events at hand, so one does for any number of changes.
void TextViewWidget::scheduleRefresh()
{
    if (!std::exchange(m_refreshPending, true))
        QMetaObject::invokeMethod(this, &TextViewWidget::refresh, Qt::QueuedConnection);
}

/// A bar that appears must not cover the caret's row.
void TextViewWidget::updateBars()
{
    const CaretPlace caret = m_affinity.placeOf(m_editor.primarySelection().head);
    const auto isShown = [&] {
        const auto* row = m_viewport.rowShowing(caret);
        return row && row->y + m_viewport.rowHeight() <= viewport()->height();
    };
    const int height = viewport()->height();
    const bool wasShown = isShown();
    m_scrolling.updateBars();
    // Bars come and go by queued calls; at once, nothing is painted in between.
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    if (wasShown && viewport()->height() < height && !isShown())
        m_viewport.ensureVisible(caret);
}

void TextViewWidget::refresh()
{
    m_refreshPending = false;
    m_viewport.settle();
    updateBars();
    m_repaint.noteAffinity(m_affinity.places());
    const Shown shown{visibleRange(), m_viewport.y(), m_viewport.x(), viewport()->size()};
    if (std::exchange(m_shown, shown) != shown) {
        dismissFindIndicator();
        // Whoever hears of it may colour what came into sight, so that it is painted but once.
        Q_EMIT visibleRangeChanged();
    }
    const QRegion damage = m_repaint.takeDamage(m_viewport, m_editor.selections(), m_overlay);
    if (!damage.isEmpty())
        viewport()->update(damage);
    Q_EMIT refreshed();
    if (hasFocus())
        updateMicroFocus();
}

// Painting

void TextViewWidget::paintEvent(QPaintEvent* event)
{
    if (m_refreshPending)
        refresh();
    QPainter painter(viewport());
    const TextPainter::Look look{m_overlay,         m_editor.selections(),  m_colours, hasFocus(),
                                 m_blink.isShown(), m_input.preeditStyle(), m_affinity};
    TextPainter(painter, m_geometry, m_viewport, look).paint(event->rect());
    if (m_found)
        paintFound(painter, m_geometry, m_viewport, *m_found, m_editor.selectedRange(),
                   event->rect(), m_colours.background);
    if (m_misspelt)
        paintMisspelt(painter, m_geometry, m_viewport, *m_misspelt, event->rect(),
                      m_colours.background);
    painter.fillRect(m_drop.caretRect(), m_colours.caret);
}

void TextViewWidget::updateCarets()
{
    const auto& selections = m_editor.selections();
    if (selections.size() > 1) {
        viewport()->update();
        return;
    }
    viewport()->update(caretRect().adjusted(-1, 0, 1, 0));
}

// Places

void TextViewWidget::ensureVisible(TextOffset offset)
{
    m_viewport.ensureVisible({std::clamp<TextOffset>(offset, 0, m_editor.string().length())});
    scheduleRefresh();
}

void TextViewWidget::centerOn(TextOffset offset)
{
    m_viewport.centerOn(std::clamp<TextOffset>(offset, 0, m_editor.string().length()));
    scheduleRefresh();
}

void TextViewWidget::takeAffinityAt(QPoint point)
{
    const auto& visible = m_viewport.rowAtY(point.y());
    const CaretPlace place = m_geometry.placeAt(visible.row, point.x() - m_viewport.left());
    if (place.offset == m_editor.primarySelection().head)
        m_affinity.setPlaces({place});
    scheduleRefresh();
}

TextOffset TextViewWidget::offsetAtPoint(QPoint point)
{
    const auto& visible = m_viewport.rowAtY(point.y());
    return m_geometry.offsetAt(visible.row, point.x() - m_viewport.left());
}

void TextViewWidget::showFindIndicatorForRange(TextRange range)
{
    if (m_refreshPending)
        refresh(); // the text may be about to move
    if (!m_findIndicator)
        m_findIndicator = new FindIndicator(m_geometry, m_viewport, viewport());
    m_findIndicator->pop(range);
}

void TextViewWidget::dismissFindIndicator()
{
    if (m_findIndicator)
        m_findIndicator->dismiss();
}

ColumnSelection::Corner TextViewWidget::cornerAtPoint(QPoint point)
{
    return {m_viewport.rowAtY(point.y()).row.range.location, point.x() - m_viewport.left()};
}

void TextViewWidget::setRulerWidth(int width)
{
    if (width != viewportMargins().left())
        relayOut([&] { setViewportMargins(width, 0, 0, 0); });
}

QRect TextViewWidget::rulerRect() const
{
    const QRect area = viewport()->geometry();
    return {area.left() - viewportMargins().left(), area.top(), viewportMargins().left(),
            area.height()};
}

// Scrolling

void TextViewWidget::resizeEvent(QResizeEvent* event)
{
    dismissFindIndicator();
    QAbstractScrollArea::resizeEvent(event);
    m_viewport.setSize(viewport()->size());
    updateWrapWidth();
    m_repaint.noteAllChanged();
    scheduleRefresh();
}

void TextViewWidget::scrollContentsBy(int dx, int dy)
{
    m_scrolling.followBars(dx, dy);
}

void TextViewWidget::wheelEvent(QWheelEvent* event)
{
    const QScopedValueRollback anchor(m_anchorY, std::optional(event->position().toPoint().y()));
    m_scrolling.wheel(*event);
    event->accept();
}

void TextViewWidget::moveByPages(int pages, bool extending)
{
    const qsizetype rows =
        std::max(1, viewport()->height() / m_viewport.rowHeight() - 1) * qsizetype(pages);
    m_viewport.scrollBy(rows * m_viewport.rowHeight());
    m_rowMovement.moveByRows(rows, extending);
}

void TextViewWidget::showCaret()
{
    m_blink.restart();
    m_viewport.ensureVisible(m_affinity.placeOf(m_editor.primarySelection().head));
    scheduleRefresh();
}

void TextViewWidget::marksChanged(TextRange range)
{
    m_repaint.noteChanged(range);
    scheduleRefresh();
}

void TextViewWidget::setPreedit(const Preedit& preedit)
{
    m_repaint.noteChanged({m_geometry.preedit().offset, 0});
    m_repaint.noteChanged({preedit.offset, 0});
    m_geometry.setPreedit(preedit);
    m_viewport.invalidate();
    scheduleRefresh();
}

// Events

bool TextViewWidget::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (TextViewKeys::isEditingKey(*key)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void TextViewWidget::keyPressEvent(QKeyEvent* event)
{
    m_scrolling.stopRolling();
    const QScopedValueRollback pressed(m_pressedKey, event->key());
    if (m_keys.press(*event))
        event->accept();
    else
        event->ignore(); // the window may want it; the scroll area's own keys are not for a text
}

void TextViewWidget::inputMethodEvent(QInputMethodEvent* event)
{
    m_input.handle(*event);
    event->accept();
}

QVariant TextViewWidget::inputMethodQuery(Qt::InputMethodQuery query) const
{
    return m_input.query(query);
}

void TextViewWidget::mousePressEvent(QMouseEvent* event)
{
    m_scrolling.stopRolling();
    if (!m_input.takesMouse(*event))
        m_mouse.press(*event);
}

void TextViewWidget::pressBesideText(const QMouseEvent& event)
{
    m_scrolling.stopRolling();
    m_input.finish();
    m_mouse.pressLine(event);
}

void TextViewWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (!m_input.takesMouse(*event))
        m_mouse.doubleClick(*event);
}

void TextViewWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_input.takesMouse(*event))
        m_mouse.move(*event);
}

void TextViewWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_input.takesMouse(*event))
        m_mouse.release(*event);
}

void TextViewWidget::contextMenuEvent(QContextMenuEvent* event)
{
    showContextMenu(*this, *event);
}

void TextViewWidget::dragEnterEvent(QDragEnterEvent* event)
{
    m_drop.move(*event);
    // Where the drag comes in may be no place to drop it, and yet it is to be told of the others.
    event->accept();
}

void TextViewWidget::dragMoveEvent(QDragMoveEvent* event)
{
    m_drop.move(*event);
}

void TextViewWidget::dragLeaveEvent(QDragLeaveEvent*)
{
    m_drop.leave();
}

void TextViewWidget::dropEvent(QDropEvent* event)
{
    m_drop.drop(*event);
}

void TextViewWidget::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    m_blink.setActive(true);
    m_repaint.noteAllChanged();
    scheduleRefresh();
}

void TextViewWidget::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    m_input.finish();
    m_blink.setActive(false);
    m_repaint.noteAllChanged();
    scheduleRefresh();
}

/// Tab is a character here.
bool TextViewWidget::focusNextPrevChild(bool)
{
    return false;
}

} // namespace quillory
