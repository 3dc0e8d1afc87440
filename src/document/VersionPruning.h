#pragma once

#include <QDateTime>
#include <vector>

namespace quillory {

/// One of the versions that are kept, of some file.
struct KeptVersion
{
    int file = 0;    ///< versions of one file have the same
    QDateTime time;  ///< when it was kept
    qint64 size = 0; ///< bytes
};

/// What there is room for.
struct VersionLimits
{
    qint64 bytes = qint64(500) << 20; ///< of all versions together
};

/// Which of \a versions to drop at \a now, by their indexes, in ascending order. Of one file stay:
/// all of the last day; the last one of each hour for a week, of each day for a month (30 days), of
/// each week for a year (365 days); none that is older. Where those take more room than there is,
/// the oldest of all files go.
std::vector<size_t> versionsToDrop(const std::vector<KeptVersion>& versions, const QDateTime& now,
                                   const VersionLimits& limits = {});

} // namespace quillory
