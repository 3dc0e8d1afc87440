#include "view/TextViewColours.h"

#include <QPalette>

namespace quillory {

namespace {

QColor mixed(const QColor& a, const QColor& b, float share)
{
    return QColor::fromRgbF(a.redF() * share + b.redF() * (1 - share),
                            a.greenF() * share + b.greenF() * (1 - share),
                            a.blueF() * share + b.blueF() * (1 - share));
}

} // namespace

TextViewColours TextViewColours::fromPalette(const QPalette& palette)
{
    const QColor background = palette.color(QPalette::Active, QPalette::Base);
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    // The palette's highlight is made for text in a colour of its own, and too strong behind text
    // in many. On a dark ground the eye needs more of it.
    const float share = background.lightnessF() < 0.5F ? 0.5F : 0.35F;
    return {text, background, text, mixed(highlight, background, share),
            mixed(text, background, 0.15F)};
}

} // namespace quillory
