#include "app/ThemeModel.h"

namespace quillory {

void ThemeModel::setThemes(const std::vector<Theme>& themes)
{
    beginResetModel();
    m_themes = themes;
    endResetModel();
}

QString ThemeModel::title(const Theme& theme)
{
    QString name = theme.name();
    return name.replace(u'_', u' ');
}

int ThemeModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_themes.size());
}

QVariant ThemeModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return title(at(index));
    case Qt::UserRole:
        return at(index).name();
    default:
        return {};
    }
}

} // namespace quillory
