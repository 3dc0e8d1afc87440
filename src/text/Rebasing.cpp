#include "text/Rebasing.h"

#include <span>

// Edits that are made one after the other are taken in runs that go up or down through the text.
// In a run each edit can be said by its place in the text before the run, where the edits of two
// runs are sorted into one list. Edits that touch nothing of the other run are shifted by what lies
// before them; only those that touch are rebased on each other.

namespace quillory {

namespace {

TextRange& rangeOf(TextEdit& edit)
{
    return edit.range;
}

const TextRange& rangeOf(const TextEdit& edit)
{
    return edit.range;
}

TextRange& rangeOf(TextChange& change)
{
    return change.replaced;
}

const TextRange& rangeOf(const TextChange& change)
{
    return change.replaced;
}

TextOffset growthOf(const TextEdit& edit)
{
    return edit.replacement.length() - edit.range.length;
}

TextOffset growthOf(const TextChange& change)
{
    return change.delta();
}

/// Neighbours in a sequence, in the order of the text.
template<class Edit>
struct Run
{
    std::span<Edit> edits;
    bool goesUp = false; ///< towards the text's beginning

    size_t size() const { return edits.size(); }
    Edit& at(size_t place) const { return edits[goesUp ? edits.size() - 1 - place : place]; }
    std::span<Edit> part(size_t from, size_t to) const
    {
        return goesUp ? edits.subspan(edits.size() - to, to - from)
                      : edits.subspan(from, to - from);
    }

