#pragma once

#include "editing/spelling/SpellingEngine.h"

#include <QHash>
#include <QSet>

namespace quillory {

/// Says of words whether they are misspelt: by an engine, by what the user had it ignore, and by
/// what it remembers of words asked for before. Used by one thread.
class SpellingLexicon
{
public:
    /// So many words are remembered before all are forgotten again.
    static constexpr qsizetype rememberedWords = 1 << 15;
    static constexpr qsizetype mostSuggestions = 7;

    explicit SpellingLexicon(std::unique_ptr<SpellingEngine> engine);

    QStringList languages() { return m_engine->languages(); }
    /// Nothing is misspelt while there is no language.
    void setLanguage(const QString& tag);

    /// Never so for a word whose letters the language does not use.
    bool isMisspelt(const QString& word);
    /// At most `mostSuggestions` words, with the apostrophes of \a word.
    QStringList suggestions(const QString& word);
    void learn(const QString& word);
    /// Has \a word pass in every language, also where it begins with a capital.
    void ignore(const QString& word) { m_ignored.insert(word); }

private:
    bool isOfScript(const QString& word) const;

    std::unique_ptr<SpellingEngine> m_engine;
    bool m_hasLanguage = false;
    QList<int> m_scripts;            ///< of the language, as ICU numbers them; empty for any
    QHash<QString, bool> m_verdicts; ///< of the engine: whether a word is misspelt
    QSet<QString> m_ignored;
};

} // namespace quillory
