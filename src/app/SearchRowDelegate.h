#pragma once

#include <QStyledItemDelegate>

namespace quillory {

/// Paints a row of a SearchList: its text at the start, its detail, fainter, at the end.
class SearchRowDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace quillory
