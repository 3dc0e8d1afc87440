#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

namespace quillory {

/// What knows the words of languages. Used by one thread, and free to take its time.
class SpellingEngine
{
public:
    SpellingEngine() = default;
    SpellingEngine(const SpellingEngine&) = delete;
    SpellingEngine& operator=(const SpellingEngine&) = delete;
    virtual ~SpellingEngine() = default;

    /// The tags of the languages that there are dictionaries for, as in "en_GB", in order.
    virtual QStringList languages() = 0;
    /// Has the words that follow be those of \a tag; false when there is no such dictionary, and
    /// then none is in use.
    virtual bool setLanguage(const QString& tag) = 0;

    // The following need a language.

    virtual bool isCorrect(const QString& word) = 0;
    /// Words that may have been meant, the likeliest first.
    virtual QStringList suggestions(const QString& word) = 0;
    /// Puts \a word into the user's own word list of the language.
    virtual void learn(const QString& word) = 0;
};

using SpellingEngineSource = std::function<std::unique_ptr<SpellingEngine>()>;

} // namespace quillory
