#include "editing/find/FindJob.h"

#include "editing/find/FindWalk.h"

#include <QElapsedTimer>

namespace quillory {

FindJob::FindJob(TextSnapshot text, std::shared_ptr<ICUPattern> pattern, TextOffset origin,
                 size_t most)
    : m_text(std::move(text)), m_pattern(std::move(pattern)),
      m_origin(std::min(origin, m_text.length())), m_most(most)
{}

void FindJob::run(const std::atomic_bool& cancelled, const Report& report)
{
    try {
        // A place at the text's end may be empty.
        if (findIn(TextRange::between(m_origin, m_text.length() + 1), cancelled, report))
            findIn({0, m_origin}, cancelled, report);
    } catch (const ICUException&) {
        report({.stretch = {}, .isLast = true, .isFailed = true});
    }
}

/// True where the search is to go on with what is before.
bool FindJob::findIn(TextRange part, const std::atomic_bool& cancelled, const Report& report)
{
    const bool isLast = part.location == 0 && part.end() == m_origin;
    FindWalk walk(m_text, std::make_shared<ICUPattern>(*m_pattern), part.location, &cancelled);
    FindBatch batch{.stretch = {part.location, 0}};
    QElapsedTimer clock;
    clock.start();
    while (!cancelled) {
        const std::optional<TextRange> match = walk.next();
        const bool isOver = !match || match->location >= part.end();
        if (!isOver)
            batch.found.push_back(*match);
        batch.isCutShort = !isOver && ++m_count > m_most;
        const bool isDone = isOver || batch.isCutShort;
        if (!isDone && !clock.hasExpired(batchTime))
            continue;
        const TextOffset end = isOver ? part.end() : std::min(part.end(), match->end());
        batch.stretch.length = std::max<TextOffset>(0, end - batch.stretch.location);
        batch.isLast = (isOver && isLast) || batch.isCutShort;
        const bool goesOn = isOver && !isLast;
        report(std::exchange(batch, FindBatch{.stretch = {end, 0}}));
        if (isDone)
            return goesOn;
        clock.restart();
    }
    return false;
}

} // namespace quillory
