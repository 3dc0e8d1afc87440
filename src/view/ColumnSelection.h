#pragma once

#include "editing/QPTextView.h"
#include "view/TextGeometry.h"

#include <QBasicTimer>

class QKeyEvent;

namespace quillory {

/// Selects a rectangle: on each row between two corners what lies between their x. It works by
/// places on the screen, so with tabs, wide characters, proportional fonts and wrapped lines too.
///
/// A row that ends left of the rectangle has no part in it; when the rectangle has no width, each
/// row gets a caret, at its end where it is too short. The rows near the corner that moves are
/// selected at once; where there are very many others, they follow as the events at hand allow.
class ColumnSelection : public QObject
{
    Q_OBJECT

public:
    struct Corner
    {
        TextOffset offset = 0; ///< of a place on the row
        double x = 0;          ///< in logical pixels from the left edge of the text
    };

    ColumnSelection(QPTextView& editor, TextGeometry& geometry);

    /// The selections are those of the rectangle.
    bool isActive() const { return m_active; }
    /// Begins at the primary selection unless there is a rectangle to go on with.
    void resume();
    void start(Corner anchor);
    void extendTo(Corner head);
    const Corner& head() const { return m_head; }
    /// Whether there are rows left to select; finished() will tell when there are none.
    bool isSelecting() const { return m_next.has_value(); }
    /// Keeps to what is selected so far.
    void stopSelecting() { forget(); }

    /// Alt+Shift with an arrow, or by \a page rows with Page Up and Page Down; true when the key
    /// was for the rectangle.
    bool press(const QKeyEvent& event, int page);
    static bool isColumnKey(const QKeyEvent& event);

    /// Adds a caret one row above the first selection, or below the last where \a rows is positive,
    /// at the x at which the one added last was meant to be.
    void addCaret(int rows);

Q_SIGNALS:
    void finished();

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    Corner cornerAt(TextOffset offset);
    void moveSideways(int step);
    void moveByRows(int rows);
    void work(int milliseconds);
    void apply();
    void forget();
    Selection selectionOn(const TextGeometry::Row& row);
    TextOffset placeOn(const TextGeometry::Row& row, double x);
    bool isTooShort(const TextGeometry::Row& row, const Selection& selection);

    QPTextView& m_editor;
    TextGeometry& m_geometry;
    bool m_active = false;
    bool m_applying = false;
    bool m_byColumns = false; ///< every plain character is a column wide
    Corner m_anchor;
    Corner m_head;
    std::optional<TextGeometry::Row> m_next; ///< the row to select next, from the head on
    TextOffset m_lastRow = 0;                ///< where the row of the anchor begins
    std::vector<Selection> m_selections;     ///< so far
    std::optional<double> m_caretX;          ///< of the caret added last
    QBasicTimer m_rest;                      ///< runs while rows are left
};

} // namespace quillory
