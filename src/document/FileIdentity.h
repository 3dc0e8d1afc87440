#pragma once

#include <QByteArray>
#include <QtGlobal>
#include <sys/stat.h>

namespace quillory {

/// Tells a file from what another program makes of it later: which file it is, how large and how
/// old. With the digest of its bytes, a file that was only touched, or replaced by an equal one,
/// still counts as the same.
struct FileIdentity
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;          ///< bytes
    qint64 modifiedNanos = 0; ///< since 1970
    QByteArray digest;        ///< summaryOf() its bytes; empty when they were not looked at

    static FileIdentity of(const struct stat& status);

    /// The same file, unchanged as far as \a status tells.
    bool matches(const struct stat& status) const;
};

} // namespace quillory
