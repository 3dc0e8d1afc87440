#include "text/Overlay.h"

#include "text/Selection.h"

namespace quillory {

namespace {

/// The runs' foregrounds alone, as few runs as they need.
std::vector<OverlayRun> foregroundsOf(std::span<const OverlayRun> runs)
{
    std::vector<OverlayRun> result;
    for (const OverlayRun& run : runs) {
        if (!run.attributes.foreground || run.range.isEmpty())
            continue;
        const OverlayAttributes foreground{run.attributes.foreground, std::nullopt};
        if (!result.empty() && result.back().range.end() == run.range.location &&
            result.back().attributes == foreground)
            result.back().range.length += run.range.length;
        else
            result.push_back({run.range, foreground});
    }
    return result;
}

/// From where the runs differ to where they no longer do; empty where they are the same.
TextRange difference(std::span<const OverlayRun> a, std::span<const OverlayRun> b)
{
    while (!a.empty() && !b.empty() && a.front() == b.front()) {
        a = a.subspan(1);
        b = b.subspan(1);
    }
    while (!a.empty() && !b.empty() && a.back() == b.back()) {
        a = a.first(a.size() - 1);
        b = b.first(b.size() - 1);
    }
    if (a.empty() || b.empty()) {
        const auto& left = a.empty() ? b : a;
        return left.empty()
                   ? TextRange()
                   : TextRange::between(left.front().range.location, left.back().range.end());
    }
    return TextRange::between(std::min(a.front().range.location, b.front().range.location),
                              std::max(a.back().range.end(), b.back().range.end()));
}

} // namespace

void Overlay::setForegrounds(TextRange range, std::span<const OverlayRun> runs)
{
    const TextRange within = range.clampedTo(m_textLength);
    const std::vector<OverlayRun> wanted = foregroundsOf(runs);
    const TextRange different = difference(foregroundsOf(this->runs(within)), wanted);
    if (different.isEmpty())
        return;
    const auto give = [this](TextRange stretch, const std::optional<Colour>& foreground) {
        rewriteQuietly(stretch, [&](OverlayAttributes attributes) {
            attributes.foreground = foreground;
            return attributes;
        });
    };
    TextOffset done = different.location;
    for (const OverlayRun& run : wanted) {
        const TextRange part = run.range.intersection(different);
        if (part.isEmpty())
            continue;
        give(TextRange::between(done, part.location), std::nullopt);
        give(part, run.attributes.foreground);
        done = part.end();
    }
    give(TextRange::between(done, different.end()), std::nullopt);
    Q_EMIT changed(different);
}

void Overlay::setAttributes(TextRange range, const OverlayAttributes& attributes)
{
    rewrite(range, [&](OverlayAttributes) { return attributes; });
}

void Overlay::setBackground(TextRange range, Colour colour)
{
    rewrite(range, [&](OverlayAttributes attributes) {
        attributes.background = colour;
        return attributes;
    });
}

void Overlay::removeForeground(TextRange range)
{
    rewrite(range, [](OverlayAttributes attributes) {
        attributes.foreground.reset();
        return attributes;
    });
}

void Overlay::removeBackground(TextRange range)
{
    rewrite(range, [](OverlayAttributes attributes) {
        attributes.background.reset();
        return attributes;
    });
}

void Overlay::setLineBands(const std::vector<LineBand>& bands)
{
    if (bands == m_lineBands)
        return;
    m_lineBands = bands;
    Q_EMIT lineBandChanged();
}

void Overlay::setLineBand(const std::optional<LineBand>& band)
{
    setLineBands(band ? std::vector{*band} : std::vector<LineBand>());
}

OverlayAttributes Overlay::attributesAt(TextOffset offset) const
{
    const std::vector<OverlayRun> found = runs({offset, 1});
    return found.empty() ? OverlayAttributes() : found.front().attributes;
}

std::vector<OverlayRun> Overlay::runs(TextRange range) const
{
    range = range.clampedTo(m_textLength);
    std::vector<OverlayRun> found;
    if (range.isEmpty())
        return found;
    moveGap(range.location);
    const auto add = [&](const OverlayRun& run) {
        const TextRange part = run.range.intersection(range);
        if (!part.isEmpty())
            found.push_back({part, run.attributes});
    };
    if (!m_before.empty())
        add(m_before.back());
    for (auto run = m_after.rbegin(); run != m_after.rend(); ++run) {
        const TextOffset start = m_textLength - run->range.location;
        if (start >= range.end())
            break;
        add({{start, run->range.length}, run->attributes});
    }
    return found;
}

void Overlay::textChanged(const TextChange& change)
{
    const TextRange replaced = change.replaced.clampedTo(m_textLength);
    moveGap(replaced.location);
    OverlayAttributes inside;
    // A run that begins before the change and reaches into it, or past it.
    if (!m_before.empty() && m_before.back().range.end() > replaced.location) {
        OverlayRun& run = m_before.back();
        const TextOffset end = run.range.end();
        run.range.length = replaced.location - run.range.location;
        if (end >= replaced.end() && (end > replaced.end() || !replaced.isEmpty()))
            inside = run.attributes;
        if (end > replaced.end())
            pushAfter({TextRange::between(replaced.end(), end), run.attributes});
    } else if (!replaced.isEmpty() && !m_after.empty() &&
               firstAfter().range.location == replaced.location &&
               firstAfter().range.end() >= replaced.end()) {
        inside = firstAfter().attributes;
    }
    while (!m_after.empty() && firstAfter().range.location < replaced.end()) {
        const OverlayRun run = popAfter();
        if (run.range.end() > replaced.end())
            pushAfter({TextRange::between(replaced.end(), run.range.end()), run.attributes});
    }
    m_textLength += change.insertedLength - replaced.length;
    appendBefore({{replaced.location, change.insertedLength}, inside});
    joinAtGap();
    for (LineBand& band : m_lineBands)
        band.range = mapped(band.range, change);
}

template<class Change>
void Overlay::rewrite(TextRange range, Change&& change)
{
    range = range.clampedTo(m_textLength);
    if (range.isEmpty())
        return;
    rewriteQuietly(range, change);
    Q_EMIT changed(range);
}

/// Gives every stretch of \a range the attributes that \a change makes of those it has.
template<class Change>
void Overlay::rewriteQuietly(TextRange range, Change&& change)
{
    if (range.isEmpty())
        return;
    moveGap(range.location);
    if (!m_before.empty() && m_before.back().range.end() > range.location) {
        OverlayRun& run = m_before.back();
        pushAfter({TextRange::between(range.location, run.range.end()), run.attributes});
        run.range.length = range.location - run.range.location;
    }
    TextOffset done = range.location;
    while (!m_after.empty() && firstAfter().range.location < range.end()) {
        const OverlayRun run = popAfter();
        const TextOffset end = std::min(run.range.end(), range.end());
        appendBefore({TextRange::between(done, run.range.location), change(OverlayAttributes())});
        appendBefore({TextRange::between(run.range.location, end), change(run.attributes)});
        if (run.range.end() > end)
            pushAfter({TextRange::between(end, run.range.end()), run.attributes});
        done = end;
    }
    appendBefore({TextRange::between(done, range.end()), change(OverlayAttributes())});
    joinAtGap();
}

/// Brings the runs that begin before \a offset into m_before, and the others into m_after.
void Overlay::moveGap(TextOffset offset) const
{
    while (!m_before.empty() && m_before.back().range.location >= offset) {
        OverlayRun run = m_before.back();
        m_before.pop_back();
        run.range.location = m_textLength - run.range.location;
        m_after.push_back(run);
    }
    while (!m_after.empty() && m_textLength - m_after.back().range.location < offset) {
        OverlayRun run = m_after.back();
        m_after.pop_back();
        run.range.location = m_textLength - run.range.location;
        m_before.push_back(run);
    }
}

/// Adds \a run behind the others before the gap, or grows the last of them by it.
void Overlay::appendBefore(const OverlayRun& run)
{
    if (run.range.isEmpty() || run.attributes.isEmpty())
        return;
    if (!m_before.empty() && m_before.back().range.end() == run.range.location &&
        m_before.back().attributes == run.attributes)
        m_before.back().range.length += run.range.length;
    else
        m_before.push_back(run);
}

void Overlay::pushAfter(const OverlayRun& run)
{
    m_after.push_back({{m_textLength - run.range.location, run.range.length}, run.attributes});
}

OverlayRun Overlay::firstAfter() const
{
    const OverlayRun& run = m_after.back();
    return {{m_textLength - run.range.location, run.range.length}, run.attributes};
}

OverlayRun Overlay::popAfter()
{
    const OverlayRun run = firstAfter();
    m_after.pop_back();
    return run;
}

/// Makes one run of the two that meet at the gap when they are alike.
void Overlay::joinAtGap()
{
    if (m_before.empty() || m_after.empty())
        return;
    const OverlayRun next = firstAfter();
    if (m_before.back().range.end() == next.range.location &&
        m_before.back().attributes == next.attributes) {
        m_before.back().range.length += next.range.length;
        m_after.pop_back();
    }
}

} // namespace quillory
