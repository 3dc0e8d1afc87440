#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QDate>
#include <QUrl>
#include <optional>
#include <vector>

namespace quillory {

/// One version of the program that somebody offers.
struct PublishedVersion
{
    QString version;
    QDate date;    ///< invalid where none was given
    QString notes; ///< plain text
    QUrl url;      ///< http or https, where there is more to read; empty for none
};

/// Reads a version list: a property list, an array of dictionaries with the keys "version" (a text
/// that is a Version), "date" (a date, or a text as 2026-11-22), "notes" and "url". Entries without
/// a version are passed over, and so is what has the wrong kind. Fails where it is no such list.
Result<std::vector<PublishedVersion>> readVersionList(const QByteArray& bytes);

/// The highest version of \a list above \a current. A pre-release counts only for who has one.
std::optional<PublishedVersion> newestAbove(const QString& current,
                                            const std::vector<PublishedVersion>& list);

} // namespace quillory
