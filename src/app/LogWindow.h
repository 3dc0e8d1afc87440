#pragma once

#include "editing/QPTextView.h"
#include "text/Overlay.h"

#include <QWidget>

class QLabel;
class QLineEdit;

namespace quillory {

class TextViewWidget;
class ViewAppearance;
class SyntaxColouring;
struct DocumentEnvironment;

/// What the programs of a document wrote, to be read, searched and copied, not edited; in the font
/// and the colours of the document's text.
class LogWindow : public QWidget
{
    Q_OBJECT

public:
    LogWindow(const DocumentEnvironment& environment, const SyntaxColouring& colouring,
              const QString& documentName);
    ~LogWindow() override;

    /// In the place of what it holds.
    void setText(const TextSnapshot& text);
    const TextSnapshot& text() const { return m_storage.snapshot(); }
    QPTextView& logTextView() { return m_editor; }
    /// Brings it to the front, and the keyboard to it.
    void present();
    void setDocumentName(const QString& name);

    /// The selected text, or all of it.
    void copy();
    void clear() { setText({}); }
    void openFind();
    /// Selects the next place, from the selection on and around the end, that holds what is to be
    /// found, in letters of either case; a little later in a long text.
    void findNext(bool backwards = false);

private:
    void build();
    QWidget* newFindBar();
    void fillMenu();
    void showState();
    void showFound(const TextRange& range);
    void closeFind();

    TextStorage m_storage;
    UndoManager m_undo{m_storage};
    QPTextView m_editor{m_storage, m_undo};
    Overlay m_overlay;
    TextViewWidget* m_view;
    ViewAppearance* m_appearance;
    QLabel* m_state = nullptr;
    QWidget* m_findBar = nullptr;
    QLineEdit* m_field = nullptr;
    QLabel* m_outcome = nullptr;
    int m_search = 0; ///< the last one begun
};

} // namespace quillory
