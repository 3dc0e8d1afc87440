#include "document/VersionPruning.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace quillory {

namespace {

constexpr qint64 hour = 3600; ///< seconds, as all here
constexpr qint64 day = 24 * hour;
constexpr qint64 week = 7 * day;
constexpr qint64 month = 30 * day;
constexpr qint64 year = 365 * day;

/// One version is kept in so long a time; 0 for every one, -1 for none.
qint64 spacingAt(qint64 age)
{
    if (age <= day)
        return 0;
    if (age <= week)
        return hour;
    if (age <= month)
        return day;
    return age <= year ? week : -1;
}

} // namespace

std::vector<size_t> versionsToDrop(const std::vector<KeptVersion>& versions, const QDateTime& now,
                                   const VersionLimits& limits)
{
    std::vector<size_t> newestFirst(versions.size());
    for (size_t i = 0; i < versions.size(); ++i)
        newestFirst[i] = i;
    std::stable_sort(newestFirst.begin(), newestFirst.end(),
                     [&](size_t a, size_t b) { return versions[a].time > versions[b].time; });

    // By file, spacing, and the hour, day or week, of which the last one is met first.
    std::map<std::tuple<int, qint64, qint64>, bool> hasOne;
    std::vector<size_t> dropped;
    qint64 taken = 0;
    for (const size_t index : newestFirst) {
        const KeptVersion& version = versions[index];
        const qint64 spacing = spacingAt(version.time.secsTo(now));
        bool isKept = spacing == 0;
        if (spacing > 0) {
            const qint64 stretch = version.time.toSecsSinceEpoch() / spacing;
            isKept = !std::exchange(hasOne[{version.file, spacing, stretch}], true);
        }
        if (isKept)
            taken += version.size;
        if (!isKept || taken > limits.bytes)
            dropped.push_back(index);
    }
    std::sort(dropped.begin(), dropped.end());
    return dropped;
}

} // namespace quillory
