#include "editing/Completion.h"

#include "editing/PartialWord.h"
#include "editing/QPTextView.h"
#include "editing/WordProposals.h"
#include "foundation/UserDefaults.h"

#include <QCoreApplication>
#include <algorithm>

namespace quillory {

Completion::Completion(QPTextView& textView, const UserDefaults& defaults,
                       const QStringList& autocompletionArray)
    : m_textView(textView), m_defaults(defaults), m_autocompletionArray(autocompletionArray)
{}

TextRange Completion::rangeForUserCompletion() const
{
    const Selection& selection = m_textView.primarySelection();
    if (!selection.isCaret() || !m_textView.isEditable())
        return {selection.head, 0};
    return partialWordBefore(m_textView.string(), selection.head, m_autocompletionArray);
}

QStringList Completion::completionsForPartialWordRange(TextRange partialWord) const
{
    const TextSnapshot& text = m_textView.string();
    if (partialWord.isEmpty() || partialWord.end() > text.length())
        return {};
    if (m_autocompletionArray.isEmpty())
        return m_defaults.value(keys::showCompletions) ? wordProposals(text, partialWord)
                                                       : QStringList();
    const QString typed = text.string(partialWord);
    QStringList words;
    std::copy_if(m_autocompletionArray.begin(), m_autocompletionArray.end(),
                 std::back_inserter(words),
                 [&](const QString& word) { return word.startsWith(typed, Qt::CaseInsensitive); });
    return words;
}

void Completion::insertCompletion(const QString& word, TextRange partialWord)
{
    const TextSnapshot text = m_textView.string();
    const QString typed = text.string(partialWord);
    const TextSnapshot replacement(word);
    std::vector<TextEdit> edits;
    std::vector<Selection> selections = m_textView.selections();
    const size_t primary = size_t(&m_textView.primarySelection() - m_textView.selections().data());
    TextOffset shift = 0;
    TextOffset done = 0;
    for (Selection& selection : selections) {
        const TextRange before{selection.head - typed.size(), typed.size()};
        if (selection.isCaret() && before.location >= done && text.string(before) == typed) {
            edits.push_back({before, replacement});
            done = before.end();
            shift += replacement.length() - before.length;
        }
        selection = {selection.anchor + shift, selection.head + shift};
    }
    m_textView.replaceCharacters(edits, std::move(selections), primary,
                                 QCoreApplication::translate("Completion", "Completion"));
}

} // namespace quillory
