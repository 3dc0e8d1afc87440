#include "view/Contrast.h"

#include <algorithm>
#include <cmath>

namespace quillory {

namespace {

/// WCAG's relative luminance, from 0 to 1.
double luminance(const QColor& colour)
{
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

} // namespace

double contrast(const QColor& a, const QColor& b)
{
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor darkenedForPaper(QColor colour, double least)
{
    constexpr int step = 115; // per cent, as QColor::darker() has it
    while (contrast(colour, Qt::white) < least)
        colour = colour.darker(step);
    return colour;
}

QColor lightenedFor(const QColor& ground, QColor colour, double least)
{
    constexpr int step = 110; // per cent, as QColor::lighter() has it
    if (luminance(ground) > luminance(colour) &&
        contrast(ground, colour) >= contrast(ground, Qt::white))
        return colour;
    while (contrast(colour, ground) < least && colour != QColor(Qt::white))
        colour = colour.lighter(step);
    return colour;
}

} // namespace quillory
