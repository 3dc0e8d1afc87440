#include "editing/spelling/SpellChecker.h"

#include "editing/spelling/SpellingLanguage.h"

#include <QLocale>

namespace quillory {

SpellChecker::SpellChecker(SpellingEngineSource source, QObject* parent)
    : QObject(parent), m_desk(std::make_shared<Desk>()), m_receiver(new QObject)
{
    m_desk->source = std::move(source);
    m_receiver->moveToThread(&m_thread);
}

SpellChecker::~SpellChecker()
{
    m_thread.quit();
    m_thread.wait();
    delete m_receiver;
}

void SpellChecker::start()
{
    if (!m_thread.isRunning())
        m_thread.start(QThread::LowPriority);
}

SpellingLexicon& SpellChecker::lexiconOf(Desk& desk)
{
    if (!desk.lexicon)
        desk.lexicon = std::make_unique<SpellingLexicon>(desk.source());
    return *desk.lexicon;
}

void SpellChecker::setWantedLanguage(const QString& tag)
{
    m_wanted = tag;
    if (m_knowsLanguages)
        chooseLanguage();
}

void SpellChecker::findLanguages()
{
    if (std::exchange(m_asksForLanguages, true))
        return;
    ask(
        this, [](SpellingLexicon& lexicon) { return lexicon.languages(); },
        [this](QStringList languages) {
            m_languages = std::move(languages);
            m_knowsLanguages = true;
            chooseLanguage();
            Q_EMIT languagesFound();
        });
}

void SpellChecker::chooseLanguage()
{
    const QString wanted = m_wanted.isEmpty() ? QLocale::system().name() : m_wanted;
    const QString language = nearestLanguage(m_languages, wanted);
    if (language == m_language)
        return;
    m_language = language;
    ask(
        this,
        [language](SpellingLexicon& lexicon) {
            lexicon.setLanguage(language);
            return true;
        },
        [this](bool) { Q_EMIT verdictsChanged(); });
}

void SpellChecker::learn(const QString& word)
{
    ask(
        this,
        [word](SpellingLexicon& lexicon) {
            lexicon.learn(word);
            return true;
        },
        [this](bool) { Q_EMIT verdictsChanged(); });
}

void SpellChecker::ignore(const QString& word)
{
    ask(
        this,
        [word](SpellingLexicon& lexicon) {
            lexicon.ignore(word);
            return true;
        },
        [this](bool) { Q_EMIT verdictsChanged(); });
}

} // namespace quillory
