#include "app/SearchRowDelegate.h"

#include "app/SearchListModel.h"

#include <QApplication>
#include <QPainter>

namespace quillory {

namespace {

constexpr int gap = 12;       ///< at the edges, and between text and detail, in pixels
constexpr int rowPadding = 3; ///< above and below the text
constexpr int iconSize = 16;  ///< in pixels
constexpr double faintness = 0.62;

} // namespace

QSize SearchRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const
{
    return {0, std::max(option.fontMetrics.height(), iconSize) + 2 * rowPadding};
}

void SearchRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    QStyleOptionViewItem ground = option;
    ground.showDecorationSelected = true;
    const QWidget* widget = option.widget;
    widget->style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &ground, painter, widget);

    const bool isEnabled = option.state & QStyle::State_Enabled;
    const bool isSelected = option.state & QStyle::State_Selected;
    const QPalette::ColorGroup group = isEnabled ? QPalette::Active : QPalette::Disabled;
    QColor colour =
        option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    QRect room = option.rect.adjusted(gap, 0, -gap, 0);
    const auto icon = index.data(Qt::DecorationRole).value<QIcon>();
    if (!icon.isNull()) {
        const QIcon::Mode mode = !isEnabled   ? QIcon::Disabled
                                 : isSelected ? QIcon::Selected
                                              : QIcon::Normal;
        icon.paint(painter,
                   QStyle::alignedRect(option.direction, Qt::AlignLeft | Qt::AlignVCenter,
                                       {iconSize, iconSize}, room),
                   Qt::AlignCenter, mode);
        (option.direction == Qt::LeftToRight) ? room.setLeft(room.left() + iconSize + gap / 2)
                                              : room.setRight(room.right() - iconSize - gap / 2);
    }

    const QString detail = option.fontMetrics.elidedText(
        index.data(SearchListModel::detailRole).toString(), Qt::ElideMiddle, room.width() / 2);
    const int detailWidth = detail.isEmpty() ? 0 : option.fontMetrics.horizontalAdvance(detail);
    const int textWidth = room.width() - (detail.isEmpty() ? 0 : detailWidth + gap);
    const QString text = option.fontMetrics.elidedText(index.data(Qt::DisplayRole).toString(),
                                                       Qt::ElideRight, textWidth);
    const auto side = [&](Qt::Alignment alignment) {
        return int(QStyle::visualAlignment(option.direction, alignment) | Qt::AlignVCenter |
                   Qt::TextSingleLine);
    };
    painter->save();
    painter->setFont(option.font);
    painter->setPen(colour);
    painter->drawText(room, side(Qt::AlignLeft), text);
    colour.setAlphaF(float(colour.alphaF() * faintness));
    painter->setPen(colour);
    painter->drawText(room, side(Qt::AlignRight), detail);
    painter->restore();
}

} // namespace quillory
