#pragma once

#include "document/CloudEntry.h"

#include <QAbstractTableModel>
#include <QLocale>
#include <QSortFilterProxyModel>
#include <vector>

namespace quillory {

class CloudListing;

/// The rows of a shared folder's listing. The first one shows as it comes; when it is made anew,
/// what is shown stays until the new one is complete.
class CloudModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        Title,
        Extension,
        Preview,
        Date,
        Folder,
        ColumnCount
    };

    explicit CloudModel(const CloudListing& listing, QObject* parent = nullptr);

    /// The folder that is listed, to tell the others from.
    void setRoot(const QString& root) { m_root = root; }
    const CloudEntry& entry(int row) const { return m_entries[size_t(row)]; }
    QString folderOf(const CloudEntry& entry) const; ///< from the root on
    void clear();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    void take(qsizetype first);
    void finish();

    const CloudListing& m_listing;
    QString m_root;
    std::vector<CloudEntry> m_entries;
    bool m_isRenewal = false;
};

/// The rows of a CloudModel that hold every word that is searched, in any column but the date.
class CloudFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit CloudFilter(CloudModel& model, QObject* parent = nullptr);

    void setText(const QString& text);
    const CloudEntry& entry(const QModelIndex& index) const
    {
        return m_model.entry(mapToSource(index).row());
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    CloudModel& m_model;
    QStringList m_words;
};

/// \a date as one says it at \a now: how long ago within the hour, the time of today and yesterday,
/// else as the locale writes it.
QString spokenDate(const QDateTime& date, const QDateTime& now, const QLocale& locale = QLocale());

} // namespace quillory
