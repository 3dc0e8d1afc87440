#include "editing/RulerMeasures.h"

#include <algorithm>
#include <cmath>

namespace quillory {

int digitCount(qsizetype lineCount)
{
    int digits = 1;
    for (; lineCount >= 10; lineCount /= 10)
        ++digits;
    return digits;
}

int requiredThickness(double labelWidth)
{
    return int(std::ceil(std::max(minimumThickness, labelWidth + 2 * labelMargin)));
}

double labelOffset(double rowHeight, double labelHeight)
{
    return (rowHeight - labelHeight + 2 * rulerOrigin) / 2;
}

} // namespace quillory
