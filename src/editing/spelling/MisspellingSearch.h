#pragma once

#include "editing/spelling/SpellChecker.h"
#include "editing/spelling/SpellingScope.h"

#include <optional>

namespace quillory {

/// Looks through a whole text for the next misspelt word, piece by piece on the checker's thread.
class MisspellingSearch : public QObject
{
    Q_OBJECT

public:
    /// \a checker outlives this.
    explicit MisspellingSearch(SpellChecker& checker, QObject* parent = nullptr);

    /// Looks for the first word that begins at \a from or after it, or else from the text's start
    /// on. Takes the place of a search that goes on. Where there is no language, it comes to
    /// nothing.
    void start(const TextSnapshot& text, TextOffset from, const SpellingScope& scope);
    void cancel() { m_search.reset(); }
    bool isSearching() const { return m_search.has_value(); }

Q_SIGNALS:
    /// Comes once for each search that was not cancelled.
    void finished(std::optional<quillory::TextRange> word);

private:
    struct Search
    {
        TextSnapshot text;
        SpellingScope scope;
        TextOffset from = 0;
        TextOffset at = 0;    ///< what comes next
        bool wrapped = false; ///< the text's end is behind
    };

    void goOn();
    void finish(std::optional<TextRange> word);

    SpellChecker& m_checker;
    std::optional<Search> m_search;
    int m_number = 0; ///< of the search, to know its answers
};

} // namespace quillory
