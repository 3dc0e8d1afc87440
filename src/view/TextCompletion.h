#pragma once

#include "text/TextRange.h"

#include <QObject>
#include <QRect>

class QKeyEvent;

namespace quillory {

class Completion;
class CompletionPopup;
class TextViewWidget;

/// Offers completions at the caret of a text view: opens the list, has it follow what is typed, and
/// gives it the keys that are for it.
///
/// While the list is open, the arrows and Page Up and Down move in it, Return and Tab accept, and
/// Escape closes it; all other keys go to the text, which keeps the keyboard. The list closes when
/// the caret leaves the word, nothing begins with it any more, or the text is scrolled or its
/// window moved.
class TextCompletion : public QObject
{
    Q_OBJECT

public:
    /// Both arguments outlive this, but for \a view where it is the parent.
    TextCompletion(TextViewWidget& view, Completion& completion);

    /// Opens the list because typing paused. Not for signs alone, and not where the text is as
    /// accepting, undoing or redoing left it.
    void offer();
    /// Opens the list because it was asked for; the bell rings where there is nothing to offer.
    void complete();

    bool isOpen() const;
    const CompletionPopup* popup() const { return m_popup; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    bool open(TextRange partialWord);
    void close();
    void accept();
    bool press(const QKeyEvent& event);
    void followSoon();
    void follow();
    QRect lineOnScreen() const;
    QString typed() const;

    TextViewWidget& m_view;
    Completion& m_completion;
    CompletionPopup* m_popup = nullptr; ///< made when it is first needed
    TextOffset m_start = 0;             ///< of the partial word, while the list is open
    TextOffset m_caret = 0;             ///< where it was when the list was brought up to date
    qint64 m_edits = 0;                 ///< that the text has seen
    qint64 m_followed = 0;              ///< how many there were then
    QRect m_line;                       ///< of the partial word's row, on the screen
    bool m_chosen = false;              ///< the current word was gone to
    bool m_followPending = false;
    qint64 m_settled = -1; ///< how many accepting, undoing or redoing left
};

} // namespace quillory
