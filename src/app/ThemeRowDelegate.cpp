#include "app/ThemeRowDelegate.h"

#include "app/ThemeModel.h"
#include "view/Contrast.h"

#include <QPainter>
#include <QStyle>
#include <array>

namespace quillory {

using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 3;        ///< around the ground of a row, in pixels
constexpr int padding = 6;    ///< between the ground's edge and what is on it
constexpr double least = 3.0; ///< contrast of the name with its ground
constexpr std::array swatches{"keyword"_L1, "command"_L1, "string"_L1,
                              "comment"_L1, "number"_L1,  "variable"_L1};

QColor toQColor(const Colour& colour)
{
    return QColor::fromRgbF(colour.red, colour.green, colour.blue, colour.alpha);
}

/// What \a colour looks like on \a ground.
QColor over(const QColor& colour, const QColor& ground)
{
    const auto mixed = [a = colour.alphaF()](float above, float below) {
        return above * a + below * (1 - a);
    };
    return QColor::fromRgbF(mixed(colour.redF(), ground.redF()),
                            mixed(colour.greenF(), ground.greenF()),
                            mixed(colour.blueF(), ground.blueF()));
}

/// The name can be read also where the theme's text cannot.
QColor inkFor(const QColor& text, const QColor& ground)
{
    const QColor ink = over(text, ground);
    if (contrast(ink, ground) >= least)
        return ink;
    return contrast(Qt::black, ground) > contrast(Qt::white, ground) ? Qt::black : Qt::white;
}

} // namespace

QSize ThemeRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const int height = option.fontMetrics.height();
    const int name = option.fontMetrics.horizontalAdvance(index.data().toString());
    const int samples = int(swatches.size()) * height;
    return {name + samples + height + 4 * padding, height + 2 * (gap + padding)};
}

void ThemeRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    const auto* model = qobject_cast<const ThemeModel*>(index.model());
    if (!model)
        return;
    const Theme& theme = model->at(index);
    const PlainColours colours = theme.plainColours();
    const QColor ground =
        over(toQColor(colours.background), option.palette.color(QPalette::Active, QPalette::Base));
    const QColor ink = inkFor(toQColor(colours.text), ground);
    const bool isSelected = option.state & QStyle::State_Selected;
    const QPalette::ColorGroup group =
        option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const QColor frame =
        option.palette.color(group, isSelected ? QPalette::Highlight : QPalette::Mid);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const double width = isSelected ? 2 : 1;
    const QRectF row = QRectF(option.rect).adjusted(gap, gap, -gap, -gap);
    painter->setPen(QPen(frame, width));
    painter->setBrush(ground);
    painter->drawRoundedRect(row.adjusted(width / 2, width / 2, -width / 2, -width / 2), 4, 4);

    const int height = option.fontMetrics.height();
    QRect room = row.toAlignedRect().adjusted(padding, padding, -padding, -padding);
    const auto cut = [&](Qt::Alignment side, int cutWidth) {
        const QRect piece = QStyle::alignedRect(option.direction, side | Qt::AlignVCenter,
                                                {cutWidth, room.height()}, room);
        const bool isLeft = piece.left() == room.left();
        isLeft ? room.setLeft(piece.right() + 1) : room.setRight(piece.left() - 1);
        return piece;
    };
    const QRect mark = cut(Qt::AlignLeft, height);
    painter->setPen(ink);
    painter->setFont(option.font);
    if (isSelected)
        painter->drawText(mark, Qt::AlignCenter, u"✓"_s);
    painter->setPen(Qt::NoPen);
    for (size_t i = swatches.size(); i > 0; --i) {
        const QRect cell = cut(Qt::AlignRight, height);
        const double size = height * 0.62;
        painter->setBrush(over(toQColor(theme.colour(swatches[i - 1])), ground));
        painter->drawEllipse(QRectF(cell).center(), size / 2, size / 2);
    }
    painter->setPen(ink);
    painter->drawText(
        room,
        int(QStyle::visualAlignment(option.direction, Qt::AlignLeft) | Qt::AlignVCenter |
            Qt::TextSingleLine),
        option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, room.width()));
    painter->restore();
}

} // namespace quillory
