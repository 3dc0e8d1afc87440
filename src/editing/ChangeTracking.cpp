#include "editing/ChangeTracking.h"

#include "editing/QPTextView.h"
#include "foundation/UserDefaults.h"
#include "syntax/SyntaxColouring.h"
#include "text/BracketMatching.h"
#include "text/CharacterSet.h"
#include "text/TextReader.h"

namespace quillory {

namespace {

using namespace std::chrono_literals;

constexpr auto highlightDelay = 1ms;

/// Whether a word that ends before \a character may be completed.
bool endsWord(char32_t character)
{
    return CharacterSet::symbol().contains(character) ||
           CharacterSet::whitespaceAndNewline().contains(character) ||
           CharacterSet::punctuation().contains(character);
}

} // namespace

ChangeTracking::ChangeTracking(QPTextView& textView, const UserDefaults& defaults,
                               const SyntaxColouring& colouring, std::chrono::milliseconds pause)
    : m_textView(textView), m_defaults(defaults), m_colouring(colouring)
{
    const auto prepare = [this](QTimer& timer, std::chrono::milliseconds interval, auto callback) {
        timer.setSingleShot(true);
        timer.setInterval(interval);
        connect(&timer, &QTimer::timeout, this, callback);
    };
    prepare(m_highlightTimer, highlightDelay, &ChangeTracking::highlightRequested);
    prepare(m_autocompleteWordsTimer, pause, &ChangeTracking::autocompletionTimer);
    prepare(m_previewTimer, pause, &ChangeTracking::previewTimerSelector);
    connect(&textView.textStorage(), &TextStorage::edited, this, &ChangeTracking::followEdit);
    connect(&textView, &QPTextView::selectionDidChange, this,
            &ChangeTracking::textViewDidChangeSelection);
    connect(&textView, &QPTextView::textDidChange, this, &ChangeTracking::textDidChange);
}

/// What is typed at the carets before the primary one moves that, too.
void ChangeTracking::followEdit(const TextChange& change)
{
    if (m_textView.selections().size() > 1 && change.replaced.end() < m_lastCursorLocation)
        m_lastCursorLocation += change.delta();
}

void ChangeTracking::textViewDidChangeSelection()
{
    if (!m_colouring.isPlainText())
        Q_EMIT pageRecolourRequested();
    if (m_defaults.value(keys::highlight))
        m_highlightTimer.start();
    m_editedRange = m_textView.selectedRange();
    m_cursorLocation = m_editedRange.location;
    m_differenceBetweenLastAndPresent = m_cursorLocation - m_lastCursorLocation;
    m_lastCursorLocation = m_cursorLocation;
    if (m_differenceBetweenLastAndPresent == 1)
        flashMatchingBracket();
}

/// The caret has passed one character: typed, or stepped over.
void ChangeTracking::flashMatchingBracket()
{
    const TextSnapshot& completeString = m_textView.string();
    --m_cursorLocation;
    if (m_cursorLocation == completeString.length() ||
        !kindClosedBy(completeString.at(m_cursorLocation)))
        return;
    if (const auto opener = matchingOpener(completeString, m_cursorLocation))
        Q_EMIT findIndicatorRequested({*opener, 1});
    else
        Q_EMIT beep();
}

void ChangeTracking::textDidChange()
{
    if (m_defaults.value(keys::constrainScroll))
        Q_EMIT constrainScrollRequested();
    if (m_defaults.value(keys::highlight))
        Q_EMIT highlightRequested();
    // One that runs begins anew.
    if (m_autocompleteWordsTimer.isActive() || m_defaults.value(keys::showCompletions))
        m_autocompleteWordsTimer.start();
    m_previewTimer.start();
}

void ChangeTracking::previewTimerSelector()
{
    Q_EMIT createPreviewRequested();
}

void ChangeTracking::autocompletionTimer()
{
    const TextRange selectedRange = m_textView.selectedRange();
    const TextSnapshot& completeString = m_textView.string();
    const TextOffset stringLength = completeString.length();
    if (selectedRange.location > stringLength || !selectedRange.isEmpty() || stringLength == 0)
        return;
    if (selectedRange.location == stringLength ||
        endsWord(TextReader(completeString).codePointAt(selectedRange.location)))
        Q_EMIT completeRequested();
}

} // namespace quillory
