#include "editing/spelling/SpellingLexicon.h"

#include <unicode/uscript.h>

namespace quillory {

namespace {

constexpr char16_t softHyphen = 0xAD;
constexpr char16_t apostrophe = 0x2019;

/// As dictionaries spell it.
QString plain(QString word)
{
    return word.remove(QChar(softHyphen)).replace(QChar(apostrophe), u'\'');
}

} // namespace

SpellingLexicon::SpellingLexicon(std::unique_ptr<SpellingEngine> engine)
    : m_engine(std::move(engine))
{}

void SpellingLexicon::setLanguage(const QString& tag)
{
    m_hasLanguage = m_engine->setLanguage(tag);
    m_verdicts.clear();
    constexpr int32_t most = 8;
    UScriptCode scripts[most];
    UErrorCode status = U_ZERO_ERROR;
    const int32_t count = uscript_getCode(tag.toUtf8().constData(), scripts, most, &status);
    m_scripts.clear();
    if (U_SUCCESS(status))
        m_scripts = QList<int>(scripts, scripts + count);
}

bool SpellingLexicon::isOfScript(const QString& word) const
{
    const QList<uint> letters = word.toUcs4();
    return m_scripts.isEmpty() || std::all_of(letters.begin(), letters.end(), [this](uint letter) {
               UErrorCode status = U_ZERO_ERROR;
               const UScriptCode script = uscript_getScript(UChar32(letter), &status);
               return script == USCRIPT_COMMON || script == USCRIPT_INHERITED ||
                      m_scripts.contains(int(script));
           });
}

bool SpellingLexicon::isMisspelt(const QString& word)
{
    if (!m_hasLanguage)
        return false;
    auto verdict = m_verdicts.constFind(word);
    if (verdict == m_verdicts.constEnd()) {
        if (m_verdicts.size() >= rememberedWords)
            m_verdicts.clear();
        verdict = m_verdicts.insert(word, isOfScript(word) && !m_engine->isCorrect(plain(word)));
    }
    return *verdict && !m_ignored.contains(word) &&
           !m_ignored.contains(word.left(1).toLower() + word.mid(1));
}

QStringList SpellingLexicon::suggestions(const QString& word)
{
    QStringList words = m_engine->suggestions(plain(word)).mid(0, mostSuggestions);
    if (word.contains(QChar(apostrophe)))
        words.replaceInStrings(QStringLiteral("'"), QString(QChar(apostrophe)));
    return words;
}

void SpellingLexicon::learn(const QString& word)
{
    m_engine->learn(plain(word));
    m_verdicts.clear();
}

} // namespace quillory
