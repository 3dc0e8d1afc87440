#pragma once

#include "editing/QPTextView.h"
#include "text/Overlay.h"
#include "view/CaretBlink.h"
#include "view/ColumnSelection.h"
#include "view/RepaintTracker.h"
#include "view/RowMovement.h"
#include "view/TextDrop.h"
#include "view/TextViewAnnouncer.h"
#include "view/TextViewColours.h"
#include "view/TextViewCommands.h"
#include "view/TextViewInput.h"
#include "view/TextViewKeys.h"
#include "view/TextViewMouse.h"
#include "view/TextViewScrolling.h"
#include "view/TextViewport.h"
#include "view/VisualMovement.h"

#include <QAbstractScrollArea>
#include <QFontDatabase>
#include <functional>
#include <optional>

namespace quillory {

class FindIndicator;
class MarkedRanges;

/// Shows the text and the selections of a QPTextView, and turns keys, mouse and input method into
/// its operations. All that it shows it looks up in the model when it paints; an edit anywhere, in
/// a text or a line of any size, costs about the rows in sight that it changed.
///
/// Coordinates are logical pixels of viewport().
class TextViewWidget : public QAbstractScrollArea
{
    Q_OBJECT

public:
    /// Both arguments must outlive the widget. The overlay has to be told of edits by its owner.
    /// Measuring a font takes time, so \a font is best the one that is to stay.
    TextViewWidget(QPTextView& editor, Overlay& overlay, QWidget* parent = nullptr,
                   const QFont& font = QFontDatabase::systemFont(QFontDatabase::FixedFont));

    QPTextView& editor() const { return m_editor; }
    const Overlay& overlay() const { return m_overlay; }

    // Looks.

    QFont textFont() const { return m_geometry.font().font(); }
    /// By default the desktop's monospaced font.
    void setTextFont(const QFont& font);
    int tabWidth() const { return m_geometry.font().tabColumns(); }
    /// In columns, at least 1; by default TextFont::defaultTabColumns.
    void setTabWidth(int columns);
    bool wrapsLines() const { return m_wraps; }
    void setWrapLines(bool wrap);
    const TextViewColours& colours() const { return m_colours; }
    /// Colours to use in place of the palette's; none for those that follow the palette.
    void setColours(const std::optional<TextViewColours>& colours);

    // Places.

    /// Scrolls as little as shows the character at \a offset.
    void ensureVisible(TextOffset offset);
    void centerOn(TextOffset offset);
    /// The whole lines of which something is in sight, with their line breaks.
    TextRange visibleRange() { return m_viewport.visibleRange(); }
    TextOffset offsetAtPoint(QPoint point);
    /// Of the primary selection's head, or in the text being composed there; empty when that is
    /// not in sight.
    QRect caretRect() const { return m_input.caretRect(); }
    /// Has a bubble pop up for half a second over what of \a range is in sight.
    void showFindIndicatorForRange(TextRange range);
    QRect caretRectAt(TextOffset offset) { return m_viewport.caretRect({offset}); }

    /// Room at the left, for a ruler; the ruler is a child of this widget and fills rulerRect().
    void setRulerWidth(int width);
    QRect rulerRect() const;

    /// A press of the left button beside the text: selects the line there, or with Shift extends
    /// by lines. \a event is in the viewport's coordinates.
    void pressBesideText(const QMouseEvent& event);

    TextViewCommands& commands() { return m_commands; }

    // For the helpers that handle keys, mouse, input method and assistive technologies.

    TextGeometry& textGeometry() { return m_geometry; }
    TextViewport& textViewport() { return m_viewport; }
    const CaretAffinity& caretAffinity() const { return m_affinity; }
    RowMovement& rowMovement() { return m_rowMovement; }
    VisualMovement& visualMovement() { return m_visualMovement; }
    /// Has the primary caret hang on the character that \a point, where it was set, is beside.
    void takeAffinityAt(QPoint point);
    ColumnSelection& columnSelection() { return m_columnSelection; }
    /// The corner of a rectangle that lies at \a point.
    ColumnSelection::Corner cornerAtPoint(QPoint point);
    /// By screens, down when positive; the text scrolls along.
    void moveByPages(int pages, bool extending);
    TextViewMouse& mouse() { return m_mouse; }
    /// Exactly by so many pixels.
    void scrollBy(int dx, int dy) { m_scrolling.by({dx, dy}); }
    /// Has the caret in sight, and shown.
    void showCaret();
    /// The key whose press is being handled; 0 for none.
    int pressedKey() const { return m_pressedKey; }
    void restartBlink() { m_blink.restart(); }
    void setPreedit(const Preedit& preedit);
    /// Has a wave below each of \a words, which outlive the widget or the next call.
    void setMisspelt(const MarkedRanges* words) { m_misspelt = words; }
    const MarkedRanges* misspelt() const { return m_misspelt; } ///< null for none
    /// Has each of \a places marked as one that was found; they outlive the widget.
    void setFound(const MarkedRanges* places) { m_found = places; }
    /// To be called when words in \a range became misspelt or places were found, or are no longer.
    void marksChanged(TextRange range);
    WorkCounters& workCounters() { return m_geometry.counters(); }
    const CaretBlink& caretBlink() const { return m_blink; }

Q_SIGNALS:
    /// Another part of the text is in sight, or what is in sight has moved.
    void visibleRangeChanged();
    /// What is in sight has been looked up anew, as after an edit, a scroll or another font; what
    /// of it looks different is about to be painted.
    void refreshed();
    /// colours() are others.
    void coloursChanged();
    /// The wheel was turned with Ctrl held; positive \a steps are to enlarge the text.
    void zoomRequested(int steps);
    /// Files of this machine were dropped on the text.
    void filesDropped(const QStringList& paths);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void followEdit(const TextChange& change);
    void dismissFindIndicator();
    void relayOut(const std::function<void()>& change);
    void updateWrapWidth();
    void updateBars();
    void scheduleRefresh();
    void refresh();
    void updateCarets();

    QPTextView& m_editor;
    Overlay& m_overlay;
    TextGeometry m_geometry;
    TextViewport m_viewport;
    TextViewScrolling m_scrolling;
    RepaintTracker m_repaint;
    CaretAffinity m_affinity;
    RowMovement m_rowMovement;
    VisualMovement m_visualMovement;
    ColumnSelection m_columnSelection;
    TextViewCommands m_commands;
    TextDrop m_drop;
    TextViewKeys m_keys;
    TextViewMouse m_mouse;
    TextViewInput m_input;
    TextViewAnnouncer m_announcer;
    const MarkedRanges* m_misspelt = nullptr;
    const MarkedRanges* m_found = nullptr;
    CaretBlink m_blink;
    TextViewColours m_colours;
    FindIndicator* m_findIndicator = nullptr; ///< made when it is first needed
    std::optional<int> m_anchorY; ///< the text there stays while the wheel makes it larger
    int m_pressedKey = 0;
    bool m_ownColours = false;
    bool m_wraps = false;
    bool m_refreshPending = false;
    struct Shown
    {
        TextRange range;
        qint64 y = 0;
        double x = 0;
        QSize size;
        bool operator==(const Shown&) const = default;
    } m_shown; ///< what visibleRangeChanged() told last
};

} // namespace quillory
