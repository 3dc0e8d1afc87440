#pragma once

#include "editing/spelling/SpellingLexicon.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <memory>

namespace quillory {

/// Answers questions about spelling on a thread of its own, which begins with the first of them.
/// Questions are dealt with in their order; none is to take more than a few milliseconds, so that
/// the next need not wait.
class SpellChecker : public QObject
{
    Q_OBJECT

public:
    /// \a source is called on the other thread.
    explicit SpellChecker(SpellingEngineSource source, QObject* parent = nullptr);
    /// Waits for the question at hand; the others are dropped.
    ~SpellChecker() override;

    /// Calls \a work with a SpellingLexicon& on the other thread and then, on the application's,
    /// \a done with its result; \a done is dropped when \a context is gone by then.
    template<class Work, class Done>
    void ask(QObject* context, Work work, Done done);

    /// Has the words be those of the language nearest to \a tag, or, where that is empty, to the
    /// desktop's.
    void setWantedLanguage(const QString& tag);
    /// The one in use; empty until it is known, and where there is none.
    const QString& language() const { return m_language; }
    /// Finds out which languages there are, unless that was done.
    void findLanguages();
    bool knowsLanguages() const { return m_knowsLanguages; }
    const QStringList& languages() const { return m_languages; }

    /// Puts \a word into the user's own word list.
    void learn(const QString& word);
    /// Has \a word pass until the program ends.
    void ignore(const QString& word);

Q_SIGNALS:
    /// languages() and language() are known.
    void languagesFound();
    /// Words may have become right or wrong.
    void verdictsChanged();

private:
    struct Desk
    {
        SpellingEngineSource source;
        std::unique_ptr<SpellingLexicon> lexicon; ///< made by the first question
    };

    void start();
    static SpellingLexicon& lexiconOf(Desk& desk);
    void chooseLanguage();

    std::shared_ptr<Desk> m_desk; ///< used by the other thread alone
    QObject* m_receiver;          ///< lives there; events to it are the questions
    QThread m_thread;
    QString m_wanted;
    QString m_language;
    QStringList m_languages;
    bool m_asksForLanguages = false;
    bool m_knowsLanguages = false;
};

template<class Work, class Done>
void SpellChecker::ask(QObject* context, Work work, Done done)
{
    start();
    const auto answer = [desk = m_desk, guard = QPointer<QObject>(context), work = std::move(work),
                         done = std::move(done)]() mutable {
        auto result = std::make_shared<decltype(work(lexiconOf(*desk)))>(work(lexiconOf(*desk)));
        QMetaObject::invokeMethod(
            qApp,
            [guard, done = std::move(done), result]() mutable {
                if (guard)
                    done(std::move(*result));
            },
            Qt::QueuedConnection);
    };
    QMetaObject::invokeMethod(m_receiver, answer, Qt::QueuedConnection);
}

} // namespace quillory
