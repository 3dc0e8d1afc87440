#pragma once

#include "editing/spelling/SpellingEngine.h"

#include <atomic>

namespace quillory::test {

/// Dictionaries whose words are written down here: "aa" (Latin) knows hello, world and what was
/// learnt; "ru" nothing. It counts what it is asked.
class WordList : public SpellingEngine
{
public:
    struct Log
    {
        std::atomic_int made = 0;
        std::atomic_int asked = 0;
        QStringList languages{QStringLiteral("aa"), QStringLiteral("ru")};
    };

    explicit WordList(Log& log) : m_log(log) { ++log.made; }

    static SpellingEngineSource source(Log& log)
    {
        return [&log] { return std::make_unique<WordList>(log); };
    }

    QStringList languages() override { return m_log.languages; }
    bool setLanguage(const QString& tag) override
    {
        m_language = tag;
        return m_log.languages.contains(tag);
    }
    bool isCorrect(const QString& word) override
    {
        ++m_log.asked;
        return m_language == u"aa" && m_words.contains(word.toLower());
    }
    QStringList suggestions(const QString& word) override
    {
        QStringList all;
        for (int i = 0; i < 20; ++i)
            all += word + u'\'' + QString::number(i);
        return all;
    }
    void learn(const QString& word) override { m_words += word; }

private:
    Log& m_log;
    QString m_language;
    QStringList m_words{QStringLiteral("hello"), QStringLiteral("world")};
};

} // namespace quillory::test
