#include "view/ScrollBarStyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOptionSlider>
#include <cmath>

namespace quillory {

namespace {

constexpr QStyle::SubControls grooves =
    QStyle::SC_ScrollBarGroove | QStyle::SC_ScrollBarAddPage | QStyle::SC_ScrollBarSubPage;

} // namespace

ScrollBarStyle::ScrollBarStyle(QStyle* base)
    : QProxyStyle(base ? base : QStyleFactory::create(QApplication::style()->name()))
{}

int ScrollBarStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                              QStyleHintReturn* data) const
{
    if (hint == SH_ScrollBar_LeftClickAbsolutePosition)
        return 1;
    return QProxyStyle::styleHint(hint, option, widget, data);
}

void ScrollBarStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                        QPainter* painter, const QWidget* widget) const
{
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    const double ratio = painter->device()->devicePixelRatioF();
    // An image of part of a pixel more would not meet what is beside it.
    const bool isWhole = ratio == std::floor(ratio);
    if (control != CC_ScrollBar || !bar || bar->rect.isEmpty() || !bar->rect.topLeft().isNull() ||
        !isWhole) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    QStyleOptionSlider part = *bar;
    const Look look{bar->rect.size(), ratio, bar->state, bar->activeSubControls,
                    bar->palette.cacheKey()};
    Groove& groove = m_grooves[bar->orientation == Qt::Vertical ? 1 : 0];
    if (groove.image.isNull() || !(groove.look == look)) {
        groove.look = look;
        groove.image = QPixmap(look.size * ratio);
        groove.image.setDevicePixelRatio(ratio);
        groove.image.fill(Qt::transparent);
        part.subControls = bar->subControls & grooves;
        QPainter once(&groove.image);
        QProxyStyle::drawComplexControl(control, &part, &once, widget);
    }
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform, false); // would cost threads as well
    painter->drawPixmap(0, 0, groove.image);
    painter->restore();
    part.subControls = bar->subControls & ~grooves;
    if (part.subControls)
        QProxyStyle::drawComplexControl(control, &part, painter, widget);
}

} // namespace quillory
