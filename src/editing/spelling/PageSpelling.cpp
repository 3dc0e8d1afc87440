#include "editing/spelling/PageSpelling.h"

#include "editing/QPTextView.h"
#include "editing/spelling/SpellingWords.h"

#include <algorithm>

namespace quillory {

namespace {

/// True for what may stand next to a word without being part of it.
bool separates(const TextSnapshot& text, TextOffset offset)
{
    if (offset < 0 || offset >= text.length())
        return true;
    const QChar unit(text.at(offset));
    return !unit.isLetterOrNumber() && !unit.isMark() && !unit.isSurrogate() && unit != u'_' &&
           unit != u'\'' && unit != u'’';
}

/// As many of \a stretches as have no more than so many units.
std::vector<TextRange> firstOf(std::vector<TextRange> stretches, TextOffset units)
{
    for (auto stretch = stretches.begin(); stretch != stretches.end(); ++stretch) {
        if (stretch->length > units) {
            stretch->length = units;
            stretches.erase(stretch + 1, stretches.end());
            break;
        }
        units -= stretch->length;
    }
    return stretches;
}

std::vector<TextRange> misspeltIn(SpellingLexicon& lexicon, const TextSnapshot& text,
                                  const std::vector<TextRange>& stretches,
                                  const SpellingScope& scope)
{
    std::vector<TextRange> result;
    for (const TextRange stretch : stretches) {
        for (const SpellingWord& word : spellingWords(text, stretch, scope)) {
            // A word may reach from one stretch into the next.
            const bool isNew = result.empty() || result.back().end() <= word.range.location;
            if (isNew && lexicon.isMisspelt(word.word))
                result.push_back(word.range);
        }
    }
    return result;
}

} // namespace

PageSpelling::PageSpelling(QPTextView& editor, SpellChecker& checker, Page page, QObject* parent)
    : QObject(parent), m_editor(editor), m_checker(checker), m_page(std::move(page))
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &PageSpelling::check);
    connect(&editor.textStorage(), &TextStorage::edited, this, &PageSpelling::followEdit);
    connect(&editor, &QPTextView::selectionDidChange, this, &PageSpelling::release);
    // What comes back is not being typed.
    connect(&editor.undoManager(), &UndoManager::stepTaken, this, [this] { m_typed.reset(); });
    connect(&checker, &SpellChecker::verdictsChanged, this, [this] { schedule(0); });
}

void PageSpelling::setEnabled(bool enabled)
{
    if (enabled == m_enabled)
        return;
    m_enabled = enabled;
    if (enabled) {
        m_checker.findLanguages();
        schedule(0);
        return;
    }
    m_pause.stop();
    m_misspelt.clear();
    m_held.clear();
    m_typed.reset();
    Q_EMIT changed(m_editor.string().range());
}

std::optional<TextRange> PageSpelling::misspeltAt(TextRange range) const
{
    for (const MarkedRanges* words : {&m_misspelt, &m_held}) {
        for (const TextRange word : words->touching(range)) {
            if (word.location <= range.location && range.end() <= word.end())
                return word;
        }
    }
    return {};
}

void PageSpelling::schedule(int pause)
{
    if (m_enabled)
        m_pause.start(pause);
}

void PageSpelling::check()
{
    if (m_checker.language().isEmpty())
        return; // what is right will change when there is one
    if (m_checking) {
        m_outdated = true;
        return;
    }
    const TextSnapshot& text = m_editor.string();
    const std::vector<TextRange> stretches = firstOf(m_page.stretches(), longestPage);
    if (stretches.empty())
        return;
    m_checking = true;
    m_checker.ask(
        this,
        [text, stretches, scope = m_page.scope()](SpellingLexicon& lexicon) {
            return misspeltIn(lexicon, text, stretches, scope);
        },
        [this, text, stretches](const std::vector<TextRange>& found) {
            m_checking = false;
            if (m_enabled && text.isSameTree(m_editor.string()))
                take(stretches, found);
            if (std::exchange(m_outdated, false) && !m_pause.isActive())
                schedule(0);
        });
}

void PageSpelling::take(const std::vector<TextRange>& checked, const std::vector<TextRange>& found)
{
    std::vector<TextRange> told;
    std::vector<TextRange> held;
    for (const TextRange word : found)
        (isBeingTyped(word) && !isTold(word) ? held : told).push_back(word);
    m_held.clear();
    m_held.replace(m_editor.string().range(), held);

    auto next = told.begin();
    for (const TextRange stretch : checked) {
        const auto end = std::find_if(
            next, told.end(), [&](TextRange word) { return word.location >= stretch.end(); });
        const TextRange differing = m_misspelt.replace(stretch, {next, end});
        next = end;
        if (!differing.isEmpty())
            Q_EMIT changed(differing);
    }
    m_misspelt.trim(TextRange::between(checked.front().location, checked.back().end()),
                    rememberedRanges);
}

bool PageSpelling::isTold(TextRange word) const
{
    const auto known = m_misspelt.touching(word);
    return std::find(known.begin(), known.end(), word) != known.end();
}

bool PageSpelling::isAtCaret(TextRange word) const
{
    const auto& selections = m_editor.selections();
    const auto selection =
        std::partition_point(selections.begin(), selections.end(),
                             [&](const Selection& s) { return s.range().end() < word.location; });
    return selection != selections.end() && selection->isCaret() && selection->head <= word.end();
}

bool PageSpelling::isBeingTyped(TextRange word) const
{
    return m_typed && m_typed->location <= word.end() && m_typed->end() >= word.location &&
           isAtCaret(word);
}

/// Tells of the words that the carets have left.
void PageSpelling::release()
{
    const std::vector<TextRange> held = m_held.all();
    std::vector<TextRange> kept;
    for (const TextRange word : held) {
        if (isAtCaret(word)) {
            kept.push_back(word);
        } else {
            m_misspelt.replace(word, {&word, 1});
            Q_EMIT changed(word);
        }
    }
    m_held.clear();
    m_held.replace(m_editor.string().range(), kept);
}

void PageSpelling::followEdit(const TextChange& change)
{
    if (!m_enabled)
        return;
    const TextSnapshot& text = m_editor.string();
    const TextOffset start = change.replaced.location;
    const bool joinsBefore = !separates(text, start);
    const bool joinsAfter = !separates(text, change.inserted().end() - 1);
    m_misspelt.followEdit(change, joinsBefore, joinsAfter);
    m_held.followEdit(change, joinsBefore, joinsAfter);

    // Typing goes on where it was, and many carets type at the same time.
    const bool goesOn =
        m_typed &&
        (m_sameEdit || (start <= m_typed->end() && change.replaced.end() >= m_typed->location));
    const TextRange inserted = change.inserted();
    m_typed = goesOn ? TextRange::between(std::min(m_typed->location, start),
                                          std::max(m_typed->end() + change.delta(), inserted.end()))
                     : inserted;
    if (!std::exchange(m_sameEdit, true))
        QMetaObject::invokeMethod(
            this, [this] { m_sameEdit = false; }, Qt::QueuedConnection);
    schedule(typingPause);
}

} // namespace quillory
