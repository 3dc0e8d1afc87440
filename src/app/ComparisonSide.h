#pragma once

#include "editing/QPTextView.h"
#include "syntax/SyntaxColouring.h"
#include "text/LineDiff.h"
#include "text/Overlay.h"

#include <QWidget>

namespace quillory {

class TextViewWidget;
class ViewAppearance;
struct DocumentEnvironment;

/// One of two texts that are compared: its title, and below it the text with numbers and colours,
/// to be read and copied, not edited. Lines are never wrapped.
class ComparisonSide : public QWidget
{
    Q_OBJECT

public:
    ComparisonSide(const DocumentEnvironment& environment, const QString& definitionTitle,
                   const QString& title, const TextSnapshot& text, QWidget* parent);
    ~ComparisonSide() override;

    const TextSnapshot& text() const { return m_storage.snapshot(); }
    TextViewWidget& view() const { return *m_view; }
    QPTextView& editor() { return m_editor; }
    bool isDark() const; ///< light text on dark ground

    // Places: a line and what of it lies above, as one number; pixels from the text's upper edge in
    // the window.

    double lineAt(int y) const;
    int yOf(double line) const;
    /// As far as there is text.
    void scrollTo(double line, int y);
    void scrollSideways(int pixels);
    /// The lines of which something is in sight.
    LineStretch visibleLines() const;
    QRect textArea() const; ///< in this widget's parent

    /// Lines to lie before bands, in order.
    void setBands(const std::vector<LineBand>& bands) { m_overlay.setLineBands(bands); }
    void mark(TextRange range, Colour colour) { m_overlay.setBackground(range, colour); }
    void clearMarks() { m_overlay.removeBackground(text().range()); }

Q_SIGNALS:
    /// Other lines are in sight, or it has another size. \a byUser: not by scrollTo().
    void shownLinesChanged(bool byUser);
    void coloursChanged();

private:
    void build(const QString& title);
    void fillMenu();
    void applyPreferences();

    TextStorage m_storage;
    UndoManager m_undo{m_storage};
    QPTextView m_editor{m_storage, m_undo};
    Overlay m_overlay;
    SyntaxColouring m_colouring;
    TextViewWidget* m_view;
    ViewAppearance* m_appearance;
    qint64 m_ownY = 0; ///< where scrollTo() put it
    double m_ownX = 0;
};

} // namespace quillory
