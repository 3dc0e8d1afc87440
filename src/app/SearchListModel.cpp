#include "app/SearchListModel.h"

#include <algorithm>

namespace quillory {

void SearchListModel::setRows(std::vector<SearchRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    m_shown.clear();
    endResetModel();
}

void SearchListModel::show(const std::vector<int>& shown)
{
    beginResetModel();
    m_shown = shown;
    endResetModel();
}

int SearchListModel::rowAt(int place) const
{
    return place >= 0 && place < int(m_shown.size()) ? m_shown[size_t(place)] : -1;
}

int SearchListModel::placeOf(int row) const
{
    const auto found = std::find(m_shown.begin(), m_shown.end(), row);
    return found == m_shown.end() ? -1 : int(found - m_shown.begin());
}

int SearchListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_shown.size());
}

QVariant SearchListModel::data(const QModelIndex& index, int role) const
{
    const int number = rowAt(index.row());
    if (number < 0)
        return {};
    const SearchRow& row = m_rows[size_t(number)];
    switch (role) {
    case Qt::DisplayRole:
        return row.text;
    case detailRole:
        return row.detail;
    case Qt::DecorationRole:
        return row.icon.isNull() ? QVariant() : QVariant(row.icon);
    case Qt::AccessibleTextRole:
        return row.detail.isEmpty() ? row.text : row.text + QStringLiteral(", ") + row.detail;
    default:
        return {};
    }
}

Qt::ItemFlags SearchListModel::flags(const QModelIndex& index) const
{
    const int number = rowAt(index.row());
    if (number < 0 || !m_rows[size_t(number)].enabled)
        return Qt::ItemNeverHasChildren;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

} // namespace quillory
