#include "commands/VersionList.h"

#include "commands/Version.h"
#include "commands/WebClientPlugin.h"
#include "foundation/PropertyListReader.h"

#include <QCoreApplication>
#include <QDateTime>

namespace quillory {

namespace {

constexpr qsizetype longestNotes = 10'000;  ///< UTF-16 code units
constexpr qint64 referenceDate = 978307200; ///< of property lists: 2001-01-01, seconds since 1970

QDate dateOf(const PropertyList& stored)
{
    if (const auto* date = stored.as<PropertyList::Date>())
        return QDateTime::fromSecsSinceEpoch(referenceDate + qint64(date->seconds), Qt::UTC).date();
    return QDate::fromString(stored.toString(), Qt::ISODate);
}

} // namespace

Result<std::vector<PublishedVersion>> readVersionList(const QByteArray& bytes)
{
    const auto tr = [](const char* text) {
        return QCoreApplication::translate("VersionList", text);
    };
    const auto stored = readPropertyList(bytes);
    if (!stored)
        return Failure{tr("It is no property list: %1").arg(stored.failure().description())};
    const auto* entries = stored->list.as<PropertyList::Array>();
    if (!entries)
        return Failure{tr("It is a property list, but no array of versions.")};
    std::vector<PublishedVersion> list;
    for (const PropertyList& entry : *entries) {
        const PropertyList::Dictionary values = entry.toDictionary();
        PublishedVersion published;
        published.version = values.value(QStringLiteral("version")).toString().trimmed();
        if (!Version::from(published.version))
            continue;
        published.date = dateOf(values.value(QStringLiteral("date")));
        published.notes = values.value(QStringLiteral("notes")).toString().left(longestNotes);
        const QUrl url(values.value(QStringLiteral("url")).toString(), QUrl::StrictMode);
        if (isWebAddress(url))
            published.url = url;
        list.push_back(published);
    }
    return list;
}

std::optional<PublishedVersion> newestAbove(const QString& current,
                                            const std::vector<PublishedVersion>& list)
{
    std::optional<Version> highest = Version::from(current);
    const bool wantsPreReleases = highest && highest->isPreRelease();
    std::optional<PublishedVersion> newest;
    for (const PublishedVersion& published : list) {
        const std::optional<Version> version = Version::from(published.version);
        if (!highest || !version || *version <= *highest ||
            (version->isPreRelease() && !wantsPreReleases))
            continue;
        highest = version;
        newest = published;
    }
    return newest;
}

} // namespace quillory
