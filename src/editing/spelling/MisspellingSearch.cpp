#include "editing/spelling/MisspellingSearch.h"

#include "editing/spelling/SpellingWords.h"

namespace quillory {

namespace {

/// A few milliseconds' work, in UTF-16 code units.
constexpr TextOffset pieceLength = TextOffset(16) * 1024;

std::optional<TextRange> firstMisspelt(SpellingLexicon& lexicon, const TextSnapshot& text,
                                       TextRange piece, const SpellingScope& scope)
{
    for (const SpellingWord& word : spellingWords(text, piece, scope)) {
        if (word.range.location >= piece.location && lexicon.isMisspelt(word.word))
            return word.range;
    }
    return {};
}

} // namespace

MisspellingSearch::MisspellingSearch(SpellChecker& checker, QObject* parent)
    : QObject(parent), m_checker(checker)
{
    connect(&checker, &SpellChecker::languagesFound, this, [this] {
        if (m_search)
            goOn();
    });
}

void MisspellingSearch::start(const TextSnapshot& text, TextOffset from, const SpellingScope& scope)
{
    ++m_number;
    m_search = {text, scope, from, from};
    if (m_checker.knowsLanguages())
        goOn();
    else
        m_checker.findLanguages();
}

void MisspellingSearch::goOn()
{
    Search& search = *m_search;
    if (m_checker.language().isEmpty()) {
        finish({});
        return;
    }
    if (!search.wrapped && search.at >= search.text.length()) {
        search.wrapped = true;
        search.at = 0;
    }
    const TextOffset limit = search.wrapped ? search.from : search.text.length();
    if (search.at >= limit) {
        finish({});
        return;
    }
    const TextRange piece = TextRange::between(search.at, std::min(limit, search.at + pieceLength));
    search.at = piece.end();
    m_checker.ask(
        this,
        [text = search.text, scope = search.scope, piece](SpellingLexicon& lexicon) {
            return firstMisspelt(lexicon, text, piece, scope);
        },
        [this, number = m_number](std::optional<TextRange> word) {
            if (!m_search || number != m_number)
                return;
            if (word)
                finish(word);
            else
                goOn();
        });
}

void MisspellingSearch::finish(std::optional<TextRange> word)
{
    m_search.reset();
    Q_EMIT finished(word);
}

} // namespace quillory
