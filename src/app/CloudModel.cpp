#include "app/CloudModel.h"

#include "document/CloudListing.h"

#include <QDir>
#include <QFileInfo>

namespace quillory {

namespace {

/// In one line of a table, whatever the file holds.
QString inOneLine(QString text)
{
    for (QChar& unit : text) {
        if (unit.category() == QChar::Other_Control || unit == QChar::LineSeparator ||
            unit == QChar::ParagraphSeparator)
            unit = u' ';
    }
    return text;
}

} // namespace

QString spokenDate(const QDateTime& date, const QDateTime& now, const QLocale& locale)
{
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    const qint64 age = date.secsTo(now);
    const qint64 days = date.date().daysTo(now.date());
    const auto time = [&] { return locale.toString(date.time(), QLocale::ShortFormat); };
    if (age >= 0 && age < minute)
        return CloudModel::tr("Just now");
    if (age >= 0 && age < hour)
        return CloudModel::tr("%1 min ago").arg(locale.toString(age / minute));
    if (age >= 0 && days == 0)
        return CloudModel::tr("Today, %1").arg(time());
    if (days == 1)
        return CloudModel::tr("Yesterday, %1").arg(time());
    return locale.toString(date, QLocale::ShortFormat);
}

// The model

CloudModel::CloudModel(const CloudListing& listing, QObject* parent)
    : QAbstractTableModel(parent), m_listing(listing)
{
    connect(&listing, &CloudListing::started, this, [this] { m_isRenewal = !m_entries.empty(); });
    connect(&listing, &CloudListing::found, this, &CloudModel::take);
    connect(&listing, &CloudListing::finished, this, &CloudModel::finish);
}

void CloudModel::take(qsizetype first)
{
    if (m_isRenewal)
        return;
    const std::vector<CloudEntry>& entries = m_listing.iCloudArray();
    beginInsertRows({}, int(m_entries.size()), int(entries.size()) - 1);
    m_entries.insert(m_entries.end(), entries.begin() + first, entries.end());
    endInsertRows();
}

void CloudModel::finish()
{
    if (!m_isRenewal)
        return;
    beginResetModel();
    m_entries = m_listing.iCloudArray();
    endResetModel();
}

void CloudModel::clear()
{
    beginResetModel();
    m_entries.clear();
    endResetModel();
}

QString CloudModel::folderOf(const CloudEntry& entry) const
{
    QString folder = QFileInfo(entry.url.toLocalFile()).path();
    if (folder == m_root)
        return {};
    return folder.startsWith(m_root + u'/') ? folder.mid(m_root.size() + 1) : folder;
}

int CloudModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

int CloudModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant CloudModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const CloudEntry& shown = entry(index.row());
    const bool isToolTip = role == Qt::ToolTipRole;
    switch (index.column()) {
    case Title:
        return inOneLine(shown.title);
    case Extension:
        return inOneLine(shown.extension);
    case Preview:
        return inOneLine(shown.body);
    case Date:
        return isToolTip ? QLocale().toString(shown.date, QLocale::LongFormat)
                         : spokenDate(shown.date, QDateTime::currentDateTime());
    case Folder:
        return isToolTip ? QDir::toNativeSeparators(shown.url.toLocalFile())
                         : inOneLine(folderOf(shown));
    default:
        return {};
    }
}

QVariant CloudModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Title:
        return tr("Name");
    case Extension:
        return tr("Type");
    case Preview:
        return tr("Preview");
    case Date:
        return tr("Modified");
    case Folder:
        return tr("Folder");
    default:
        return {};
    }
}

// What is shown of it

CloudFilter::CloudFilter(CloudModel& model, QObject* parent)
    : QSortFilterProxyModel(parent), m_model(model)
{
    setSourceModel(&model);
    sort(CloudModel::Date, Qt::DescendingOrder);
}

void CloudFilter::setText(const QString& text)
{
    m_words = text.split(u' ', Qt::SkipEmptyParts);
    invalidateFilter();
}

bool CloudFilter::filterAcceptsRow(int row, const QModelIndex&) const
{
    if (m_words.isEmpty())
        return true;
    const CloudEntry& entry = m_model.entry(row);
    const QString name = entry.title + u'.' + entry.extension;
    const QString folder = m_model.folderOf(entry);
    return std::all_of(m_words.begin(), m_words.end(), [&](const QString& word) {
        return name.contains(word, Qt::CaseInsensitive) ||
               entry.body.contains(word, Qt::CaseInsensitive) ||
               folder.contains(word, Qt::CaseInsensitive);
    });
}

bool CloudFilter::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const CloudEntry& a = m_model.entry(left.row());
    const CloudEntry& b = m_model.entry(right.row());
    switch (left.column()) {
    case CloudModel::Title:
        return a.title.compare(b.title, Qt::CaseInsensitive) < 0;
    case CloudModel::Extension:
        return a.extension.compare(b.extension, Qt::CaseInsensitive) < 0;
    case CloudModel::Preview:
        return a.body.compare(b.body, Qt::CaseInsensitive) < 0;
    case CloudModel::Folder:
        return m_model.folderOf(a).compare(m_model.folderOf(b), Qt::CaseInsensitive) < 0;
    default:
        return a.date < b.date;
    }
}

} // namespace quillory
