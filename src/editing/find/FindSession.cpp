#include "editing/find/FindSession.h"

#include "editing/QPTextView.h"
#include "editing/find/FindTemplate.h"
#include "foundation/Background.h"

#include <QScopedValueRollback>

namespace quillory {

namespace {

constexpr int pause = 150;        ///< milliseconds after an edit
constexpr size_t fewEdits = 1000; ///< places that are replaced each by an edit of its own
/// Places that are moved along with each edit, of which there may be as many; more are looked for
/// anew.
constexpr size_t mostFollowed = 2000;

/// All replacements in one, where there are many.
std::vector<TextEdit> joined(const TextSnapshot& text, std::vector<TextEdit> edits)
{
    if (edits.size() <= fewEdits)
        return edits;
    const TextRange whole =
        TextRange::between(edits.front().range.location, edits.back().range.end());
    for (TextEdit& edit : edits)
        edit.range.location -= whole.location;
    return {{whole, text.slice(whole).replacing(edits)}};
}

} // namespace

FindSession::FindSession(QPTextView& editor, QObject* parent)
    : QObject(parent), m_editor(editor), m_home(editor.selectedRange().location)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(pause);
    connect(&m_pause, &QTimer::timeout, this, &FindSession::start);
    connect(&editor.textStorage(), &TextStorage::edited, this, &FindSession::followEdit);
    connect(&editor, &QPTextView::selectionDidChange, this, [this] {
        if (m_selects)
            return;
        m_wish.reset();
        m_home = m_editor.selectedRange().location;
        if (m_pattern)
            Q_EMIT changed();
    });
}

FindSession::~FindSession()
{
    cancel();
    *m_endsReplacing = true;
}

void FindSession::cancel()
{
    m_pause.stop();
    if (const auto givesUp = std::exchange(m_givesUp, nullptr))
        *givesUp = true;
}

void FindSession::forget()
{
    const MarkedRanges before = std::exchange(m_matches, {});
    if (!before.isEmpty())
        Q_EMIT marksChanged(
            TextRange::between(before.all().front().location, before.all().back().end())
                .clampedTo(m_editor.string().length()));
}

void FindSession::clear()
{
    cancel();
    m_query = {};
    m_pattern.reset();
    m_wish.reset();
    m_error.clear();
    forget();
    Q_EMIT changed();
}

void FindSession::setQuery(const FindQuery& query)
{
    if (query == m_query)
        return;
    cancel();
    forget();
    m_query = query;
    m_error.clear();
    m_pattern.reset();
    m_wish.reset();
    m_wantsAll = false;
    if (!query.text.isEmpty()) {
        try {
            m_pattern = query.pattern();
        } catch (const ICUException&) {
            m_error = tr("This is no regular expression.");
        }
    }
    if (m_pattern) {
        m_wish = {m_home, Direction::Forward};
        start();
    }
    Q_EMIT changed();
}

/// From the selection on, and then what is before it.
void FindSession::start()
{
    cancel();
    if (!m_pattern)
        return;
    m_isCutShort = false;
    m_error.clear();
    m_givesUp = std::make_shared<std::atomic_bool>(false);
    m_origin = m_wish ? m_wish->from : m_editor.selectedRange().location;
    const auto post = [guard = QPointer(this), search = m_givesUp](FindBatch batch) {
        QMetaObject::invokeMethod(
            qApp,
            [guard, search, batch = std::move(batch)] {
                if (guard && guard->m_givesUp == search)
                    guard->take(batch);
            },
            Qt::QueuedConnection);
    };
    FindJob job(m_editor.string(), m_pattern, m_origin, mostMatches);
    backgroundPool().start(
        [job = std::move(job), givesUp = m_givesUp, post]() mutable { job.run(*givesUp, post); });
    Q_EMIT changed();
}

void FindSession::take(const FindBatch& batch)
{
    if (batch.isLast) {
        m_givesUp.reset();
        m_isCutShort = batch.isCutShort;
        if (batch.isFailed)
            m_error = tr("The expression takes too long.");
    }
    const TextRange different = m_matches.replace(batch.stretch, batch.found);
    if (!different.isEmpty())
        Q_EMIT marksChanged(different);
    serve();
    if (batch.isLast && m_wantsAll)
        selectAll();
    Q_EMIT changed();
}

void FindSession::followEdit(const TextChange& change)
{
    if (!m_pattern)
        return;
    if (m_matches.all().size() > mostFollowed)
        forget();
    else
        m_matches.followEdit(change, true, true);
    m_wish.reset();
    m_wantsAll = false;
    cancel();
    m_pause.start();
}

// Going to what was found

