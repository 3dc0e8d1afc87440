#pragma once

#include "app/SearchList.h"

#include <QAbstractListModel>

namespace quillory {

/// The rows of a SearchList that match.
class SearchListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    static constexpr int detailRole = Qt::UserRole;

    using QAbstractListModel::QAbstractListModel;

    /// \a shown are numbers of \a rows, best first.
    void setRows(std::vector<SearchRow> rows);
    void show(const std::vector<int>& shown);

    qsizetype size() const { return qsizetype(m_rows.size()); }
    /// The number of the row at \a place of those that are shown; -1 outside.
    int rowAt(int place) const;
    /// Where \a row is shown; -1 where it is not.
    int placeOf(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    std::vector<SearchRow> m_rows;
    std::vector<int> m_shown;
};

} // namespace quillory
