#pragma once

#include "text/TextRange.h"

#include <QObject>
#include <QTimer>
#include <chrono>

namespace quillory {

class QPTextView;
class SyntaxColouring;
class UserDefaults;

/// What follows every move of the caret and every change of a document's text: it says when to
/// colour, to flash the opener of a bracket that was passed, to mark the current line, to scroll,
/// and, once the typing pauses, to offer completions and to refresh the preview.
///
/// Costs the same in a text of any length. Where there are several carets, the primary one counts.
class ChangeTracking : public QObject
{
    Q_OBJECT

public:
    /// How long typing has to pause before completions and the preview follow.
    static constexpr std::chrono::milliseconds typingPause{350};

    /// All but \a pause outlive this.
    ChangeTracking(QPTextView& textView, const UserDefaults& defaults,
                   const SyntaxColouring& colouring, std::chrono::milliseconds pause = typingPause);

    void textViewDidChangeSelection();
    void textDidChange();

    /// The selection when it changed last.
    TextRange editedRange() const { return m_editedRange; }

Q_SIGNALS:
    // On a change of the selection, in this order.

    /// Not in plain text.
    void pageRecolourRequested();
    /// A moment after the selection changed, when the text is laid out; on a change of the text at
    /// once. Only while the current line is to be marked.
    void highlightRequested();
    /// Leads the eye to the opener of the closing bracket that the caret stepped over.
    void findIndicatorRequested(quillory::TextRange range);
    /// That bracket has no opener.
    void beep();

    // On a change of the text, before highlightRequested().

    /// Only while the caret's line is to stay at one height.
    void constrainScrollRequested();

    // When typing pauses.

    /// Only where the caret stands at the end of a word, not inside one.
    void completeRequested();
    void createPreviewRequested();

private:
    void followEdit(const TextChange& change);
    void flashMatchingBracket();
    void autocompletionTimer();
    void previewTimerSelector();

    QPTextView& m_textView;
    const UserDefaults& m_defaults;
    const SyntaxColouring& m_colouring;
    TextRange m_editedRange;
    TextOffset m_cursorLocation = 0;
    TextOffset m_lastCursorLocation = 0;
    TextOffset m_differenceBetweenLastAndPresent = 0;
    QTimer m_highlightTimer;
    QTimer m_autocompleteWordsTimer;
    QTimer m_previewTimer;
};

} // namespace quillory
