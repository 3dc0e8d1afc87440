#pragma once

#include "text/TextRange.h"

#include <QStringList>

namespace quillory {

class QPTextView;
class UserDefaults;

/// What may come of the word that is being typed, and putting it there.
class Completion
{
public:
    /// All of the arguments outlive this; \a autocompletionArray holds the words of the language,
    /// in the order in which they are offered.
    Completion(QPTextView& textView, const UserDefaults& defaults,
               const QStringList& autocompletionArray);

    QPTextView& textView() const { return m_textView; }

    /// The partial word before the primary caret; empty where something is selected, nothing is
    /// being typed or nothing may be edited.
    TextRange rangeForUserCompletion() const;

    /// What the text of \a partialWord may become: the words of the language that begin with it in
    /// any case. A language without words offers, while completions are to be shown, the names in
    /// the text (see WordProposals.h). Nothing for an empty range.
    QStringList completionsForPartialWordRange(TextRange partialWord) const;

    /// Puts \a word in the place of the text of \a partialWord, before the primary caret, and of
    /// the same text before any other caret, as one undo step.
    void insertCompletion(const QString& word, TextRange partialWord);

private:
    QPTextView& m_textView;
    const UserDefaults& m_defaults;
    const QStringList& m_autocompletionArray;
};

} // namespace quillory
