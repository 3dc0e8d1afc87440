#pragma once

#include <QStyledItemDelegate>

namespace quillory {

/// Draws a row of a ThemeModel in the theme's own colours: its name, and a sample of each of the
/// colours that source code shows most. The selected row has a frame and a mark.
class ThemeRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace quillory
