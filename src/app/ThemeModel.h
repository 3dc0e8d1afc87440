#pragma once

#include "syntax/Theme.h"

#include <QAbstractListModel>

namespace quillory {

/// The themes for a list to choose from.
class ThemeModel : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void setThemes(const std::vector<Theme>& themes);
    const std::vector<Theme>& themes() const { return m_themes; }
    /// The theme of a row; \a index must be one of this model.
    const Theme& at(const QModelIndex& index) const { return m_themes[size_t(index.row())]; }
    /// As people read it.
    static QString title(const Theme& theme);

    int rowCount(const QModelIndex& parent = {}) const override;
    /// The title, and for Qt::UserRole the name.
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<Theme> m_themes;
};

} // namespace quillory
