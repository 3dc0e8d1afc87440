#include "syntax/PageColouring.h"

#include "foundation/Background.h"
#include "syntax/OpenSpans.h"
#include "syntax/StringLiterals.h"

#include <algorithm>

namespace quillory {

namespace {

TextRange widened(TextRange range, TextOffset margin, TextRange within)
{
    return TextRange{range.location - margin, range.length + 2 * margin}.intersection(within);
}

/// As many whole lines at the end of \a visible as can be coloured at once: what is seen below a
/// very long line. Empty where that line is the last.
TextRange lastLines(const TextSnapshot& text, TextRange visible)
{
    constexpr int mostLines = 1000; // more are not seen at one time
    LineIndex line = text.lineAt(visible.end());
    const TextOffset end = text.line(line).end();
    TextOffset start = end;
    for (int i = 0; i < mostLines && line.value() >= 0; ++i, line = line - 1) {
        const TextOffset candidate = text.lineStart(line);
        if (candidate < visible.location || end - candidate > PageColouring::quickLength)
            break;
        start = candidate;
    }
    return TextRange::between(start, end);
}

Recolouring recolouredAlone(const TextSnapshot& text, TextRange stretch,
                            const ColouringState& state, const ColourRoles& roles)
{
    const TextSnapshot alone = text.slice(stretch);
    Recolouring colours = recoloured(alone, alone.range(), state, roles);
    colours.range.location += stretch.location;
    for (RoleRun& run : colours.runs)
        run.range.location += stretch.location;
    return colours;
}

} // namespace

PageColouring::PageColouring(const TextStorage& text, Overlay& overlay, const ColouringState& state,
                             const ColourRoles& roles)
    : m_text(text), m_overlay(overlay), m_state(state), m_roles(roles)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(pause);
    connect(&m_pause, &QTimer::timeout, this, [this] {
        m_edited = false;
        Q_EMIT pageReady();
    });
    connect(&text, &TextStorage::edited, this, [this](const TextChange& change) {
        m_coloured.reset();
        m_edited = true;
        if (change.insertedLength > quickLook)
            m_lookedAt = std::min(m_lookedAt, change.replaced.location);
    });
}

void PageColouring::removeAllColours()
{
    m_coloured.reset();
    m_overlay.removeForeground(m_text.snapshot().range());
}

void PageColouring::removeColoursFromRange(TextRange range)
{
    m_coloured.reset();
    m_overlay.removeForeground(range);
}

void PageColouring::setColour(ColourRole role, TextRange range)
{
    m_coloured.reset();
    m_overlay.setAttributes(range, m_roles.attributes(role));
}

void PageColouring::recolourRange(TextRange range)
{
    const TextSnapshot& text = m_text.snapshot();
    const Recolouring colours = recoloured(text, range.clampedTo(text.length()), m_state, m_roles);
    apply(colours, colours.range);
    m_lookedAt = std::max(m_lookedAt, range.location);
}

void PageColouring::recolourPage(TextRange visible)
{
    const TextSnapshot& text = m_text.snapshot();
    visible = visible.clampedTo(text.length());
    const TextOffset end = visible.end();
    if (visible.length > longestPage) {
        const TextRange below = lastLines(text, visible);
        if (!below.isEmpty() && isQuickToReach(below.location))
            recolourRange(below);
        visible.length = longestPage;
    }
    const TextRange lines = text.lineRangeForRange(visible);
    if (m_coloured == lines)
        return;
    m_coloured.reset();
    if (lines.length <= quickLength && isQuickToReach(lines.location)) {
        m_prepared = {};
        recolourRange(lines);
        m_coloured = lines;
    } else if (isReadyFor(visible)) {
        apply(m_prepared.colours, widened(visible, quickLength, m_prepared.colours.range));
    } else if (!m_busy && !isWaitingForPause()) {
        colourInBackground(lines, visible, end);
    }
}

/// True after an edit of a text that was coloured before, until the pause is over.
bool PageColouring::isWaitingForPause()
{
    const bool isFirst = m_prepared.generation != m_generation;
    if (isFirst || !m_edited)
        return false;
    m_pause.start();
    return true;
}

void PageColouring::reset()
{
    m_coloured.reset();
    m_lookedAt = 0;
    ++m_generation;
    m_prepared = {};
}

bool PageColouring::isReadyFor(TextRange visible) const
{
    return m_prepared.generation == m_generation && m_prepared.text.isSameTree(m_text.snapshot()) &&
           m_prepared.colours.range.intersection(visible) == visible;
}

void PageColouring::colourInBackground(TextRange lines, TextRange visible, TextOffset end)
{
    m_busy = true;
    const bool whole = lines.length <= wholeLength;
    const TextRange stretch = whole ? lines : widened(visible, stretchMargin, lines);
    const auto colour = [text = m_text.snapshot(), generation = m_generation, state = m_state,
                         roles = m_roles, stretch, whole, end] {
        // So that it is known from now on.
        (void)openSpansBefore(text, end, withOwnPatterns(state));
        return Prepared{text, generation, end,
                        whole ? recoloured(text, stretch, state, roles)
                              : recolouredAlone(text, stretch, state, roles)};
    };
    runInBackground(this, colour, [this](Prepared prepared) {
        m_busy = false;
        m_prepared = std::move(prepared);
        if (m_prepared.generation == m_generation)
            m_lookedAt = std::max(m_lookedAt, m_prepared.end);
        Q_EMIT pageReady();
    });
}

/// Puts what \a colours says of \a window into the overlay.
void PageColouring::apply(const Recolouring& colours, TextRange window)
{
    auto run =
        std::partition_point(colours.runs.begin(), colours.runs.end(),
                             [&](const RoleRun& r) { return r.range.end() <= window.location; });
    std::vector<OverlayRun> runs;
    for (; run != colours.runs.end() && run->range.location < window.end(); ++run)
        runs.push_back({run->range.intersection(window), m_roles.attributes(run->role)});
    m_overlay.setForegrounds(window, runs);
    if (m_overlay.runCount() > maximumRuns) {
        m_overlay.removeForeground({0, window.location});
        m_overlay.removeForeground(TextRange::between(window.end(), m_text.length()));
    }
    if (!colours.limitedKey.isEmpty())
        Q_EMIT limitReached(colours.limitedKey);
}

} // namespace quillory
