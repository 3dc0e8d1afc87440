#pragma once

#include "text/TextRange.h"
#include "view/AccessibleUnits.h"

#include <QAccessibleWidget>

namespace quillory {

class QPTextView;
class TextViewWidget;
struct Selection;

/// From now on text views tell assistive technologies what they show. Needs the application object.
void installTextViewAccessibility();

/// A text view as assistive technologies see it: a text that can be read, edited and measured, and
/// whose value is the number of the caret's line, from 1.
///
/// Offsets are UTF-16 code units; those beyond INT_MAX are cut to it. Every call costs O(log n) and
/// what it asks for, of which no more than longestSpokenText is handed out. Offsets outside the
/// text are pulled into it; -1 names its end and -2 the caret, as in IAccessible2.
class TextViewAccessible : public QAccessibleWidget,
                           public QAccessibleTextInterface,
                           public QAccessibleEditableTextInterface,
                           public QAccessibleValueInterface
{
public:
    explicit TextViewAccessible(TextViewWidget& view);

    // The object. Its children are the scroll bars and other controls around the text.

    void* interface_cast(QAccessible::InterfaceType type) override;
    QAccessible::State state() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;

    // Text. Selections are the ones of some length, in the order of the text.

    void selection(int index, int* start, int* end) const override;
    int selectionCount() const override;
    void addSelection(int start, int end) override;
    void removeSelection(int index) override;
    void setSelection(int index, int start, int end) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    using QAccessibleWidget::text;
    QString text(int start, int end) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType kind, int* start,
                             int* end) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType kind, int* start,
                            int* end) const override;
    QString textAtOffset(int offset, QAccessible::TextBoundaryType kind, int* start,
                         int* end) const override;
    int characterCount() const override;
    /// On the screen; empty for a character that is not in sight.
    QRect characterRect(int offset) const override;
    /// The character at a place on the screen; -1 outside the view.
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int start, int end) override;
    QString attributes(int offset, int* start, int* end) const override;

    // Editable text: undoable, refused while the text may not be edited.

    void deleteText(int start, int end) override;
    void insertText(int offset, const QString& text) override;
    void replaceText(int start, int end, const QString& text) override;

    // Value: the caret's line.

    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant minimumValue() const override { return 1; }
    QVariant maximumValue() const override;
    QVariant minimumStepSize() const override { return 1; }

private:
    QPTextView& editor() const;
    QList<QWidget*> controls() const;
    TextOffset offsetOf(int offset) const;
    TextRange rangeOf(int start, int end) const;
    QRect rectOf(TextOffset offset) const;
    QString told(std::optional<TextRange> range, int* start, int* end) const;
    std::vector<size_t> selectedIndexes() const;
    void select(std::vector<Selection> selections, size_t primary);

    TextViewWidget& m_view;
    AccessibleUnits m_units;
};

} // namespace quillory
