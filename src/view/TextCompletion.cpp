#include "view/TextCompletion.h"

#include "editing/Completion.h"
#include "editing/PartialWord.h"
#include "text/TextReader.h"
#include "view/CompletionPopup.h"
#include "view/TextViewWidget.h"

#include <QInputMethodEvent>
#include <QKeyEvent>

namespace quillory {

TextCompletion::TextCompletion(TextViewWidget& view, Completion& completion)
    : QObject(&view), m_view(view), m_completion(completion)
{
    QPTextView& editor = view.editor();
    connect(&editor.textStorage(), &TextStorage::edited, this, [this](const TextChange& change) {
        ++m_edits;
        if (!isOpen())
            return;
        m_start = mapped(m_start, change);
        followSoon();
    });
    connect(&editor, &QPTextView::selectionDidChange, this, &TextCompletion::followSoon);
    connect(&view, &TextViewWidget::visibleRangeChanged, this, &TextCompletion::followSoon);
    connect(&editor.undoManager(), &UndoManager::stepTaken, this, [this] {
        close();
        m_settled = m_edits;
    });
}

bool TextCompletion::isOpen() const
{
    return m_popup && m_popup->isVisible();
}

void TextCompletion::offer()
{
    const TextSnapshot& text = m_view.editor().string();
    const TextRange partialWord = m_completion.rangeForUserCompletion();
    if (partialWord.isEmpty() || m_settled == m_edits || isOpen())
        return;
    if (isNameCharacter(TextReader(text).codePointBefore(partialWord.end())))
        open(partialWord);
}

void TextCompletion::complete()
{
    if (!isOpen() && !open(m_completion.rangeForUserCompletion()))
        Q_EMIT m_view.editor().beep();
}

/// False where there is nothing to offer, or the keys are not for the text.
bool TextCompletion::open(TextRange partialWord)
{
    if (!m_view.hasFocus() || !m_view.textGeometry().preedit().text.isEmpty())
        return false;
    if (!m_popup) {
        m_popup = new CompletionPopup(&m_view);
        connect(m_popup, &CompletionPopup::accepted, this, &TextCompletion::accept);
    }
    m_start = partialWord.location;
    m_chosen = false;
    m_popup->setFont(m_view.textFont());
    m_followPending = true;
    follow();
    return isOpen();
}

void TextCompletion::close()
{
    m_followPending = false;
    if (!m_popup || !m_popup->isVisible())
        return;
    m_view.removeEventFilter(this);
    m_view.window()->removeEventFilter(this);
    m_popup->hide();
}

void TextCompletion::accept()
{
    const QString word = m_popup->currentWord();
    const TextRange partialWord = TextRange::between(m_start, m_caret);
    close();
    m_completion.insertCompletion(word, partialWord);
    m_settled = m_edits;
    m_view.showCaret();
}

/// Once the event at hand is done with: the text, the caret and what is in sight change one after
/// the other.
void TextCompletion::followSoon()
{
    if (isOpen() && !std::exchange(m_followPending, true))
        QMetaObject::invokeMethod(this, &TextCompletion::follow, Qt::QueuedConnection);
}

/// Brings the list up to date with the word as it is now, or closes it.
void TextCompletion::follow()
{
    if (!std::exchange(m_followPending, false))
        return;
    const Selection& selection = m_view.editor().primarySelection();
    const bool isSameText = isOpen() && m_followed == m_edits;
    const QRect line = lineOnScreen();
    const bool isGone = !selection.isCaret() || selection.head <= m_start || line.isEmpty();
    if (isGone || (isSameText && (selection.head != m_caret || line != m_line))) {
        close();
        return;
    }
    if (isSameText)
        return;
    const TextRange partialWord = TextRange::between(m_start, selection.head);
    const QStringList words = m_completion.completionsForPartialWordRange(partialWord);
    m_caret = selection.head;
    if (words.isEmpty() || (words.size() == 1 && words.front() == typed())) {
        close();
        return;
    }
    const qsizetype kept = m_chosen ? words.indexOf(m_popup->currentWord()) : -1;
    m_chosen = kept >= 0;
    m_followed = m_edits;
    m_line = line;
    m_popup->setWords(words, partialWord.length, int(std::max<qsizetype>(kept, 0)));
    if (!isOpen()) {
        m_view.installEventFilter(this);
        m_view.window()->installEventFilter(this);
    }
    m_popup->showAt(line);
}

QString TextCompletion::typed() const
{
    return m_view.editor().string().string(TextRange::between(m_start, m_caret));
}

/// From where the word begins, or the left edge of the view, to the caret's place; of two rows the
/// height of both.
QRect TextCompletion::lineOnScreen() const
{
    const QRect caret = m_view.caretRect();
    if (caret.isEmpty())
        return {};
    const QRect start = m_view.caretRectAt(m_start);
    const QRect both = start.isEmpty() ? caret : start.united(caret);
    return {m_view.viewport()->mapToGlobal(both.topLeft()), both.size()};
}

// Keys

bool TextCompletion::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // It is for the list rather than for a command of the window.
        if (object == &m_view && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            event->accept();
            return true;
        }
        break;
    case QEvent::KeyPress:
        if (object == &m_view && press(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
        break;
    case QEvent::InputMethod:
        if (object == &m_view && !static_cast<QInputMethodEvent*>(event)->preeditString().isEmpty())
            close();
        break;
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowDeactivate:
        close();
        break;
    default:
        break;
    }
    return false;
}

bool TextCompletion::press(const QKeyEvent& event)
{
    follow(); // the key before this one may have come just now
    if (!isOpen() || (event.modifiers() & ~Qt::KeypadModifier) != 0)
        return false;
    const auto move = [&](int rows, bool around) {
        m_popup->moveBy(rows, around);
        m_chosen = true;
        return true;
    };
    switch (event.key()) {
    case Qt::Key_Up:
        return move(-1, true);
    case Qt::Key_Down:
        return move(1, true);
    case Qt::Key_PageUp:
        return move(-(CompletionPopup::mostRows - 1), false);
    case Qt::Key_PageDown:
        return move(CompletionPopup::mostRows - 1, false);
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // A word that is there already leaves nothing to accept: a new line is wanted.
        if (m_popup->currentWord() == typed()) {
            close();
            return false;
        }
        [[fallthrough]];
    case Qt::Key_Tab:
        accept();
        return true;
    case Qt::Key_Escape:
        close();
        return true;
    default:
        return false;
    }
}

} // namespace quillory
