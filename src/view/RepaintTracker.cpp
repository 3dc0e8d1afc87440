#include "view/RepaintTracker.h"

#include "view/BandedLines.h"

#include <algorithm>

namespace quillory {

namespace {

// Beyond this, comparing costs more than painting.
constexpr size_t maximumNotes = 64;

void map(TextOffset& offset, const TextChange& change)
{
    offset = mapped(offset, change);
}

void map(TextRange& range, const TextChange& change)
{
    range = mapped(range, change);
}

/// A row of a long line may have very many runs, most of them out of sight.
bool isLong(TextRange row)
{
    return row.length > LineChunks::longLine;
}

std::vector<OverlayRun> runsOf(TextRange row, const Overlay& overlay)
{
    if (isLong(row))
        return {};
    std::vector<OverlayRun> runs = overlay.runs(row);
    for (OverlayRun& run : runs)
        run.range.location -= row.location;
    return runs;
}

bool touch(TextRange a, TextRange b)
{
    return a.location <= b.end() && b.location <= a.end();
}

} // namespace

void RepaintTracker::followEdit(const TextChange& change)
{
    if (m_all)
        return;
    for (Shown& shown : m_shown) {
        map(shown.range, change);
        for (Selection& selection : shown.selections) {
            map(selection.anchor, change);
            map(selection.head, change);
        }
    }
    for (TextRange& changed : m_changed)
        map(changed, change);
    if (m_recoloured)
        map(*m_recoloured, change);
    for (CaretPlace& place : m_affinity)
        map(place.offset, change);
    noteChanged(change.inserted());
}

void RepaintTracker::noteChanged(TextRange range)
{
    if (m_changed.size() < maximumNotes)
        m_changed.push_back(range);
    else
        m_all = true;
}

void RepaintTracker::noteRecoloured(TextRange range)
{
    if (m_recoloured)
        range = TextRange::between(std::min(m_recoloured->location, range.location),
                                   std::max(m_recoloured->end(), range.end()));
    m_recoloured = range;
}

void RepaintTracker::noteAffinity(const std::vector<CaretPlace>& places)
{
    if (places == m_affinity)
        return;
    for (const auto& carets : {m_affinity, places}) {
        for (const CaretPlace& place : carets)
            noteChanged({place.offset, 0});
    }
    m_affinity = places;
}

std::vector<RepaintTracker::Shown> RepaintTracker::shownBy(TextViewport& viewport,
                                                           const std::vector<Selection>& selections,
                                                           const Overlay& overlay)
{
    std::vector<Shown> result;
    const BandedLines banded(viewport.geometry().text(), overlay.lineBands());
    auto next = selections.begin();
    const TextOffset top = viewport.rows().front().row.range.location;
    next = std::partition_point(next, selections.end(),
                                [&](const Selection& s) { return s.range().end() < top; });
    for (const TextViewport::VisibleRow& visible : viewport.rows()) {
        const TextRange range = visible.row.range;
        Shown shown{
            range, visible.y, {}, runsOf(range, overlay), banded.colourOf(visible.row.line)};
        while (next != selections.end() && next->range().end() < range.location)
            ++next;
        for (auto it = next; it != selections.end() && it->range().location <= range.end(); ++it) {
            // Where both ends lie elsewhere, only that they do matters; but a head on this row is
            // a caret to paint, and which of two ends it is as well.
            const auto pulled = [&](TextOffset offset) {
                return std::clamp(offset, range.location - 1, range.end() + 1);
            };
            shown.selections.push_back({pulled(it->anchor), pulled(it->head)});
        }
        result.push_back(std::move(shown));
    }
    return result;
}

bool RepaintTracker::isClean(const Shown& before, const Shown& now) const
{
    if (before.y != now.y || before.range != now.range || before.selections != now.selections ||
        before.runs != now.runs || before.band != now.band)
        return false;
    if (m_recoloured && isLong(now.range) && touch(*m_recoloured, now.range))
        return false;
    return std::none_of(m_changed.begin(), m_changed.end(),
                        [&](TextRange changed) { return touch(changed, now.range); });
}

QRegion RepaintTracker::takeDamage(TextViewport& viewport, const std::vector<Selection>& selections,
                                   const Overlay& overlay)
{
    const QRect whole({}, viewport.size());
    if (selections.size() > maximumNotes || m_x != viewport.x())
        m_all = true;
    std::vector<Shown> now = shownBy(viewport, selections, overlay);
    QRegion damage;
    if (m_all) {
        damage = whole;
    } else {
        const int height = viewport.rowHeight();
        // A caret or an accent may reach over its row's edge by a pixel or two.
        constexpr int overhang = 3;
        for (size_t i = 0; i < now.size(); ++i) {
            if (i >= m_shown.size() || !isClean(m_shown[i], now[i]))
                damage += QRect(0, now[i].y - overhang, whole.width(), height + 2 * overhang);
        }
        // What is above the first row and below the last.
        if (m_shown.empty() || m_shown.front().y != now.front().y)
            damage += QRect(0, 0, whole.width(), now.front().y);
        if (m_shown.empty() || m_shown.back().y != now.back().y) {
            const int below = now.back().y + height;
            damage += QRect(0, below, whole.width(), whole.height() - below);
        }
        damage &= whole;
    }
    m_shown = std::move(now);
    m_x = viewport.x();
    m_changed.clear();
    m_recoloured.reset();
    m_all = false;
    return damage;
}

} // namespace quillory