    /// From places in the text as it is when an edit's turn comes to those in the text before.
    void toPlacesBefore() const { shiftByThoseBefore(-1); }
    void toPlacesInTurn() const { shiftByThoseBefore(1); }

private:
    void shiftByThoseBefore(int sign) const
    {
        if (goesUp)
            return;
        TextOffset shift = 0;
        for (Edit& edit : edits) {
            rangeOf(edit).location += sign * shift;
            shift += growthOf(edit);
        }
    }
};

template<class Edit>
std::vector<Run<Edit>> runsOf(std::span<Edit> edits)
{
    const auto isAbove = [](const Edit& a, const Edit& b) {
        return rangeOf(b).end() <= rangeOf(a).location;
    };
    const auto isBelow = [](const Edit& a, const Edit& b) {
        return rangeOf(b).location >= rangeOf(a).end() + growthOf(a);
    };
    std::vector<Run<Edit>> runs;
    for (size_t first = 0; first < edits.size();) {
        size_t end = first + 1;
        const bool goesUp = end < edits.size() && isAbove(edits[first], edits[end]);
        while (end < edits.size() &&
               (goesUp ? isAbove(edits[end - 1], edits[end]) : isBelow(edits[end - 1], edits[end])))
            ++end;
        runs.push_back({edits.subspan(first, end - first), goesUp});
        first = end;
    }
    return runs;
}

template<class Edit>
void shift(const Run<Edit>& run, TextOffset by)
{
    for (Edit& edit : run.edits)
        rangeOf(edit).location += by;
}

template<class Edit>
TextOffset growthOf(const Run<Edit>& run)
{
    TextOffset growth = 0;
    for (const Edit& edit : run.edits)
        growth += growthOf(edit);
    return growth;
}

/// Each with each, which is only done where they touch.
void rebaseTouching(const Run<TextEdit>& deltas, const Run<TextChange>& changes)
{
    deltas.toPlacesInTurn();
    changes.toPlacesInTurn();
    for (TextChange& change : changes.edits) {
        for (TextEdit& delta : deltas.edits)
            rebase(delta, change);
    }
    deltas.toPlacesBefore();
    changes.toPlacesBefore();
}

void rebaseRun(const Run<TextEdit>& deltas, const Run<TextChange>& changes)
{
    deltas.toPlacesBefore();
    changes.toPlacesBefore();
    TextOffset deltasBefore = 0; // what those dealt with make the text longer
    TextOffset changesBefore = 0;
    size_t delta = 0;
    size_t change = 0;
    while (delta < deltas.size() || change < changes.size()) {
        const size_t firstDelta = delta;
        const size_t firstChange = change;
        TextOffset end = -1;
        const auto takeFrom = [&](const auto& run, size_t& place) {
            if (place == run.size())
                return false;
            const TextRange range = rangeOf(run.at(place));
            if (end >= 0 && range.location > end)
                return false;
            end = std::max(end, range.end());
            ++place;
            return true;
        };
        const bool deltaIsFirst =
            change == changes.size() ||
            (delta < deltas.size() &&
             deltas.at(delta).range.location <= changes.at(change).replaced.location);
        deltaIsFirst ? takeFrom(deltas, delta) : takeFrom(changes, change);
        while (takeFrom(deltas, delta) || takeFrom(changes, change)) {
        }
        const Run<TextEdit> someDeltas{deltas.part(firstDelta, delta), deltas.goesUp};
        const Run<TextChange> someChanges{changes.part(firstChange, change), changes.goesUp};
        const TextOffset deltaGrowth = growthOf(someDeltas);
        const TextOffset changeGrowth = growthOf(someChanges);
        if (someDeltas.size() > 0 && someChanges.size() > 0)
            rebaseTouching(someDeltas, someChanges);
        shift(someDeltas, changesBefore);
        shift(someChanges, deltasBefore);
        deltasBefore += deltaGrowth;
        changesBefore += changeGrowth;
    }
    deltas.toPlacesInTurn();
    changes.toPlacesInTurn();
}

} // namespace

void rebase(TextEdit& delta, TextChange& change)
{
    const TextRange d = delta.range;
    const TextRange c = change.replaced;
    const TextOffset inserted = change.insertedLength;
    const TextOffset growth = growthOf(delta);
    if (c.end() <= d.location) {
        delta.range.location += change.delta();
    } else if (c.location >= d.end()) {
        change.replaced.location += growth;
    } else if (c.location >= d.location && c.end() <= d.end()) {
        delta.range.length += change.delta();
        change = {{d.location, 0}, 0};
    } else if (c.location < d.location && c.end() <= d.end()) {
        delta.range = TextRange::between(c.location + inserted, d.end() + change.delta());
        change.replaced = TextRange::between(c.location, d.location);
    } else if (c.location >= d.location) {
        delta.range = TextRange::between(d.location, c.location);
        change.replaced = {d.location + delta.replacement.length(), c.end() - d.end()};
    } else {
        change.replaced = {c.location, c.length + growth};
        delta = {{c.location + inserted, 0}, TextSnapshot()};
        // What the delta would have put back is inside the rewritten stretch, and stays gone.
    }
}

void rebase(std::vector<TextEdit>& deltas, std::vector<TextChange>& changes)
{
    const std::vector<Run<TextEdit>> deltaRuns = runsOf(std::span(deltas));
    for (const Run<TextChange>& changeRun : runsOf(std::span(changes))) {
        for (const Run<TextEdit>& deltaRun : deltaRuns)
            rebaseRun(deltaRun, changeRun);
    }
    std::erase_if(changes, [](const TextChange& change) { return change.isEmpty(); });
}

std::vector<Selection> mapped(std::vector<Selection> selections,
                              const std::vector<TextChange>& changes)
{
    std::vector<TextChange> places = changes;
    for (const Run<TextChange>& run : runsOf(std::span(places))) {
        run.toPlacesBefore();
        std::vector<TextOffset> growthBefore{0};
        for (size_t i = 0; i < run.size(); ++i)
            growthBefore.push_back(growthBefore[i] + growthOf(run.at(i)));
        const auto moved = [&](TextOffset offset) {
            size_t before = 0; // how many changes begin before the offset
            for (size_t end = run.size(); before < end;) {
                const size_t middle = (before + end) / 2;
                if (run.at(middle).replaced.location < offset)
                    before = middle + 1;
                else
                    end = middle;
            }
            if (run.goesUp) {
                // Those further up find the offset where these have left it.
                while (before > 0 && run.at(before - 1).replaced.end() >= offset)
                    offset = mapped(offset, run.at(--before));
            } else if (before > 0) {
                offset = mapped(offset, run.at(--before));
            }
            return offset + growthBefore[before];
        };
        for (Selection& selection : selections)
            selection = {moved(selection.anchor), moved(selection.head)};
    }
    return selections;
}

} // namespace quillory