std::optional<size_t> FindSession::current() const
{
    const TextRange selection = m_editor.selectedRange();
    const std::vector<TextRange>& all = m_matches.all();
    const auto at = std::partition_point(all.begin(), all.end(), [&](TextRange match) {
        return match.location < selection.location;
    });
    if (at == all.end() || *at != selection)
        return {};
    return size_t(at - all.begin());
}

/// None as well where another one may be found that is nearer.
std::optional<TextRange> FindSession::wantedMatch() const
{
    const std::vector<TextRange>& all = m_matches.all();
    const bool isComplete = !isSearching();
    if (m_wish->direction == Direction::Backward) {
        if (!isComplete || all.empty())
            return {};
        const auto after = std::partition_point(all.begin(), all.end(), [&](TextRange match) {
            return match.end() <= m_wish->from &&
                   (!match.isEmpty() || match.location < m_wish->from);
        });
        return after == all.begin() ? all.back() : *(after - 1);
    }
    const auto next = std::partition_point(
        all.begin(), all.end(), [&](TextRange match) { return match.location < m_wish->from; });
    if (next != all.end() && (isComplete || m_wish->from >= m_origin))
        return *next;
    if (!isComplete || all.empty())
        return {};
    return all.front();
}

void FindSession::serve()
{
    if (!m_wish)
        return;
    const std::optional<TextRange> match = wantedMatch();
    if (!match && isSearching())
        return;
    m_wish.reset();
    if (!match)
        return;
    const QScopedValueRollback selecting(m_selects, true);
    m_editor.setSelectedRange(*match);
    Q_EMIT selected(*match);
}

void FindSession::findNext(Direction direction)
{
    if (!m_pattern)
        return;
    const TextRange selection = m_editor.selectedRange();
    TextOffset from = direction == Direction::Forward ? selection.end() : selection.location;
    // Of an empty place, which ends where it begins, the next one is wanted.
    if (direction == Direction::Forward && selection.isEmpty() && current())
        ++from;
    m_wish = {from, direction};
    serve();
    m_home = m_editor.selectedRange().location;
    Q_EMIT changed();
}

void FindSession::selectAll()
{
    const std::vector<TextRange>& all = m_matches.all();
    m_wantsAll = isSearching();
    if (m_wantsAll || all.empty())
        return;
    m_editor.setSelectedRanges(all);
}

// Replacing

void FindSession::replace(const QString& text)
{
    if (!m_pattern || !m_editor.isEditable())
        return;
    if (current()) {
        const TextRange place = m_editor.selectedRange();
        // What lies far behind the place is not looked at: this is not done aside.
        const TextOffset near =
            std::min(m_editor.string().length(), place.end() + FindWalk::overlap);
        FindWalk walk(m_editor.string().slice({0, near}), std::make_shared<ICUPattern>(*m_pattern),
                      place.location);
        QString replacement;
        try {
            if (walk.next() != place)
                return;
            replacement = FindTemplate(text, m_query.isRegex).replacement(walk);
        } catch (const ICUException&) {
            return;
        }
        const TextEdit edit{place, TextSnapshot(replacement)};
        const TextOffset end = place.location + edit.replacement.length();
        const QScopedValueRollback selecting(m_selects, true);
        m_editor.replaceCharacters({&edit, 1}, {Selection::caret(end)}, 0, tr("Replace"));
    }
    findNext();
}

void FindSession::replaceAll(const QString& text)
{
    if (!m_pattern || !m_editor.isEditable())
        return;
    struct Made
    {
        std::vector<TextEdit> edits;
        qsizetype count = 0;
    };
    const TextSnapshot before = m_editor.string();
    runInBackground(
        this,
        [before, pattern = m_pattern, replacement = FindTemplate(text, m_query.isRegex),
         givesUp = m_endsReplacing] {
            Made made;
            FindWalk walk(before, std::make_shared<ICUPattern>(*pattern), 0, givesUp.get());
            try {
                while (const std::optional<TextRange> match = walk.next())
                    made.edits.push_back({*match, TextSnapshot(replacement.replacement(walk))});
            } catch (const ICUException&) {
                return Made{{}, -1};
            }
            made.count = qsizetype(made.edits.size());
            made.edits = joined(before, std::move(made.edits));
            return made;
        },
        [this, before](const Made& made) {
            if (!m_editor.string().isSameTree(before) || made.count < 0) {
                m_editor.beep();
                return;
            }
            if (made.count > 0) {
                std::vector<Selection> selections = m_editor.selections();
                for (auto edit = made.edits.rbegin(); edit != made.edits.rend(); ++edit) {
                    const TextChange change{edit->range, edit->replacement.length()};
                    for (Selection& selection : selections)
                        selection = Selection::caret(mapped(selection.range().location, change));
                }
                if (!m_editor.replaceCharacters(made.edits, selections, selections.size() - 1,
                                                tr("Replace All")))
                    return;
            }
            Q_EMIT replacedAll(made.count);
        });
}

} // namespace quillory
